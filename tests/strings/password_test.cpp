// Masked password text in both twins.
#include <cstring>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Password);

constexpr int32_t kMask = 1;
constexpr int32_t kUnmask = 0;

// Runs the twin into a sentinel buffer: on success the text, on failure the
// wide twin leaves the empty text and the narrow one dst as it was; nothing
// is ever written behind size.
template <class Ch>
std::basic_string<Ch> password(uint16_t key, const std::string& src, int32_t mask, int32_t size,
                               int32_t result) {
  auto dst = sentinel_buffer<Ch>(static_cast<std::size_t>(size) + 1);
  EXPECT_EQ(Twin<Ch>::StringPassword(key, text<Ch>(src).c_str(), dst.data(), size, mask), result)
      << src << " size " << size;
  EXPECT_TRUE(untouched_from(dst, static_cast<std::size_t>(size))) << src;
  if (result >= 0) return str(dst);
  EXPECT_EQ(dst[0], sizeof(Ch) == 1 || size == 0 ? kSentinel<Ch> : Ch{0}) << src;
  return {};
}

// Each unit XOR the key is four base-36 digits: 0x41 is 65, "001t"; a unit
// equal to the key "0000"; 0xFFFE "1eke". Unmasking is tolerant: either
// case, a short last group read as a shorter number, a group without a
// number read as 0, reading stopped at the first other element, a sign
// (-1 is 0xFFFF) and leading white space taken ("1z" is 71); a group that
// gives the unit 0 ends the text. The narrow twin masks the wide form:
// "日本" is U+65E5 U+672C. "ab" masks to 8 elements and needs a size of 9;
// two units unmasked need 3. The narrow twin's scratch holds its input only
// from size on.
TYPED_TEST(Password, MasksToFourBase36DigitsPerUnitAndUnmasksTolerantly) {
  using Ch = TypeParam;
  const struct {
    uint16_t key;
    int32_t mask;
    const char *src, *expected;
    int32_t size = 64, result = -2;  // -2: the length of expected
    Only only = kBoth;
  } cases[] = {{0, kMask, "A", "001t"},
               {0x41, kMask, "A", "0000"},
               {0xFFFF, kMask, "\x01", "1eke"},
               {0, kUnmask, "001T003e", "Az"},
               {0, kUnmask, "001t1", "A\x01"},
               {0x41, kUnmask, "*01t", "A"},
               {0x40, kUnmask, "01*t", "A"},
               {0xFFBE, kUnmask, "-001", "A"},
               {0x40, kUnmask, "  1z", "\x07"},
               {0, kUnmask, "001t0000001t", "A"},
               {0, kMask, "\x93\xFA\x96\x7B", "0k4l0kdo", 64, 8, kNarrow},
               {0, kUnmask, "0k4l0kdo", "\x93\xFA\x96\x7B", 64, 2, kNarrow},
               {7, kMask, "ab", "", 9, 8},
               {7, kMask, "ab", "", 8, -1},
               {7, kMask, "ab", "", 0, -1},
               {7, kMask, "", "", 1, 0},
               {7, kMask, "ab", "", 1, -1, kWide},
               {7, kUnmask, "001t001t", "", 3, 2, kWide},
               {7, kUnmask, "001t001t", "", 2, -1, kWide}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto result = c.result == -2 ? static_cast<int32_t>(std::strlen(c.expected)) : c.result;
    const auto got = password<Ch>(c.key, c.src, c.mask, c.size, result);
    if (c.size == 64) {
      EXPECT_EQ(got, text<Ch>(c.expected)) << c.src;
    }
  }
}

TEST(PasswordNarrow, ScratchFailureGivesMinusOneAndLeavesDst) {
  expect_whole_or("-1 " + shown(sentinel_buffer<char>(12)), [] {
    auto dst = sentinel_buffer<char>(12);
    const int32_t result = KZ_StringPasswordA(3, "ab", dst.data(), 12, kMask);
    return std::to_string(result) + " " + shown(dst);
  });
}

}  // namespace
