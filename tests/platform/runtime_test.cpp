// The runtime calls the library relies on, the same on both builds: the
// formatters, the case-blind compare, the portable number text of radix.cpp
// (as the masked password text uses it) and the number parses of
// numbers.cpp, ASCII text against the C library's strtoll and strtoull and
// the wide runtime's Unicode white space and digits as measured under Wine's
// ucrtbase _wtoi, which the other wide parses follow too; and the calendar.
#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fstream>
#include <random>
#include <sstream>

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
  EXPECT_EQ(format<Ch>("[%5s][%-4s][%.1s][%%]%sT0", word.c_str(), word.c_str(), word.c_str(),
                       word.c_str()),
            text<Ch>("[   ab][ab  ][a][%]abT0"));
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

// The prefix rules that the comparison with the C library below leaves
// out: a 0x in radix 16 or 0, and a leading 0 making radix 0 octal.
TEST(Wcstol, ReadsTheRadixPrefixes) {
  const std::tuple<const char*, int, std::int32_t, std::size_t> cases[] = {
      {"0x1F", 16, 31, 4}, {"0x10", 0, 16, 4}, {"010", 0, 8, 3}, {"0x", 16, 0, 0}, {"19", 8, 1, 1}};
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
    // wcstol clamps to 32 bits and consumes every digit, out of range too.
    for (int radix : {8, 10, 36}) {
      char* end = nullptr;
      wchar* wide_end = nullptr;
      const long as_long = std::strtol(narrow.c_str(), &end, radix);
      ASSERT_EQ(os::wcstol(wide.c_str(), &wide_end, radix),
                std::clamp<long>(as_long, INT32_MIN, INT32_MAX));
      ASSERT_EQ(wide_end - wide.c_str(), end - narrow.c_str()) << narrow << " radix " << radix;
    }
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

// The ends of the range and one step beyond each field's; 2000 is a leap
// year, 2100 is not. The high half of a count decides, and a count is
// unsigned.
TEST(PlatformTime, RangeOfTheRecordAndOfTheCount) {
  const std::array<int, 8> cases[] = {
      // accepted, then the fields
      {1, 1601, 1, 1, 0, 0, 0, 0},  {1, 30827, 12, 31, 23, 59, 59, 999},
      {1, 2000, 2, 29, 0, 0, 0, 0}, {0, 1600, 12, 31, 23, 59, 59, 999},
      {0, 30828, 1, 1, 0, 0, 0, 0}, {0, 2100, 2, 29, 0, 0, 0, 0},
      {0, 2024, 4, 31, 0, 0, 0, 0}, {0, 2024, 0, 1, 0, 0, 0, 0},
      {0, 2024, 1, 1, 24, 0, 0, 0}, {0, 2024, 1, 1, 0, 60, 0, 0},
      {0, 2024, 1, 1, 0, 0, 60, 0}, {0, 2024, 1, 1, 0, 0, 0, 1000}};
  for (const auto& c : cases) {
    const SYSTEMTIME t = system_time(c[1], c[2], c[3], c[4], c[5], c[6], c[7]);
    FILETIME out{};
    EXPECT_EQ(os::SystemTimeToFileTime(&t, &out) != 0, c[0] == 1) << ::testing::PrintToString(c);
  }
  const std::tuple<std::int64_t, std::int64_t, int> pairs[] = {
      {0, 0, 0}, {1, 2, -1}, {0x1'00000000, 0xFFFFFFFF, 1}, {-1, 0, 1}};
  for (const auto& [first, second, expected] : pairs) {
    const FILETIME a = moment(first), b = moment(second);
    EXPECT_EQ(joined(os::CompareFileTime(&a, &b), os::CompareFileTime(&b, &a)),
              joined(expected, -expected));
  }
}

// The vectors come from the real calls (tools/gen-time-vectors/generate):
// "S" records give a record, its count and its day of week (both ways),
// "F" records a count, whether it converts (the top bit set: no, and the
// record is kept), and the record it gives. On POSIX this holds our
// calendar against Windows; under Wine it checks the file against the
// system it was made on.
TEST(PlatformTime, AgreesWithTheRecordedWindowsVectors) {
  std::ifstream file(KZ_TEST_DATA "/time_vectors.txt");
  ASSERT_TRUE(file) << "cannot open " << KZ_TEST_DATA "/time_vectors.txt";
  int lines[2] = {};
  for (std::string line, kind, arrow; std::getline(file, line);) {
    std::istringstream in(line);
    unsigned long long count;
    int ok = 1;
    unsigned f[8];  // year month day-of-week day hour minute second ms
    if (!(in >> kind) || (kind != "S" && kind != "F")) continue;
    if (kind == "S") {
      in >> f[0] >> f[1] >> f[3] >> f[4] >> f[5] >> f[6] >> f[7] >> arrow >> count >> f[2];
      const SYSTEMTIME t = system_time(f[0], f[1], f[3], f[4], f[5], f[6], f[7]);
      FILETIME written{};
      ASSERT_NE(os::SystemTimeToFileTime(&t, &written), 0) << line;
      ASSERT_EQ(static_cast<unsigned long long>(ticks(written)), count) << line;
    } else {
      in >> count >> arrow >> ok;
      for (unsigned& field : f) in >> field;
    }
    ++lines[kind == "F"];
    const FILETIME given = moment(static_cast<std::int64_t>(count));
    SYSTEMTIME t = system_time(7, 7, 7, 7, 7, 7, 7);  // a refusal keeps it
    t.wDayOfWeek = 7;
    ASSERT_EQ(os::FileTimeToSystemTime(&given, &t) != 0, ok != 0) << line;
    const unsigned got[8] = {t.wYear, t.wMonth,  t.wDayOfWeek, t.wDay,
                             t.wHour, t.wMinute, t.wSecond,    t.wMilliseconds};
    if (!ok) std::fill(f, f + 8, 7u);
    ASSERT_EQ(std::memcmp(got, f, sizeof got), 0) << line;
  }
  EXPECT_GT(lines[0], 1000);
  EXPECT_GT(lines[1], 400);
}

}  // namespace
