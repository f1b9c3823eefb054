// Hexadecimal text in both twins: the six notations written and read back,
// the marks the reader takes away, the signed limits of its parse, and the
// byte swaps. Allocation failures are held by the allocation table.
#include <cstdio>
#include <cstring>
#include <random>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Hex);

// Every style and width written reads back: with valid 1 up to 0x7FFFFFFF,
// and as 0x7FFFFFFF above it. The digits are the C library's "%0*x"; a
// width or style beyond the range is refused without a write. The byte
// swaps go as the builtin ones.
TYPED_TEST(Hex, EveryWrittenTextReadsBack) {
  using Ch = TypeParam;
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    const uint32_t value = static_cast<uint32_t>(random()) >> (random() % 32);
    ASSERT_EQ(KZ_XChgDWord(value), __builtin_bswap32(value));
    ASSERT_EQ(KZ_XChgWord(uint16_t(value)), __builtin_bswap16(uint16_t(value)));
    char digits[40];
    for (int32_t width = -1; width <= 33; ++width) {
      std::snprintf(digits, sizeof digits, "%0*x", width, value);
      for (int32_t style = -1; style <= 6; ++style) {
        auto dst = sentinel_buffer<Ch>(40);
        const bool refused = width < 0 || width > 32 || style < 0 || style > 5;
        ASSERT_EQ(Twin<Ch>::HexString(value, dst.data(), width, style), refused ? 0 : 1);
        if (refused) {
          ASSERT_TRUE(untouched_from(dst, 0)) << width << " " << style;
          continue;
        }
        const std::string written(dst.begin(), dst.begin() + str(dst).size());
        ASSERT_NE(written.find(digits), std::string::npos) << written << " " << digits;
        ASSERT_EQ(written.size(), std::strlen(digits) + (style == 0 ? 0 : style == 1 ? 2 : 1));
        int32_t valid = -5;
        const int32_t back = Twin<Ch>::StringHex(dst.data(), &valid);
        ASSERT_EQ(joined(back, valid), joined(std::min<uint32_t>(value, INT32_MAX), 1)) << written;
      }
    }
  }
  // What no writer makes: one mark at most goes, a lone "h" stays, signs and
  // the lower limit (blanks are the parse's own, held in its tests); the wide
  // parse skips an ideographic space and reads full-width digits.
  const std::tuple<const char*, int32_t, int32_t> cases[] = {
      {"h", 0, 0},       {"0h", 0, 1},     {"x", 0, 1},
      {"0x", 0, 0},      {"0x1Fh", 31, 0}, {"x0x1F", 31, 1},
      {"-0x1F", -31, 1}, {"$-1F", -31, 1}, {"-80000001", INT32_MIN, 1}};
  int32_t valid = -5;
  for (const auto& [input, value, expected_valid] : cases) {
    const int32_t got = Twin<Ch>::StringHex(text<Ch>(input).c_str(), &valid);
    EXPECT_EQ(joined(got, valid), joined(value, expected_valid)) << input;
  }
  EXPECT_EQ(KZ_StringHexW(utf16("\u3000\uFF11\uFF12h").c_str(), &valid), 0x12);
  EXPECT_EQ(valid, 1);
}

}  // namespace
