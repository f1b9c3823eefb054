// The portable number parses of numbers.cpp, held to one table on both
// builds: the wide runtime's Unicode white space and digits (as measured
// under Wine's ucrtbase _wtoi, which the other wide parses follow too),
// every limit and one past it, signs and junk; random text is compared with
// the C library's strtoll and strtoull.
#include <cerrno>
#include <cstdlib>
#include <random>

#include "platform/platform.h"
#include "support.h"

namespace {

using namespace kz::test;

constexpr std::uint64_t kMax = UINT64_MAX;

TEST(NumberParse, LimitsSignsUnicodeSpacesAndDigits) {
  const struct {
    const char* utf8;
    std::int32_t as_int;
    std::int64_t as_int64;
    std::uint64_t as_uint64;
  } cases[] = {
      {"", 0, 0, 0},
      {"12ab", 12, 12, 12},
      {" \t\n\v\f\r7", 7, 7, 7},
      {"\x1C\x37", 0, 0, 0},
      {"+-7", 0, 0, 0},
      {"-7", -7, -7, kMax - 6},
      {"000000000000000000000000012", 12, 12, 12},
      {"2147483648", INT32_MAX, 2147483648, 2147483648},
      {"-2147483649", INT32_MIN, -2147483649LL, kMax - 2147483648},
      {"9223372036854775808", INT32_MAX, INT64_MAX, 9223372036854775808ULL},
      {"-9223372036854775809", INT32_MIN, INT64_MIN, 9223372036854775807ULL},
      {"18446744073709551616", INT32_MAX, INT64_MAX, kMax},
      {"-18446744073709551615", INT32_MIN, INT64_MIN, 1},
      // Out of range saturates before the sign is looked at.
      {"-18446744073709551616", INT32_MIN, INT64_MIN, kMax},
      // Wide text only (narrow text sees these bytes as junk): the Unicode
      // spaces, not the zero-width space, U+180E or a byte-order mark.
      {"\u30001\u00A02", 1, 1, 1},
      {"\u0085\u1680\u2000\u200A\u2028\u2029\u202F\u205F5", 5, 5, 5},
      {"\u200B5", 0, 0, 0},
      {"\u180E5", 0, 0, 0},
      {"\uFEFF5", 0, 0, 0},
      // Decimal digits of other scripts, full width among them; a
      // full-width minus is no sign.
      {"-\uFF11\uFF12", -12, -12, kMax - 11},
      {"\uFF0D12", 0, 0, 0},
      {"\uFF19\u0669\uFF1A", 99, 99, 99},
      {"\u06601\u066A", 1, 1, 1},
      {"\u065F1", 0, 0, 0},
      {"\u06F7\u0967\u09E8\u0A69\u0AEA\u0B6B\u0C66\u0CEF\u0D61", 71234509, 71234509, 71234509},
      {"\u0E51\u0ED2\u0F23\u1044\u17E5\u1816\u1819", 1234569, 1234569, 1234569},
      {"\uFF11\uFF18\uFF14\uFF14\uFF16\uFF17\uFF14\uFF14\uFF10\uFF17\uFF13\uFF17\uFF10\uFF19"
       "\uFF15\uFF15\uFF11\uFF16\uFF11\uFF16",
       INT32_MAX, INT64_MAX, kMax},
  };
  for (const auto& c : cases) {
    const auto wide = utf16(c.utf8);
    EXPECT_EQ(kz::os::_wtoi(wide.c_str()), c.as_int) << c.utf8;
    EXPECT_EQ(kz::os::_wtoi64(wide.c_str()), c.as_int64) << c.utf8;
    EXPECT_EQ(kz::os::_wcstoui64(wide.c_str(), nullptr, 10), c.as_uint64) << c.utf8;
    if (wide.size() != std::string(c.utf8).size()) continue;  // not ASCII
    EXPECT_EQ(kz::os::atoi(c.utf8), c.as_int) << c.utf8;
    EXPECT_EQ(kz::os::_atoi64(c.utf8), c.as_int64) << c.utf8;
    EXPECT_EQ(kz::os::_strtoui64(c.utf8, nullptr, 10), c.as_uint64) << c.utf8;
  }
  EXPECT_EQ(kz::os::atoi("\x81\x40\x31"), 0);  // a Shift-JIS ideographic space is junk
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

TEST(NumberParse, AgreesWithTheCLibraryOnAsciiText) {
  std::mt19937 random(12);
  const char alphabet[] = "0123456789999  +--x";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto n = random() % 26; n > 0; --n) text.push_back(alphabet[random() % 19]);
    const auto wide = kz::test::text<wchar>(text);
    const long long as_long_long = std::strtoll(text.c_str(), nullptr, 10);
    const auto as_int = static_cast<std::int32_t>(as_long_long > INT32_MAX   ? INT32_MAX
                                                  : as_long_long < INT32_MIN ? INT32_MIN
                                                                             : as_long_long);
    errno = 0;
    unsigned long long as_unsigned = std::strtoull(text.c_str(), nullptr, 10);
    if (errno == ERANGE) as_unsigned = kMax;
    ASSERT_EQ(kz::os::atoi(text.c_str()), as_int) << text;
    ASSERT_EQ(kz::os::_wtoi(wide.c_str()), as_int) << text;
    ASSERT_EQ(kz::os::_atoi64(text.c_str()), as_long_long) << text;
    ASSERT_EQ(kz::os::_wtoi64(wide.c_str()), as_long_long) << text;
    ASSERT_EQ(kz::os::_strtoui64(text.c_str(), nullptr, 10), as_unsigned) << text;
    ASSERT_EQ(kz::os::_wcstoui64(wide.c_str(), nullptr, 10), as_unsigned) << text;
  }
}

}  // namespace
