// The formatters and the runtime's number parse and case-blind compare, as
// the library uses them. Cases hold on Windows' own calls as well (under
// Wine) and on the POSIX reproduction.
#include <climits>
#include <string>

#include "datetime/datetime.h"
#include "platform/platform.h"
#include "support.h"

namespace {

using kz::test::text;

template <class Ch>
class PlatformFormat : public ::testing::Test {};
TYPED_TEST_SUITE(PlatformFormat, kz::test::ElementTypes);

template <class Ch, class... Args>
std::basic_string<Ch> format(int* written, const char* layout, Args... args) {
  auto buffer = kz::test::sentinel_buffer<Ch>(2000);
  const auto wide_layout = text<Ch>(layout);
  *written = kz::datetime::Calls<Ch>::format(buffer.data(), wide_layout.c_str(), args...);
  return std::basic_string<Ch>(buffer.data());
}

TYPED_TEST(PlatformFormat, WritesNumbersWithZeroFlagWidthAndPrecision) {
  using Ch = TypeParam;
  struct Case {
    const char* layout;
    int value;
    const char* expected;
  };
  const Case cases[] = {
      {"%04d", 7, "0007"},      {"%04d", 12345, "12345"},
      {"%04d", -12, "-012"},    {"%2d", 5, " 5"},
      {"%-3d|", 7, "7  |"},     {"%-05d|", 42, "42   |"},
      {"%.2d", 7, "07"},        {"%d", INT_MIN, "-2147483648"},
      {"%u", -1, "4294967295"}, {"%x", 255, "ff"},
      {"%X", 255, "FF"},        {"%08x", 0xABCD, "0000abcd"},
      {"%#x", 255, "0xff"},     {"%ld", 7, "7"},
      {"%03d", 65535, "65535"},
  };
  for (const Case& c : cases) {
    int written = 0;
    EXPECT_EQ(format<Ch>(&written, c.layout, c.value), text<Ch>(c.expected)) << c.layout;
    EXPECT_EQ(written, static_cast<int>(std::string(c.expected).size())) << c.layout;
  }
}

TYPED_TEST(PlatformFormat, WritesTextAndPercent) {
  using Ch = TypeParam;
  const auto word = text<Ch>("ab");
  int written = 0;
  EXPECT_EQ(format<Ch>(&written, "[%5s][%-4s][%.1s][%%]", word.c_str(), word.c_str(), word.c_str()),
            text<Ch>("[   ab][ab  ][a][%]"));
  EXPECT_EQ(written, 19);
  EXPECT_EQ(format<Ch>(&written, "%sT00:00:00", word.c_str()), text<Ch>("abT00:00:00"));
}

TEST(PlatformFormat, NarrowCharacterKeepsItsLowEightBits) {
  int written = 0;
  // A char with the high bit set arrives sign-extended.
  EXPECT_EQ(format<char>(&written, "[%c]", static_cast<char>(0xE9)), "[\xE9]");
  EXPECT_EQ(format<char>(&written, "%c", 0x1FF41), "A");
  EXPECT_EQ(written, 1);
}

TEST(PlatformFormat, WideCharacterIsOneUnit) {
  int written = 0;
  EXPECT_EQ(format<kz::wchar>(&written, "%c", 0x706B), kz::test::utf16("火"));
  EXPECT_EQ(written, 1);
}

TYPED_TEST(PlatformFormat, StopsAtTheSystemLimitOf1024Elements) {
  using Ch = TypeParam;
  const std::basic_string<Ch> long_text(1500, static_cast<Ch>('a'));
  auto buffer = kz::test::sentinel_buffer<Ch>(2000);
  const auto layout = text<Ch>("%s");
  const int written =
      kz::datetime::Calls<Ch>::format(buffer.data(), layout.c_str(), long_text.c_str());
  EXPECT_EQ(written, 1024);  // the count of a cut text is the limit itself
  EXPECT_EQ(buffer[1022], static_cast<Ch>('a'));
  EXPECT_EQ(buffer[1023], 0);
  EXPECT_EQ(buffer[1024], static_cast<Ch>(0x7B));
}

template <class Ch>
class PlatformParse : public ::testing::Test {};
TYPED_TEST_SUITE(PlatformParse, kz::test::ElementTypes);

TYPED_TEST(PlatformParse, ReadsALeadingIntegerAndSaturates) {
  using Ch = TypeParam;
  struct Case {
    const char* input;
    int expected;
  };
  const Case cases[] = {
      {"2024", 2024},
      {"  \t\n42x", 42},
      {"-1", -1},
      {"+7", 7},
      {"", 0},
      {"abc", 0},
      {"- 5", 0},
      {"007", 7},
      {"12:34", 12},
      {"2147483647", INT_MAX},
      {"2147483648", INT_MAX},
      {"-2147483648", INT_MIN},
      {"-99999999999999999999", INT_MIN},
      {"65536", 65536},
  };
  for (const Case& c : cases)
    EXPECT_EQ(kz::datetime::Calls<Ch>::to_int(text<Ch>(c.input).c_str()), c.expected) << c.input;
}

TYPED_TEST(PlatformParse, ComparesFoldingAsciiCaseOnly) {
  using Ch = TypeParam;
  const auto cmp = [](const char* a, const char* b) {
    return kz::datetime::Calls<Ch>::compare_folded(text<Ch>(a).c_str(), text<Ch>(b).c_str());
  };
  EXPECT_EQ(cmp("Jan", "jAN"), 0);
  EXPECT_EQ(cmp("", ""), 0);
  EXPECT_LT(cmp("Jan", "January"), 0);
  EXPECT_GT(cmp("Jan", ""), 0);
  EXPECT_LT(cmp("a", "B"), 0);
  EXPECT_NE(cmp("[", "{"), 0);  // neighbours of the letters do not fold
}

}  // namespace
