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

template <class Ch>
class Hex : public ::testing::Test {};
TYPED_TEST_SUITE(Hex, ElementTypes);

// The width bounds; the notations and widths within them are checked by the
// round trip below.
TYPED_TEST(Hex, RefusesAWidthOrStyleOutOfRange) {
  using Ch = TypeParam;
  const int32_t refused[][2] = {{33, 0}, {-1, 0}, {0, 6}, {0, -1}};
  for (const auto& c : refused) {
    auto dst = sentinel_buffer<Ch>(40);
    EXPECT_EQ(Twin<Ch>::HexString(1u, dst.data(), c[0], c[1]), 0) << c[0] << " " << c[1];
    EXPECT_TRUE(untouched_from(dst, 0));
  }
  auto dst = sentinel_buffer<Ch>(40);
  EXPECT_EQ(Twin<Ch>::HexString(0xFFu, dst.data(), 0, 3), 1);
  EXPECT_EQ(str(dst), text<Ch>("ffH"));
  EXPECT_TRUE(untouched_from(dst, 4));
}

TYPED_TEST(Hex, ReadsEachNotationAndTellsWhetherAllWasANumber) {
  using Ch = TypeParam;
  struct Case {
    const char* text;
    int32_t value, valid;
  } cases[] = {
      {"1F", 31, 1},
      {"0x1F", 31, 1},
      {"x1F", 31, 1},
      {"$1F", 31, 1},
      {"1Fh", 31, 1},
      {"Ah", 10, 1},
      {"0h", 0, 1},
      // A single element keeps its h, which is no digit.
      {"h", 0, 0},
      {"x", 0, 1},
      {"", 0, 1},
      // Only one mark goes.
      {"0x1Fh", 31, 0},
      {"$1Fh", 31, 0},
      {"x0x1F", 31, 1},
      {"0x", 0, 0},
      {"-1F", -31, 1},
      {"$-1F", -31, 1},
      {"-0x1F", -31, 1},
      {" 1F", 31, 1},
      {"1F ", 31, 0},
      {"7FFFFFFF", INT32_MAX, 1},
      {"80000000", INT32_MAX, 1},
      {"-80000000", INT32_MIN, 1},
      {"-80000001", INT32_MIN, 1},
  };
  for (const auto& c : cases) {
    int32_t valid = -5;
    EXPECT_EQ(Twin<Ch>::StringHex(text<Ch>(c.text).c_str(), &valid), c.value) << c.text;
    EXPECT_EQ(valid, c.valid) << c.text;
  }
  if constexpr (sizeof(Ch) == 2) {
    // The wide parse skips an ideographic space and reads full-width digits.
    int32_t valid = -5;
    EXPECT_EQ(KZ_StringHexW(utf16("\u3000\uFF11\uFF12h").c_str(), &valid), 0x12);
    EXPECT_EQ(valid, 1);
  }
}

// Every style and width written reads back: with valid 1 up to 0x7FFFFFFF,
// and as 0x7FFFFFFF above it. The digits are the C library's "%0*x".
TYPED_TEST(Hex, EveryWrittenTextReadsBack) {
  using Ch = TypeParam;
  std::mt19937 random(5);
  for (int round = 0; round < 300; ++round) {
    const uint32_t value = static_cast<uint32_t>(random()) >> (random() % 32);
    char digits[40];
    for (int32_t width = 0; width <= 32; ++width) {
      std::snprintf(digits, sizeof digits, "%0*x", width, value);
      for (int32_t style = 0; style <= 5; ++style) {
        auto dst = sentinel_buffer<Ch>(40);
        ASSERT_EQ(Twin<Ch>::HexString(value, dst.data(), width, style), 1);
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

TYPED_TEST(Hex, AllocationFailureGivesNoValue) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    int32_t valid = -5;
    const int32_t value = Twin<Ch>::StringHex(text<Ch>("$1F").c_str(), &valid);
    EXPECT_TRUE((value == 31 && valid == 1) || (value == 0 && valid == 0)) << value << valid;
  });
  int32_t valid = -5;
  kz::alloc_faults::arm(1, false);
  EXPECT_EQ(Twin<Ch>::StringHex(text<Ch>("1F").c_str(), &valid), 0);
  kz::alloc_faults::disarm();
  EXPECT_EQ(valid, 0);
}

TEST(ByteSwap, ReversesTheBytesInMemory) {
  std::mt19937 random(9);
  for (int round = 0; round < 1000; ++round) {
    const auto dword = static_cast<uint32_t>(random());
    const auto word = static_cast<uint16_t>(dword);
    unsigned char bytes[4], swapped[4];
    std::memcpy(bytes, &dword, 4);
    const uint32_t reversed = KZ_XChgDWord(dword);
    std::memcpy(swapped, &reversed, 4);
    for (int i = 0; i < 4; ++i) ASSERT_EQ(swapped[i], bytes[3 - i]) << dword;
    ASSERT_EQ(KZ_XChgDWord(reversed), dword);
    const uint16_t swapped_word = KZ_XChgWord(word);
    std::memcpy(swapped, &swapped_word, 2);
    ASSERT_EQ(swapped[0], bytes[1]);
    ASSERT_EQ(swapped[1], bytes[0]);
  }
}

}  // namespace
