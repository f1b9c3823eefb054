// The portable number parses of numbers.cpp on both builds: ASCII text
// against the C library's strtoll and strtoull, and the wide runtime's Unicode white space and
// digits as measured under Wine's ucrtbase _wtoi, which the other wide parses follow too.
#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <random>

#include "platform/platform.h"
#include "support.h"

namespace {

using namespace kz::test;

// Which units the wide parses skip as white space and read as digits;
// narrow text sees these as junk. A full-width minus is no sign.
TEST(NumberParse, WideSpacesAndDigitsOfOtherScripts) {
  for (const char* space : {"\u3000", "\u00A0", "\u0085", "\u1680", "\u2000", "\u200A", "\u2028",
                            "\u2029", "\u202F", "\u205F"})
    EXPECT_EQ(kz::os::_wtoi(utf16(std::string(space) + "5").c_str()), 5) << space;
  for (const char* junk : {"\x1C", "\u200B", "\u180E", "\uFEFF", "\uFF0D", "\u065F"})
    EXPECT_EQ(kz::os::_wtoi(utf16(std::string(junk) + "5").c_str()), 0) << junk;
  const struct {
    const char* utf8;
    std::int64_t value;
  } digits[] = {
      {"-\uFF11\uFF12", -12},
      {"\uFF19\u0669\uFF1A", 99},
      {"\u06601\u066A", 1},
      {"\u06F7\u0967\u09E8\u0A69\u0AEA\u0B6B\u0C66\u0CEF\u0D61", 71234509},
      {"\u0E51\u0ED2\u0F23\u1044\u17E5\u1816\u1819", 1234569},
      {"\uFF11\uFF18\uFF14\uFF14\uFF16\uFF17\uFF14\uFF14\uFF10\uFF17\uFF13\uFF17\uFF10\uFF19"
       "\uFF15\uFF15\uFF11\uFF16\uFF11\uFF16",
       INT64_MAX},
  };
  for (const auto& c : digits) EXPECT_EQ(kz::os::_wtoi64(utf16(c.utf8).c_str()), c.value) << c.utf8;
}

// Every unit is white space, a digit or neither alike for all wide parses.
TEST(NumberParse, WideParsesAgreeOnEveryUnit) {
  for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) {
    const wchar behind[] = {'1', static_cast<wchar>(unit), 0};
    const wchar before[] = {static_cast<wchar>(unit), '7', 0};
    for (const wchar* probe : {behind, before}) {
      const int as_int = kz::os::_wtoi(probe);
      ASSERT_EQ(kz::os::_wtoi64(probe), as_int) << std::hex << unit;
      ASSERT_EQ(static_cast<std::int64_t>(kz::os::_wcstoui64(probe, nullptr, 10)), as_int) << unit;
      ASSERT_EQ(kz::os::wcstol(probe, nullptr, 10), as_int) << std::hex << unit;
    }
  }
}

// ASCII text in both widths against the C library: random text of digits,
// blanks, signs and junk, then every limit and one past it with each sign.
TEST(NumberParse, AgreesWithTheCLibraryOnAsciiText) {
  const auto check = [](const std::string& text) {
    const auto wide = kz::test::text<wchar>(text);
    const long long as_long_long = std::strtoll(text.c_str(), nullptr, 10);
    const auto as_int =
        static_cast<std::int32_t>(std::clamp<long long>(as_long_long, INT32_MIN, INT32_MAX));
    errno = 0;
    unsigned long long as_unsigned = std::strtoull(text.c_str(), nullptr, 10);
    if (errno == ERANGE) as_unsigned = UINT64_MAX;
    ASSERT_EQ(kz::os::atoi(text.c_str()), as_int) << text;
    ASSERT_EQ(kz::os::_wtoi(wide.c_str()), as_int) << text;
    ASSERT_EQ(kz::os::_atoi64(text.c_str()), as_long_long) << text;
    ASSERT_EQ(kz::os::_wtoi64(wide.c_str()), as_long_long) << text;
    ASSERT_EQ(kz::os::_strtoui64(text.c_str(), nullptr, 10), as_unsigned) << text;
    ASSERT_EQ(kz::os::_wcstoui64(wide.c_str(), nullptr, 10), as_unsigned) << text;
  };
  std::mt19937 random(12);
  const char alphabet[] = "0123456789999 \t\n\v\f\r+--x";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto n = random() % 26; n > 0; --n)
      text.push_back(alphabet[random() % (sizeof alphabet - 1)]);
    check(text);
  }
  for (const char* sign : {"", "-"})
    for (const char* limit :
         {"2147483647", "2147483648", "2147483649", "9223372036854775807", "9223372036854775808",
          "9223372036854775809", "18446744073709551615", "18446744073709551616"})
      check(sign + std::string(limit));
  EXPECT_EQ(kz::os::atoi("\x81\x40\x31"), 0);  // a Shift-JIS ideographic space is junk
}

}  // namespace
