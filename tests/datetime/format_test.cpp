// Dates and times written as text, from records, the clock and FILETIMEs.
#include <string>

#include "platform/platform.h"
#include "support.h"

namespace {

using kz::test::sentinel_buffer;
using kz::test::text;

template <class Ch>
struct Writers;

template <>
struct Writers<char> {
  static int32_t date(const DateRecord* d, char* out, char delimiter) {
    return KZ_DateStringA(d, out, delimiter);
  }
  static int32_t time(const TimeRecord* t, char* out) { return KZ_TimeStringA(t, out); }
  static int32_t system_time(const SYSTEMTIME* t, char* out, int32_t ms, char d, char s) {
    return KZ_SystemTimeStringA(t, out, ms, d, s);
  }
  static int32_t file_time(const FILETIME* t, char* out, int32_t ms, char d, char s) {
    return KZ_FileTimeStringA(t, out, ms, d, s);
  }
  static int32_t current_date(char* out, char d) { return KZ_CurrentDateStringA(out, d); }
  static int32_t current_time(char* out) { return KZ_CurrentTimeStringA(out); }
  static int32_t current(char* out, int32_t ms, char d, char s) {
    return KZ_CurrentDateTimeStringA(out, ms, d, s);
  }
};

template <>
struct Writers<kz::test::wchar> {
  using Ch = kz::test::wchar;
  static int32_t date(const DateRecord* d, Ch* out, Ch delimiter) {
    return KZ_DateStringW(d, out, delimiter);
  }
  static int32_t time(const TimeRecord* t, Ch* out) { return KZ_TimeStringW(t, out); }
  static int32_t system_time(const SYSTEMTIME* t, Ch* out, int32_t ms, Ch d, Ch s) {
    return KZ_SystemTimeStringW(t, out, ms, d, s);
  }
  static int32_t file_time(const FILETIME* t, Ch* out, int32_t ms, Ch d, Ch s) {
    return KZ_FileTimeStringW(t, out, ms, d, s);
  }
  static int32_t current_date(Ch* out, Ch d) { return KZ_CurrentDateStringW(out, d); }
  static int32_t current_time(Ch* out) { return KZ_CurrentTimeStringW(out); }
  static int32_t current(Ch* out, int32_t ms, Ch d, Ch s) {
    return KZ_CurrentDateTimeStringW(out, ms, d, s);
  }
};

template <class Ch>
class DateTimeText : public ::testing::Test {};
TYPED_TEST_SUITE(DateTimeText, kz::test::ElementTypes);

// Runs a writer into a sentinel buffer of exactly the elements the text
// needs, and checks the text, the count and the element behind it.
template <class Ch, class Write>
void expect_written(Write write, const std::string& expected) {
  auto out = sentinel_buffer<Ch>(expected.size() + 2);
  EXPECT_EQ(write(out.data()), static_cast<int32_t>(expected.size())) << expected;
  EXPECT_EQ(std::basic_string<Ch>(out.data()), text<Ch>(expected));
  EXPECT_EQ(out[expected.size() + 1], static_cast<Ch>(0x7B)) << expected;
}

SYSTEMTIME record(int year, int month, int day, int hour, int minute, int second, int ms) {
  SYSTEMTIME t{};
  t.wYear = static_cast<uint16_t>(year);
  t.wMonth = static_cast<uint16_t>(month);
  t.wDay = static_cast<uint16_t>(day);
  t.wHour = static_cast<uint16_t>(hour);
  t.wMinute = static_cast<uint16_t>(minute);
  t.wSecond = static_cast<uint16_t>(second);
  t.wMilliseconds = static_cast<uint16_t>(ms);
  return t;
}

TYPED_TEST(DateTimeText, WritesDatesWithLeadingZerosAndNeverCuts) {
  using Ch = TypeParam;
  struct Case {
    DateRecord date;
    char delimiter;
    const char* expected;
  };
  const Case cases[] = {
      {{2024, 1, 2}, '-', "2024-01-02"},    {{2024, 1, 2}, '.', "2024.01.02"},
      {{800, 12, 31}, '/', "0800/12/31"},   {{12345, 1, 2}, '-', "12345-01-02"},
      {{2024, 123, 0}, '-', "2024-123-00"}, {{65535, 65535, 65535}, '-', "65535-65535-65535"},
  };
  for (const Case& c : cases)
    expect_written<Ch>(
        [&](Ch* out) { return Writers<Ch>::date(&c.date, out, static_cast<Ch>(c.delimiter)); },
        c.expected);
}

TYPED_TEST(DateTimeText, WritesTimes) {
  using Ch = TypeParam;
  const TimeRecord cases[] = {{9, 5, 7}, {23, 59, 59}, {65535, 0, 100}};
  const char* expected[] = {"09:05:07", "23:59:59", "65535:00:100"};
  for (int i = 0; i < 3; ++i)
    expect_written<Ch>([&](Ch* out) { return Writers<Ch>::time(&cases[i], out); }, expected[i]);
}

TYPED_TEST(DateTimeText, WritesDateTimesWithMillisecondsOnlyUnderTheFlag) {
  using Ch = TypeParam;
  struct Case {
    SYSTEMTIME time;
    int32_t flag;
    char delimiter, separator;
    const char* expected;
  };
  const Case cases[] = {
      {record(2024, 1, 2, 3, 4, 5, 6), 1, '-', 'T', "2024-01-02T03:04:05.006"},
      {record(2024, 1, 2, 3, 4, 5, 7), -1, '/', ' ', "2024/01/02 03:04:05.007"},
      {record(2024, 1, 2, 3, 4, 5, 7), 0, '-', 'T', "2024-01-02T03:04:05"},
      {record(2024, 1, 2, 3, 4, 5, 65535), 0, '-', 'T', "2024-01-02T03:04:05"},
      {record(65535, 65535, 65535, 65535, 65535, 65535, 65535), 1, '-', 'T',
       "65535-65535-65535T65535:65535:65535.65535"},
  };
  for (const Case& c : cases)
    expect_written<Ch>(
        [&](Ch* out) {
          return Writers<Ch>::system_time(&c.time, out, c.flag, static_cast<Ch>(c.delimiter),
                                          static_cast<Ch>(c.separator));
        },
        c.expected);
}

TYPED_TEST(DateTimeText, IgnoresTheDayOfWeek) {
  using Ch = TypeParam;
  for (uint16_t day_of_week : {0, 2, 6, 65535}) {
    SYSTEMTIME t = record(2024, 1, 2, 3, 4, 5, 6);
    t.wDayOfWeek = day_of_week;
    expect_written<Ch>([&](Ch* out) { return Writers<Ch>::system_time(&t, out, 1, '-', 'T'); },
                       "2024-01-02T03:04:05.006");
  }
}

TEST(DateTimeText, DelimitersOutsideAsciiComeThroughUnchanged) {
  const SYSTEMTIME t = record(2024, 1, 2, 3, 4, 5, 6);
  kz::test::wchar wide[32];
  EXPECT_EQ(KZ_SystemTimeStringW(&t, wide, 0, 0x5E74, 0x3000), 19);
  EXPECT_EQ(kz::test::wstring(wide), kz::test::utf16("2024年01年02\u300003:04:05"));
  char narrow[32];
  EXPECT_EQ(KZ_SystemTimeStringA(&t, narrow, 0, static_cast<char>(0xA5), static_cast<char>(0xFF)),
            19);
  EXPECT_EQ(std::string(narrow),
            "2024\xA5"
            "01\xA5"
            "02\xFF"
            "03:04:05");
}

TYPED_TEST(DateTimeText, FileTimeWithTheTopBitSetWritesNothing) {
  using Ch = TypeParam;
  for (uint32_t high : {0x80000000u, 0xFFFFFFFFu}) {
    const FILETIME moment{0, high};
    auto out = sentinel_buffer<Ch>(42);
    EXPECT_EQ(Writers<Ch>::file_time(&moment, out.data(), 1, '-', 'T'), 0);
    EXPECT_EQ(out, sentinel_buffer<Ch>(42));
  }
}

// The clock forms read the clock once; their text lies between two readings
// taken around the call (fixed-width layouts compare as text).
TYPED_TEST(DateTimeText, ClockFormsWriteTheLocalClock) {
  using Ch = TypeParam;
  for (int attempt = 0; attempt < 3; ++attempt) {
    SYSTEMTIME before, after;
    Ch lower[32], upper[32], now[32], date[32], time[32], date_upper[32];
    kz::os::GetLocalTime(&before);
    EXPECT_EQ(Writers<Ch>::current(now, 1, '-', 'T'), 23);
    EXPECT_EQ(Writers<Ch>::current_date(date, '/'), 10);
    EXPECT_EQ(Writers<Ch>::current_time(time), 8);
    kz::os::GetLocalTime(&after);
    Writers<Ch>::system_time(&before, lower, 1, '-', 'T');
    Writers<Ch>::system_time(&after, upper, 1, '-', 'T');
    if (std::basic_string<Ch>(lower).substr(0, 19) != std::basic_string<Ch>(upper).substr(0, 19))
      continue;  // a second turned during the calls
    EXPECT_LE(std::basic_string<Ch>(lower), std::basic_string<Ch>(now));
    EXPECT_LE(std::basic_string<Ch>(now), std::basic_string<Ch>(upper));
    Writers<Ch>::system_time(&after, date_upper, 0, '/', ' ');
    EXPECT_EQ(std::basic_string<Ch>(date), std::basic_string<Ch>(date_upper).substr(0, 10));
    EXPECT_EQ(std::basic_string<Ch>(time), std::basic_string<Ch>(date_upper).substr(11, 8));
    return;
  }
  ADD_FAILURE() << "the clock kept turning a second during the calls";
}

}  // namespace
