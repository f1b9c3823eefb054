// The portable number parses of numbers.cpp, held to one table on both
// builds: the wide runtime's Unicode white space and digits (as measured
// under Wine's ucrtbase _wtoi, which the library's other wide parses follow
// too), every limit and one past it, signs and junk. Random texts are
// compared with the C library's strtoll and strtoull.
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <random>

#include "platform/platform.h"
#include "support.h"

namespace {

using namespace kz::test;

constexpr std::uint64_t kU64Max = UINT64_MAX;

struct Parse {
  const char* utf8;
  std::int32_t as_int;
  std::int64_t as_int64;
  std::uint64_t as_uint64;
};

void expect_wide(const Parse& c) {
  const auto wide = utf16(c.utf8);
  EXPECT_EQ(kz::os::_wtoi(wide.c_str()), c.as_int) << c.utf8;
  EXPECT_EQ(kz::os::_wtoi64(wide.c_str()), c.as_int64) << c.utf8;
  EXPECT_EQ(kz::os::_wcstoui64(wide.c_str(), nullptr, 10), c.as_uint64) << c.utf8;
}

TEST(NumberParse, SignsLimitsAndJunkInBothWidths) {
  const Parse cases[] = {
      {"", 0, 0, 0},
      {"junk", 0, 0, 0},
      {"12ab", 12, 12, 12},
      {" \t\n\v\f\r7", 7, 7, 7},
      {"\x1C"
       "7",
       0, 0, 0},
      {"+7", 7, 7, 7},
      {"-7", -7, -7, kU64Max - 6},
      {"+-7", 0, 0, 0},
      {"- 7", 0, 0, 0},
      {"--7", 0, 0, 0},
      {"000000000000000000000000012", 12, 12, 12},
      {"2147483647", INT32_MAX, 2147483647, 2147483647},
      {"2147483648", INT32_MAX, 2147483648, 2147483648},
      {"-2147483648", INT32_MIN, -2147483648LL, kU64Max - 2147483647},
      {"-2147483649", INT32_MIN, -2147483649LL, kU64Max - 2147483648},
      {"9223372036854775807", INT32_MAX, INT64_MAX, 9223372036854775807ULL},
      {"9223372036854775808", INT32_MAX, INT64_MAX, 9223372036854775808ULL},
      {"-9223372036854775808", INT32_MIN, INT64_MIN, 9223372036854775808ULL},
      {"-9223372036854775809", INT32_MIN, INT64_MIN, 9223372036854775807ULL},
      {"18446744073709551615", INT32_MAX, INT64_MAX, kU64Max},
      {"18446744073709551616", INT32_MAX, INT64_MAX, kU64Max},
      {"-18446744073709551615", INT32_MIN, INT64_MIN, 1},
      // Out of range saturates before the sign is looked at.
      {"-18446744073709551616", INT32_MIN, INT64_MIN, kU64Max},
      {"999999999999999999999999", INT32_MAX, INT64_MAX, kU64Max},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(kz::os::atoi(c.utf8), c.as_int) << c.utf8;
    EXPECT_EQ(kz::os::_atoi64(c.utf8), c.as_int64) << c.utf8;
    EXPECT_EQ(kz::os::_strtoui64(c.utf8, nullptr, 10), c.as_uint64) << c.utf8;
    expect_wide(c);
  }
}

TEST(NumberParse, WideTextSkipsUnicodeSpacesAndReadsDigitsOfOtherScripts) {
  const Parse cases[] = {
      {"\u3000"
       "12",
       12, 12, 12},
      {"\u00A0"
       "5",
       5, 5, 5},
      {"\u0085"
       "5",
       5, 5, 5},
      {"\u1680"
       "5",
       5, 5, 5},
      {"\u2000"
       "5",
       5, 5, 5},
      {"\u200A"
       "5",
       5, 5, 5},
      {"\u2028\u2029\u202F\u205F"
       "5",
       5, 5, 5},
      // Neither the zero-width space, the Mongolian vowel separator nor a
      // byte-order mark is white space.
      {"\u200B"
       "5",
       0, 0, 0},
      {"\u180E"
       "5",
       0, 0, 0},
      {"\uFEFF"
       "5",
       0, 0, 0},
      {"\uFF11\uFF12", 12, 12, 12},
      {"1\uFF123", 123, 123, 123},
      {"-\uFF11\uFF12", -12, -12, kU64Max - 11},
      // A full-width minus is no sign.
      {"\uFF0D"
       "12",
       0, 0, 0},
      {"\uFF19\uFF1A", 9, 9, 9},
      {"\u0660\u0669\u066A", 9, 9, 9},
      {"\u065F"
       "1",
       0, 0, 0},
      {"\u06F7\u0967\u09E8\u0A69\u0AEA", 71234, 71234, 71234},
      {"\u0B6B\u0C66\u0CEF\u0D61", 509, 509, 509},
      {"\u0E51\u0ED2\u0F23\u1044\u17E5\u1816\u1819", 1234569, 1234569, 1234569},
      // Full-width digits saturate like any others.
      {"\uFF11\uFF18\uFF14\uFF14\uFF16\uFF17\uFF14\uFF14\uFF10\uFF17\uFF13\uFF17\uFF10\uFF19"
       "\uFF15\uFF15\uFF11\uFF16\uFF11\uFF16",
       INT32_MAX, INT64_MAX, kU64Max},
  };
  for (const auto& c : cases) expect_wide(c);
}

TEST(NumberParse, NarrowTextSeesBytesOnly) {
  // Shift-JIS: the ideographic space 0x81 0x40, full-width 1 0x82 0x50.
  for (const char* junk : {"\x81\x40"
                           "12",
                           "\x82\x50\x82\x51",
                           "\xA0"
                           "7"}) {
    EXPECT_EQ(kz::os::atoi(junk), 0) << junk;
    EXPECT_EQ(kz::os::_atoi64(junk), 0) << junk;
    EXPECT_EQ(kz::os::_strtoui64(junk, nullptr, 10), 0u) << junk;
  }
  EXPECT_EQ(kz::os::atoi("1\x82\x51"), 1);
}

// Every unit is white space, a digit or neither alike for all wide parses.
TEST(NumberParse, WideParsesAgreeOnEveryUnit) {
  for (std::uint32_t unit = 1; unit <= 0xFFFF; ++unit) {
    const wchar behind[] = {'1', static_cast<wchar>(unit), 0};
    const wchar before[] = {static_cast<wchar>(unit), '7', 0};
    for (const wchar* probe : {behind, before}) {
      const int as_int = kz::os::_wtoi(probe);
      ASSERT_EQ(kz::os::_wtoi64(probe), as_int) << std::hex << unit;
      ASSERT_EQ(static_cast<std::int64_t>(kz::os::_wcstoui64(probe, nullptr, 10)),
                static_cast<std::int64_t>(as_int))
          << std::hex << unit;
      ASSERT_EQ(kz::os::wcstol(probe, nullptr, 10), as_int) << std::hex << unit;
    }
  }
}

// Random texts of blanks, signs, digits and junk, read as the C library
// reads them.
TEST(NumberParse, AgreesWithTheCLibraryOnAsciiText) {
  std::mt19937 random(12);
  const char alphabet[] = "0123456789999  +--x";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    const int length = static_cast<int>(random() % 26);
    for (int i = 0; i < length; ++i) text.push_back(alphabet[random() % (sizeof alphabet - 1)]);
    const auto wide = kz::test::text<wchar>(text);

    const long long as_long_long = std::strtoll(text.c_str(), nullptr, 10);
    const auto as_int = static_cast<std::int32_t>(as_long_long > INT32_MAX   ? INT32_MAX
                                                  : as_long_long < INT32_MIN ? INT32_MIN
                                                                             : as_long_long);
    errno = 0;
    unsigned long long as_unsigned = std::strtoull(text.c_str(), nullptr, 10);
    if (errno == ERANGE) as_unsigned = kU64Max;

    ASSERT_EQ(kz::os::atoi(text.c_str()), as_int) << text;
    ASSERT_EQ(kz::os::_wtoi(wide.c_str()), as_int) << text;
    ASSERT_EQ(kz::os::_atoi64(text.c_str()), as_long_long) << text;
    ASSERT_EQ(kz::os::_wtoi64(wide.c_str()), as_long_long) << text;
    ASSERT_EQ(kz::os::_strtoui64(text.c_str(), nullptr, 10), as_unsigned) << text;
    ASSERT_EQ(kz::os::_wcstoui64(wide.c_str(), nullptr, 10), as_unsigned) << text;
  }
}

// strtol and wcstol in radix 16, as the hexadecimal reader uses them.
TEST(NumberParse, Radix16ReportsWhereItStopped) {
  struct Case {
    const char* utf8;
    std::int32_t value;
    std::size_t consumed;
    bool wide_only = false;
  } cases[] = {
      {"1F", 31, 2},
      {" 0X1fz", 31, 5},
      {"-0x1F", -31, 5},
      // A 0x with no digit behind it is no number.
      {"0x", 0, 0},
      {"0xg", 0, 0},
      {"0x1g", 1, 3},
      {"7fffffff", INT32_MAX, 8},
      {"80000000", INT32_MAX, 8},
      {"ffffffffffffffffffff", INT32_MAX, 20},
      {"-80000000", INT32_MIN, 9},
      {"-80000001", INT32_MIN, 9},
      {"\u3000ff", 255, 3, true},
      {"\uFF11F", 31, 2, true},
      // Letters are ASCII only: a full-width F is no digit.
      {"1\uFF26", 1, 1, true},
  };
  for (const auto& c : cases) {
    const auto wide = utf16(c.utf8);
    wchar* wide_end = nullptr;
    EXPECT_EQ(kz::os::wcstol(wide.c_str(), &wide_end, 16), c.value) << c.utf8;
    EXPECT_EQ(static_cast<std::size_t>(wide_end - wide.c_str()), c.consumed) << c.utf8;
    if (c.wide_only) continue;
    char* end = nullptr;
    EXPECT_EQ(kz::os::strtol(c.utf8, &end, 16), c.value) << c.utf8;
    EXPECT_EQ(static_cast<std::size_t>(end - c.utf8), c.consumed) << c.utf8;
  }
}

}  // namespace
