// Masked password text in both twins.
#include <cstring>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Password : public ::testing::Test {};
TYPED_TEST_SUITE(Password, ElementTypes);

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
  if (size > 0) {
    EXPECT_EQ(dst[0], sizeof(Ch) == 1 ? Ch{0x7B} : Ch{0}) << "failure of " << src;
  }
  return {};
}

TYPED_TEST(Password, MasksToFourBase36DigitsPerUnitAndUnmasksTolerantly) {
  using Ch = TypeParam;
  struct Case {
    uint16_t key;
    int32_t mask;
    const char *src, *expected;
    int32_t result = -2;  // -2: the length of expected
    Only only = Only::kBoth;
  } cases[] = {
      {0, kMask, "", ""},
      {0, kMask, "A", "001t"},  // 0x41 = 65 = 1 * 36 + 29
      {0, kMask, "Az", "001t003e"},
      {0x41, kMask, "A", "0000"},         // a unit equal to the key
      {0xFFFF, kMask, "\x01", "1eke"},    // 0xFFFE; 65535 is "1ekf"
      {0x1234, kMask, "aa", "03md03md"},  // equal units give equal groups
      {0, kUnmask, "", ""},
      {0, kUnmask, "001t003e", "Az"},
      {0x41, kUnmask, "0000", "A"},
      {0, kUnmask, "001T003E", "Az"},   // either case
      {0, kUnmask, "001t1", "A\x01"},   // a short last group reads as a shorter number
      {0x41, kUnmask, "*01t", "A"},     // a group without a number reads as 0
      {0x40, kUnmask, "01*t", "A"},     // reading stops at the first other element
      {0xFFBE, kUnmask, "-001", "A"},   // a sign is taken: -1 is 0xFFFF
      {0x40, kUnmask, "  1z", "\x07"},  // leading white space too: 1z is 71, 71 ^ 0x40
      // A group that gives the unit 0 ends the text.
      {0x41, kUnmask, "001t0000", ""},
      {0, kUnmask, "001t0000001t", "A"},
      // "日本" is U+65E5 U+672C: 26085 and 26412 in base 36, one group each.
      {0, kMask, "\x93\xFA\x96\x7B", "0k4l0kdo", 8, Only::kNarrow},
      {0, kUnmask, "0k4l0kdo", "\x93\xFA\x96\x7B", 2, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto result = c.result == -2 ? static_cast<int32_t>(std::strlen(c.expected)) : c.result;
    EXPECT_EQ(password<Ch>(c.key, c.src, c.mask, 64, result), text<Ch>(c.expected)) << c.src;
  }
}

TYPED_TEST(Password, RoundTripAndWrongKey) {
  using Ch = TypeParam;
  const std::string plain = "Secret, 123!";
  const auto masked = password<Ch>(0x5A17, plain, kMask, 64, 48);
  const std::string masked_bytes(masked.begin(), masked.end());
  EXPECT_EQ(password<Ch>(0x5A17, masked_bytes, kUnmask, 64, 12), text<Ch>(plain));
  // Another key gives another text of as many units and no failure.
  EXPECT_NE(password<Ch>(0x5A16, masked_bytes, kUnmask, 64, 12), text<Ch>(plain));
}

TYPED_TEST(Password, NeedsFourElementsPerUnitAndTheTerminator) {
  using Ch = TypeParam;
  struct Case {
    int32_t mask;
    const char* src;
    int32_t size, result;
    Only only = Only::kBoth;
  } cases[] = {
      // "ab" masks to 8 elements and needs a size of 9.
      {kMask, "ab", 10, 8},
      {kMask, "ab", 9, 8},
      {kMask, "ab", 8, -1},
      {kMask, "ab", 3, -1},
      {kMask, "ab", 0, -1},
      {kMask, "", 1, 0},
      // Sizes that do not hold the narrow twin's input.
      {kMask, "ab", 1, -1, Only::kWide},
      {kUnmask, "001t001t", 3, 2, Only::kWide},  // two units need 3
      {kUnmask, "001t001t", 2, -1, Only::kWide},
  };
  for (const auto& c : cases) {
    if (runs<Ch>(c.only)) password<Ch>(7, c.src, c.mask, c.size, c.result);
  }
}

TEST(PasswordNarrow, ScratchFailureGivesMinusOneAndLeavesDst) {
  for_each_allocation_failure([] {
    auto dst = sentinel_buffer<char>(12);
    const int32_t result = KZ_StringPasswordA(3, "ab", dst.data(), 12, kMask);
    EXPECT_TRUE(result == -1 ? dst[0] == 0x7B : result == 8 && std::strlen(dst.data()) == 8)
        << result;
  });
}

}  // namespace
