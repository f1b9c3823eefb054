// The runtime calls the library relies on, the same on both builds: the
// formatters, the case-blind compare, the portable number text of radix.cpp
// (as the masked password text uses it) and the number parses of
// numbers.cpp, ASCII text against the C library's strtoll and strtoull and
// the wide runtime's Unicode white space and digits as measured under Wine's
// ucrtbase _wtoi, which the other wide parses follow too.
#include <algorithm>
#include <cerrno>
#include <climits>
#include <random>

#include "frame/text.h"
#include "platform/platform.h"
#include "support.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

KZ_TWIN_SUITE(PlatformCalls);

// Formats into a sentinel buffer; checks the count and that nothing stands
// behind the terminator.
template <class Ch, class... Args>
std::basic_string<Ch> format(const char* layout, Args... args) {
  auto buffer = sentinel_buffer<Ch>(2000);
  const int written = kz::Text<Ch>::format(buffer.data(), text<Ch>(layout).c_str(), args...);
  const auto out = str(buffer);
  // The count of a cut text is the limit itself.
  EXPECT_EQ(written, out.size() == 1023 ? 1024 : static_cast<int>(out.size())) << layout;
  EXPECT_TRUE(untouched_from(buffer, out.size() + 1)) << layout;
  return out;
}

TYPED_TEST(PlatformCalls, FormatsWithFlagsWidthAndPrecisionUpToTheLimitOf1024) {
  using Ch = TypeParam;
  const std::tuple<const char*, int, const char*> cases[] = {
      {"%04d", 7, "0007"},      {"%04d", 12345, "12345"}, {"%04d", -12, "-012"},
      {"%-05d|", 42, "42   |"}, {"%.2d", 7, "07"},        {"%d", INT_MIN, "-2147483648"},
      {"%u", -1, "4294967295"}, {"%X", 255, "FF"},        {"%#x", 255, "0xff"},
      {"%ld", 7, "7"}};
  for (const auto& [layout, value, expected] : cases)
    EXPECT_EQ(format<Ch>(layout, value), text<Ch>(expected));
  const auto word = text<Ch>("ab");
  EXPECT_EQ(format<Ch>("[%5s][%-4s][%.1s][%%]", word.c_str(), word.c_str(), word.c_str()),
            text<Ch>("[   ab][ab  ][a][%]"));
  EXPECT_EQ(format<Ch>("%sT00:00:00", word.c_str()), text<Ch>("abT00:00:00"));
  const std::basic_string<Ch> long_text(1500, Ch('a'));
  EXPECT_EQ(format<Ch>("%s", long_text.c_str()), long_text.substr(0, 1023));
  // A narrow character keeps its low eight bits (a char with the high bit
  // arrives sign-extended); a wide one is one unit.
  if constexpr (sizeof(Ch) == 1) {
    EXPECT_EQ(format<Ch>("[%c]", '\xE9'), "[\xE9]");
    EXPECT_EQ(format<Ch>("%c", 0x1FF41), "A");
  } else {
    EXPECT_EQ(format<Ch>("%c", 0x706B), utf16("火"));
  }
}

TYPED_TEST(PlatformCalls, ComparesFoldingAsciiCaseOnly) {
  using Ch = TypeParam;
  const std::tuple<const char*, const char*, int> cases[] = {
      {"Jan", "jAN", 0}, {"", "", 0},    {"Jan", "January", -1},
      {"Jan", "", 1},    {"a", "B", -1}, {"[", "{", -1}};  // neighbours of letters do not fold
  for (const auto& [a, b, sign] : cases) {
    const int result = kz::Text<Ch>::compare_folded(text<Ch>(a).c_str(), text<Ch>(b).c_str());
    EXPECT_EQ((result > 0) - (result < 0), sign) << a << " vs " << b;
  }
}

// Lower-case digits, a sign only in radix 10; "1ekf" needs 5 units, and a
// buffer too small is left empty.
TEST(Itow, WritesLowerCaseDigitsOfAnyRadixOrLeavesTheBufferEmpty) {
  const std::tuple<int, int, std::size_t, const char*> cases[] = {
      {0, 36, 16, "0"},       {35, 36, 16, "z"},        {36, 36, 16, "10"},
      {-5, 10, 16, "-5"},     {-1, 16, 16, "ffffffff"}, {INT_MIN, 10, 16, "-2147483648"},
      {65535, 36, 5, "1ekf"}, {65535, 36, 4, ""}};  // "": too small a buffer
  for (const auto& [value, radix, size, expected] : cases) {
    auto buffer = sentinel_buffer<wchar>(17);
    EXPECT_EQ(os::_itow_s(value, buffer.data(), size, radix), *expected ? 0 : os::kERANGE) << value;
    EXPECT_TRUE(holds(buffer, text<wchar>(expected), 0, size)) << value;
  }
  wchar buffer[4];
  EXPECT_EQ(os::_itow_s(1, nullptr, 4, 36), os::kEINVAL);
  EXPECT_EQ(os::_itow_s(1, buffer, 4, 37), os::kEINVAL);
}

// The longest number at the head; out of range, clamped to the limits of a
// 32-bit long with every digit still consumed.
TEST(Wcstol, ReadsTheLongestNumberAtTheHead) {
  const std::tuple<const char*, int, std::int32_t, std::size_t> cases[] = {
      {"1ekf", 36, 65535, 4},
      {"  -z", 36, -35, 4},
      {"-", 36, 0, 0},
      {"0x1F", 16, 31, 4},
      {"800000000", 16, INT32_MAX, 9},
      {"-80000001", 16, INT32_MIN, 9},
      {"0x10", 0, 16, 4},
      {"010", 0, 8, 3},
      {"19", 8, 1, 1}};
  for (const auto& [src, radix, value, consumed] : cases) {
    const auto wide = text<wchar>(src);
    wchar* end = nullptr;
    EXPECT_EQ(os::wcstol(wide.c_str(), &end, radix), value) << src;
    EXPECT_EQ(static_cast<std::size_t>(end - wide.c_str()), consumed) << src;
  }
}

// Which units the wide parses skip as white space and read as digits;
// narrow text sees these as junk. A full-width minus is no sign.
TEST(NumberParse, WideSpacesAndDigitsOfOtherScripts) {
  for (const char* space : {"\u3000", "\u00A0", "\u0085", "\u1680", "\u2000", "\u200A", "\u2028",
                            "\u2029", "\u202F", "\u205F"})
    EXPECT_EQ(os::_wtoi(utf16(std::string(space) + "5").c_str()), 5) << space;
  for (const char* junk : {"\x1C", "\u200B", "\u180E", "\uFEFF", "\uFF0D", "\u065F"})
    EXPECT_EQ(os::_wtoi(utf16(std::string(junk) + "5").c_str()), 0) << junk;
  const std::pair<const char*, std::int64_t> digits[] = {
      {"-\uFF11\uFF12", -12},
      {"\uFF19\u0669\uFF1A", 99},
      {"\u06601\u066A", 1},
      {"\u06F7\u0967\u09E8\u0A69\u0AEA\u0B6B\u0C66\u0CEF\u0D61", 71234509},
      {"\u0E51\u0ED2\u0F23\u1044\u17E5\u1816\u1819", 1234569},
      {"\uFF11\uFF18\uFF14\uFF14\uFF16\uFF17\uFF14\uFF14\uFF10\uFF17\uFF13\uFF17\uFF10\uFF19"
       "\uFF15\uFF15\uFF11\uFF16\uFF11\uFF16",
       INT64_MAX}};
  for (const auto& [utf8, value] : digits)
    EXPECT_EQ(os::_wtoi64(utf16(utf8).c_str()), value) << utf8;
}

// ASCII text in both widths against the C library: random text of digits,
// blanks, signs and junk, then every limit and one past it with each sign.
TEST(NumberParse, AgreesWithTheCLibraryOnAsciiText) {
  const auto check = [](const std::string& narrow) {
    const auto wide = text<wchar>(narrow);
    const long long as_long_long = std::strtoll(narrow.c_str(), nullptr, 10);
    const auto as_int =
        static_cast<std::int32_t>(std::clamp<long long>(as_long_long, INT32_MIN, INT32_MAX));
    errno = 0;
    unsigned long long as_unsigned = std::strtoull(narrow.c_str(), nullptr, 10);
    if (errno == ERANGE) as_unsigned = UINT64_MAX;
    ASSERT_EQ(os::atoi(narrow.c_str()), as_int) << narrow;
    ASSERT_EQ(os::_wtoi(wide.c_str()), as_int) << narrow;
    ASSERT_EQ(os::_atoi64(narrow.c_str()), as_long_long) << narrow;
    ASSERT_EQ(os::_wtoi64(wide.c_str()), as_long_long) << narrow;
    ASSERT_EQ(os::_strtoui64(narrow.c_str(), nullptr, 10), as_unsigned) << narrow;
    ASSERT_EQ(os::_wcstoui64(wide.c_str(), nullptr, 10), as_unsigned) << narrow;
  };
  std::mt19937 random(12);
  const char alphabet[] = "0123456789999 \t\n\v\f\r+--x";
  for (int round = 0; round < 20000; ++round) {
    std::string narrow;
    for (auto n = random() % 26; n > 0; --n)
      narrow.push_back(alphabet[random() % (sizeof alphabet - 1)]);
    check(narrow);
  }
  for (const char* sign : {"", "-"})
    for (const char* limit :
         {"2147483647", "2147483648", "2147483649", "9223372036854775807", "9223372036854775808",
          "9223372036854775809", "18446744073709551615", "18446744073709551616"})
      check(sign + std::string(limit));
  EXPECT_EQ(os::atoi("\x81\x40\x31"), 0);  // a Shift-JIS ideographic space is junk
}

}  // namespace
