// Masked password text in both twins.
#include <cstring>

#include "strings/api.h"

namespace {

using namespace kz::test;

template <class Ch>
class Password : public ::testing::Test {};
TYPED_TEST_SUITE(Password, ElementTypes);

constexpr int32_t kMask = 1;
constexpr int32_t kUnmask = 0;

template <class Ch>
std::pair<int32_t, std::basic_string<Ch>> password(uint16_t key, const std::string& src,
                                                   int32_t mask, int32_t size = 64) {
  auto dst = sentinel_buffer<Ch>(static_cast<std::size_t>(size) + 1);
  const int32_t result =
      Strings<Ch>::StringPassword(key, text<Ch>(src).c_str(), dst.data(), size, mask);
  EXPECT_EQ(dst[static_cast<std::size_t>(size)], Ch{0x7B}) << "wrote behind size";
  return {result, result < 0 ? std::basic_string<Ch>() : std::basic_string<Ch>(dst.data())};
}

TYPED_TEST(Password, MaskWritesFourBase36DigitsPerUnit) {
  using Ch = TypeParam;
  struct Case {
    uint16_t key;
    const char *src, *masked;
  } cases[] = {
      {0, "", ""},
      {0, "A", "001t"},  // 0x41 = 65 = 1 * 36 + 29
      {0, "Az", "001t003e"},
      {0x41, "A", "0000"},         // a unit equal to the key
      {0xFFFF, "\x01", "1eke"},    // 0xFFFE; 65535 is "1ekf"
      {0x1234, "aa", "03md03md"},  // equal units give equal groups
  };
  for (const auto& c : cases) {
    const auto [result, dst] = password<Ch>(c.key, c.src, kMask);
    EXPECT_EQ(result, static_cast<int32_t>(std::string(c.masked).size())) << c.src;
    EXPECT_EQ(dst, text<Ch>(c.masked)) << c.src;
  }
}

TYPED_TEST(Password, UnmaskReadsGroupsTolerantly) {
  using Ch = TypeParam;
  struct Case {
    uint16_t key;
    const char *src, *plain;
  } cases[] = {
      {0, "", ""},
      {0, "001t003e", "Az"},
      {0x41, "0000", "A"},
      {0, "001T003E", "Az"},   // either case
      {0, "001t1", "A\x01"},   // a short last group reads as a shorter number
      {0x41, "*01t", "A"},     // a group without a number reads as 0
      {0x40, "01*t", "A"},     // reading stops at the first other element
      {0xFFBE, "-001", "A"},   // a sign is taken: -1 is 0xFFFF
      {0x40, "  1z", "\x07"},  // leading white space too: 1z is 71, 71 ^ 0x40
      // A group that gives the unit 0 ends the text.
      {0x41, "001t0000", ""},
      {0, "001t0000001t", "A"},
  };
  for (const auto& c : cases) {
    const auto [result, dst] = password<Ch>(c.key, c.src, kUnmask);
    EXPECT_EQ(result, static_cast<int32_t>(std::string(c.plain).size())) << c.src;
    EXPECT_EQ(dst, text<Ch>(c.plain)) << c.src;
  }
}

TYPED_TEST(Password, RoundTripAndWrongKey) {
  using Ch = TypeParam;
  const std::string plain = "Secret, 123!";
  const auto [masked_length, masked] = password<Ch>(0x5A17, plain, kMask);
  ASSERT_EQ(masked_length, 48);
  std::string masked_bytes(masked.begin(), masked.end());
  const auto [length, back] = password<Ch>(0x5A17, masked_bytes, kUnmask);
  EXPECT_EQ(length, 12);
  EXPECT_EQ(back, text<Ch>(plain));
  // Another key gives another text of as many units and no failure.
  const auto [wrong_length, wrong] = password<Ch>(0x5A16, masked_bytes, kUnmask);
  EXPECT_EQ(wrong_length, 12);
  EXPECT_NE(wrong, text<Ch>(plain));
}

TYPED_TEST(Password, MaskNeedsFourElementsPerUnitAndTheTerminator) {
  using Ch = TypeParam;
  // "ab" masks to 8 elements and needs a size of 9.
  struct Case {
    int32_t size, result;
    // Sizes below 3 do not hold the narrow twin's input and stand in the
    // wide test below.
  } cases[] = {{10, 8}, {9, 8}, {8, -1}, {3, -1}, {0, -1}};
  for (const auto& c : cases) {
    const auto [result, dst] = password<Ch>(7, "ab", kMask, c.size);
    EXPECT_EQ(result, c.result) << c.size;
  }
  EXPECT_EQ(password<Ch>(7, "", kMask, 1).first, 0);
}

TEST(PasswordWide, FailureLeavesTheEmptyText) {
  auto dst = sentinel_buffer<wchar>(9);
  EXPECT_EQ(KZ_StringPasswordW(7, text<wchar>("ab").c_str(), dst.data(), 8, kMask), -1);
  EXPECT_EQ(dst[0], wchar{0});
  EXPECT_EQ(dst[8], wchar{0x7B});
  dst = sentinel_buffer<wchar>(9);
  EXPECT_EQ(KZ_StringPasswordW(7, text<wchar>("ab").c_str(), dst.data(), 1, kMask), -1);
  EXPECT_EQ(dst[0], wchar{0});
  EXPECT_EQ(dst[1], wchar{0x7B});
  // "001t001t" unmasks to two units, which need 3.
  dst = sentinel_buffer<wchar>(9);
  EXPECT_EQ(KZ_StringPasswordW(0, text<wchar>("001t001t").c_str(), dst.data(), 3, kUnmask), 2);
  dst = sentinel_buffer<wchar>(9);
  EXPECT_EQ(KZ_StringPasswordW(0, text<wchar>("001t001t").c_str(), dst.data(), 2, kUnmask), -1);
  EXPECT_EQ(dst[0], wchar{0});
  EXPECT_EQ(dst[2], wchar{0x7B});
}

TEST(PasswordNarrow, FailureLeavesDstAsItWas) {
  auto dst = sentinel_buffer<char>(9);
  EXPECT_EQ(KZ_StringPasswordA(7, "ab", dst.data(), 8, kMask), -1);
  EXPECT_EQ(dst[0], char{0x7B});
}

TEST(PasswordNarrow, SourceTooLongForSizeStaysInsideTheScratch) {
  // The wide form of the masked text needs 9 units; with size 8 the
  // conversion fails, and whatever it left is read within the buffer.
  auto dst = sentinel_buffer<char>(9);
  const int32_t result = KZ_StringPasswordA(0, "001t001t", dst.data(), 8, kUnmask);
  EXPECT_LE(result, 2);
  EXPECT_EQ(dst[8], char{0x7B});
}

TEST(PasswordNarrow, ADoubleByteCharacterIsOneGroup) {
  // "日本" is U+65E5 U+672C: 26085 and 26412 in base 36.
  auto dst = sentinel_buffer<char>(12);
  ASSERT_EQ(KZ_StringPasswordA(0, "\x93\xFA\x96\x7B", dst.data(), 12, kMask), 8);
  EXPECT_EQ(std::string(dst.data()), "0k4l0kdo");
  auto back = sentinel_buffer<char>(12);
  ASSERT_EQ(KZ_StringPasswordA(0, dst.data(), back.data(), 12, kUnmask), 2);
  EXPECT_EQ(std::string(back.data()), "\x93\xFA\x96\x7B");
}

TEST(PasswordNarrow, ScratchFailureGivesMinusOneAndLeavesDst) {
  for_each_allocation_failure([] {
    auto dst = sentinel_buffer<char>(12);
    const int32_t result = KZ_StringPasswordA(3, "ab", dst.data(), 12, kMask);
    if (result == -1) {
      EXPECT_EQ(dst[0], char{0x7B});
    } else {
      EXPECT_EQ(result, 8);
      EXPECT_EQ(std::strlen(dst.data()), 8u);
    }
  });
}

}  // namespace
