// Hexadecimal text in both twins: the six notations written and read back,
// the marks the reader takes away, the signed limits of its parse, and the
// byte swaps.
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Hex);

// Every style and width written reads back: with valid 1 up to 0x7FFFFFFF,
// and as 0x7FFFFFFF above it. The digits are the C library's "%0*x"; a
// width or style beyond the range is refused without a write.
TYPED_TEST(Hex, EveryWrittenTextReadsBack) {
  using Ch = TypeParam;
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    const uint32_t value = static_cast<uint32_t>(random()) >> (random() % 32);
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
        const auto elements = str(dst);
        const std::string written(elements.begin(), elements.end());
        ASSERT_NE(written.find(digits), std::string::npos) << written << " " << digits;
        ASSERT_EQ(written.size(), std::strlen(digits) + (style == 0 ? 0 : style == 1 ? 2 : 1));
        int32_t valid = -5;
        const int32_t back = Twin<Ch>::StringHex(dst.data(), &valid);
        ASSERT_EQ(valid, 1) << written;
        ASSERT_EQ(back, value > INT32_MAX ? INT32_MAX : static_cast<int32_t>(value)) << written;
      }
    }
  }
}

// What no writer makes: one mark at most goes, a lone "h" stays, signs,
// blanks and the lower limit.
TYPED_TEST(Hex, ReadsOddTextAndTellsWhetherAllWasANumber) {
  using Ch = TypeParam;
  const struct {
    const char* text;
    int32_t value, valid;
  } cases[] = {
      {"h", 0, 0},
      {"0h", 0, 1},
      {"x", 0, 1},
      {"0x", 0, 0},
      {"0x1Fh", 31, 0},
      {"x0x1F", 31, 1},
      {"-0x1F", -31, 1},
      {"$-1F", -31, 1},
      {" 1F", 31, 1},
      {"1F ", 31, 0},
      {"-80000001", INT32_MIN, 1},
  };
  for (const auto& c : cases) {
    int32_t valid = -5;
    EXPECT_EQ(Twin<Ch>::StringHex(text<Ch>(c.text).c_str(), &valid), c.value) << c.text;
    EXPECT_EQ(valid, c.valid) << c.text;
  }
  // The wide parse skips an ideographic space and reads full-width digits.
  int32_t valid = -5;
  EXPECT_EQ(KZ_StringHexW(utf16("\u3000\uFF11\uFF12h").c_str(), &valid), 0x12);
  EXPECT_EQ(valid, 1);
}

TYPED_TEST(Hex, AllocationFailureGivesNoValue) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    int32_t valid = -5;
    const int32_t value = Twin<Ch>::StringHex(text<Ch>("$1F").c_str(), &valid);
    EXPECT_TRUE((value == 31 && valid == 1) || (value == 0 && valid == 0)) << value << valid;
  });
}

TEST(ByteSwap, ReversesTheBytesInMemory) {
  std::mt19937 random(9);
  for (int round = 0; round < 1000; ++round) {
    const auto dword = static_cast<uint32_t>(random());
    const uint32_t reversed = KZ_XChgDWord(dword);
    const uint16_t word = KZ_XChgWord(static_cast<uint16_t>(dword));
    unsigned char bytes[4], swapped[4], swapped_word[2];
    std::memcpy(bytes, &dword, 4);
    std::memcpy(swapped, &reversed, 4);
    std::memcpy(swapped_word, &word, 2);
    for (int i = 0; i < 4; ++i) ASSERT_EQ(swapped[i], bytes[3 - i]) << dword;
    ASSERT_TRUE(swapped_word[0] == bytes[1] && swapped_word[1] == bytes[0]) << dword;
  }
}

}  // namespace
