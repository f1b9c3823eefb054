// Masked password text in both twins.
#include <cstring>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Password);

constexpr int32_t kMask = 1;
constexpr int32_t kUnmask = 0;

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
  // key, mask, src, expected, size, result (-2: the length of expected)
  const std::tuple<uint16_t, int32_t, const char*, const char*, int32_t, int32_t, Only> cases[] = {
      {0, kMask, "A", "001t", 64, -2, kBoth},
      {0x41, kMask, "A", "0000", 64, -2, kBoth},
      {0xFFFF, kMask, "\x01", "1eke", 64, -2, kBoth},
      {0, kUnmask, "001T003e", "Az", 64, -2, kBoth},
      {0, kUnmask, "001t1", "A\x01", 64, -2, kBoth},
      {0x41, kUnmask, "*01t", "A", 64, -2, kBoth},
      {0x40, kUnmask, "01*t", "A", 64, -2, kBoth},
      {0xFFBE, kUnmask, "-001", "A", 64, -2, kBoth},
      {0x40, kUnmask, "  1z", "\x07", 64, -2, kBoth},
      {0, kUnmask, "001t0000001t", "A", 64, -2, kBoth},
      {0, kMask, "\x93\xFA\x96\x7B", "0k4l0kdo", 64, 8, kNarrow},
      {0, kUnmask, "0k4l0kdo", "\x93\xFA\x96\x7B", 64, 2, kNarrow},
      {7, kMask, "ab", "002u002t", 9, -2, kBoth},
      {7, kMask, "ab", "", 8, -1, kBoth},
      {7, kMask, "ab", "", 0, -1, kBoth},
      {7, kMask, "", "", 1, 0, kBoth},
      {7, kMask, "ab", "", 1, -1, kWide},
      {7, kUnmask, "001t001t", "FF", 3, -2, kWide},
      {7, kUnmask, "001t001t", "", 2, -1, kWide}};
  for (const auto& [key, mask, src, expected, size, wanted, only] : cases) {
    if (!runs<Ch>(only)) continue;
    const auto result = wanted == -2 ? static_cast<int32_t>(std::strlen(expected)) : wanted;
    auto dst = sentinel_buffer<Ch>(static_cast<std::size_t>(size) + 1);
    EXPECT_EQ(Twin<Ch>::StringPassword(key, text<Ch>(src).c_str(), dst.data(), size, mask), result)
        << src << " size " << size;
    // On failure the wide twin leaves the empty text, the narrow one dst as it was.
    EXPECT_TRUE(result < 0 && (sizeof(Ch) == 1 || size == 0)
                    ? untouched_from(dst, 0)
                    : holds(dst, text<Ch>(expected), 0, static_cast<std::size_t>(size)))
        << src << " size " << size;
  }
}

}  // namespace
