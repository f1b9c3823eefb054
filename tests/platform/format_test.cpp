// The formatters and the runtime's number parse and case-blind compare, as
// the library uses them. Cases hold on Windows' own calls as well (under
// Wine) and on the POSIX reproduction.
#include <climits>
#include <string>

#include "frame/text.h"
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(PlatformCalls);

// Formats into a sentinel buffer; checks the count and that nothing stands
// behind the terminator.
template <class Ch, class... Args>
std::basic_string<Ch> format(const char* layout, Args... args) {
  auto buffer = sentinel_buffer<Ch>(2000);
  const int written = kz::Text<Ch>::format(buffer.data(), text<Ch>(layout).c_str(), args...);
  const auto out = str(buffer);
  EXPECT_EQ(written, static_cast<int>(out.size())) << layout;
  EXPECT_TRUE(untouched_from(buffer, out.size() + 1)) << layout;
  return out;
}

TYPED_TEST(PlatformCalls, FormatsNumbersWithZeroFlagWidthAndPrecision) {
  using Ch = TypeParam;
  struct Case {
    const char* layout;
    int value;
    const char* expected;
  } cases[] = {
      {"%04d", 7, "0007"},      {"%04d", 12345, "12345"}, {"%04d", -12, "-012"},
      {"%-05d|", 42, "42   |"}, {"%.2d", 7, "07"},        {"%d", INT_MIN, "-2147483648"},
      {"%u", -1, "4294967295"}, {"%X", 255, "FF"},        {"%#x", 255, "0xff"},
      {"%ld", 7, "7"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(format<Ch>(c.layout, c.value), text<Ch>(c.expected)) << c.layout;
  const auto word = text<Ch>("ab");
  EXPECT_EQ(format<Ch>("[%5s][%-4s][%.1s][%%]", word.c_str(), word.c_str(), word.c_str()),
            text<Ch>("[   ab][ab  ][a][%]"));
  EXPECT_EQ(format<Ch>("%sT00:00:00", word.c_str()), text<Ch>("abT00:00:00"));
  // A narrow character keeps its low eight bits (a char with the high bit
  // arrives sign-extended); a wide one is one unit.
  if constexpr (sizeof(Ch) == 1) {
    EXPECT_EQ(format<Ch>("[%c]", '\xE9'), "[\xE9]");
    EXPECT_EQ(format<Ch>("%c", 0x1FF41), "A");
  } else {
    EXPECT_EQ(format<Ch>("%c", 0x706B), utf16("火"));
  }
}

TYPED_TEST(PlatformCalls, FormatStopsAtTheSystemLimitOf1024Elements) {
  using Ch = TypeParam;
  const std::basic_string<Ch> long_text(1500, static_cast<Ch>('a'));
  auto buffer = sentinel_buffer<Ch>(2000);
  const int written =
      kz::Text<Ch>::format(buffer.data(), text<Ch>("%s").c_str(), long_text.c_str());
  EXPECT_EQ(written, 1024);  // the count of a cut text is the limit itself
  EXPECT_EQ(str(buffer), long_text.substr(0, 1023));
  EXPECT_TRUE(untouched_from(buffer, 1024));
}

TYPED_TEST(PlatformCalls, ReadsALeadingIntegerAndSaturates) {
  using Ch = TypeParam;
  struct Case {
    const char* input;
    int expected;
  } cases[] = {
      {"  \t\n42x", 42},
      {"-1", -1},
      {"+7", 7},
      {"", 0},
      {"- 5", 0},
      {"2147483647", INT_MAX},
      {"2147483648", INT_MAX},
      {"-2147483648", INT_MIN},
      {"-99999999999999999999", INT_MIN},
  };
  for (const Case& c : cases)
    EXPECT_EQ(kz::Text<Ch>::to_int(text<Ch>(c.input).c_str()), c.expected) << c.input;
}

TYPED_TEST(PlatformCalls, ComparesFoldingAsciiCaseOnly) {
  using Ch = TypeParam;
  struct Case {
    const char *a, *b;
    int sign;
  } cases[] = {{"Jan", "jAN", 0}, {"", "", 0},   {"Jan", "January", -1}, {"Jan", "", 1},
               {"a", "B", -1},    {"[", "{", -1}};  // neighbours of letters do not fold
  for (const Case& c : cases) {
    const int result = kz::Text<Ch>::compare_folded(text<Ch>(c.a).c_str(), text<Ch>(c.b).c_str());
    EXPECT_EQ((result > 0) - (result < 0), c.sign) << c.a << " vs " << c.b;
  }
}

}  // namespace
