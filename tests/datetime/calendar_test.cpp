// Days in a month, days of the week and their names, month names, and
// milliseconds added to and taken from a SYSTEMTIME.
#include <cstring>
#include <string>

#include "support.h"

namespace {

using kz::test::sentinel_buffer;
using kz::test::text;

template <class Ch>
struct Calendar;

template <>
struct Calendar<char> {
  static int32_t day_of_week(const DateRecord* d, uint16_t* dow, char* en, char* ja) {
    return KZ_QueryDayOfWeekA(d, dow, en, ja);
  }
  static int32_t to_numeric(const char* name) { return KZ_MonthToNumericA(name); }
  static int32_t to_string(int32_t month, char* out, int32_t size) {
    return KZ_MonthToStringA(month, out, size);
  }
  // The kanji as the narrow tables hold them: Shift-JIS byte pairs.
  static std::string japanese(const char* sjis, const char*) { return sjis; }
};

template <>
struct Calendar<kz::test::wchar> {
  static int32_t day_of_week(const DateRecord* d, uint16_t* dow, kz::test::wchar* en,
                             kz::test::wchar* ja) {
    return KZ_QueryDayOfWeekW(d, dow, en, ja);
  }
  static int32_t to_numeric(const kz::test::wchar* name) { return KZ_MonthToNumericW(name); }
  static int32_t to_string(int32_t month, kz::test::wchar* out, int32_t size) {
    return KZ_MonthToStringW(month, out, size);
  }
  static kz::test::wstring japanese(const char*, const char* utf8) { return kz::test::utf16(utf8); }
};

template <class Ch>
class CalendarNames : public ::testing::Test {};
TYPED_TEST_SUITE(CalendarNames, kz::test::ElementTypes);

TEST(QueryDays, UsesItsOwnTableWithEveryFourthYearLeap) {
  struct Case {
    uint16_t year, month;
    int32_t expected;
  };
  const Case cases[] = {
      {2024, 2, 29},  {2000, 2, 29}, {2100, 2, 29},  {1960, 2, 29},   {2023, 2, 28},
      {2023, 1, 31},  {2023, 4, 30}, {2023, 12, 31}, {65535, 11, 30}, {1959, 1, -1},
      {1959, 12, -1}, {2024, 0, -1}, {2024, 13, -1}, {0, 2, -1},
  };
  for (const Case& c : cases)
    EXPECT_EQ(KZ_QueryDays(c.year, c.month), c.expected) << c.year << "-" << c.month;
}

TYPED_TEST(CalendarNames, NamesEveryDayOfAWeek) {
  using Ch = TypeParam;
  struct Case {
    uint16_t day;  // of January 2024; the 7th was a Sunday
    uint16_t day_of_week;
    const char* english;
    const char* sjis;
    const char* utf8;
  };
  const Case cases[] = {
      {7, 0, "Sun", "\x93\xFA", "日"},    {8, 1, "Mon", "\x8C\x8E", "月"},
      {9, 2, "Tues", "\x89\xCE", "火"},   {10, 3, "Wednes", "\x90\x85", "水"},
      {11, 4, "Thurs", "\x96\xD8", "木"}, {12, 5, "Fri", "\x8B\xE0", "金"},
      {13, 6, "Satur", "\x93\x79", "土"},
  };
  for (const Case& c : cases) {
    const DateRecord date{2024, 1, c.day};
    uint16_t day_of_week = 99;
    auto english = sentinel_buffer<Ch>(32);
    auto japanese = sentinel_buffer<Ch>(32);
    EXPECT_NE(Calendar<Ch>::day_of_week(&date, &day_of_week, english.data(), japanese.data()), 0);
    EXPECT_EQ(day_of_week, c.day_of_week);
    EXPECT_EQ(std::basic_string<Ch>(english.data()), text<Ch>(c.english));
    EXPECT_EQ(std::basic_string<Ch>(japanese.data()), Calendar<Ch>::japanese(c.sjis, c.utf8));
  }
}

TYPED_TEST(CalendarNames, DayOfWeekSkipsNullOutputsAndTestsTheDateAlone) {
  using Ch = TypeParam;
  const DateRecord good{2024, 1, 2}, early{1601, 1, 1};
  EXPECT_NE(Calendar<Ch>::day_of_week(&good, nullptr, nullptr, nullptr), 0);
  uint16_t day_of_week = 99;
  EXPECT_NE(Calendar<Ch>::day_of_week(&early, &day_of_week, nullptr, nullptr), 0);
  EXPECT_EQ(day_of_week, 1);  // accepted below the lowest year of KZ_QueryDays
}

TYPED_TEST(CalendarNames, DayOfWeekRefusesWhatThePlatformRefusesAndWritesNothing) {
  using Ch = TypeParam;
  // KZ_QueryDays gives 2100 a 29th of February; the Gregorian calendar does not.
  const DateRecord refused[] = {{2100, 2, 29}, {2023, 2, 29}, {1600, 12, 31},
                                {2024, 13, 1}, {2024, 1, 0},  {30828, 1, 1}};
  for (const DateRecord& date : refused) {
    uint16_t day_of_week = 99;
    auto english = sentinel_buffer<Ch>(32);
    auto japanese = sentinel_buffer<Ch>(32);
    EXPECT_EQ(Calendar<Ch>::day_of_week(&date, &day_of_week, english.data(), japanese.data()), 0)
        << date.year << "-" << date.month << "-" << date.day;
    EXPECT_EQ(day_of_week, 99);
    EXPECT_EQ(english, sentinel_buffer<Ch>(32));
    EXPECT_EQ(japanese, sentinel_buffer<Ch>(32));
  }
}

TYPED_TEST(CalendarNames, MonthNamesReadBackIgnoringCaseButNotLength) {
  using Ch = TypeParam;
  struct Case {
    const char* name;
    int32_t expected;
  };
  const Case cases[] = {{"Jan", 1},   {"JAN", 1},      {"jan", 1}, {"Dec", 12},
                        {"sEP", 9},   {"January", -1}, {"", -1},   {"Ja", -1},
                        {"Jan ", -1}, {" Jan", -1},    {"Foo", -1}};
  for (const Case& c : cases)
    EXPECT_EQ(Calendar<Ch>::to_numeric(text<Ch>(c.name).c_str()), c.expected) << c.name;
}

TYPED_TEST(CalendarNames, MonthNamesWriteOnlyForAGoodMonthAndAFullCapacity) {
  using Ch = TypeParam;
  const char* names[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  for (int32_t month = 1; month <= 12; ++month) {
    auto out = sentinel_buffer<Ch>(5);
    EXPECT_EQ(Calendar<Ch>::to_string(month, out.data(), 4), 1);
    EXPECT_EQ(std::basic_string<Ch>(out.data()), text<Ch>(names[month - 1]));
    EXPECT_EQ(out[4], static_cast<Ch>(0x7B));
  }
  for (int32_t month : {0, 13, -1}) {
    auto out = sentinel_buffer<Ch>(5);
    EXPECT_EQ(Calendar<Ch>::to_string(month, out.data(), 4), 0);
    EXPECT_EQ(out, sentinel_buffer<Ch>(5)) << month;
  }
  // A capacity below the name's needs gets no name and no write past it.
  for (int32_t size : {3, 1, 0, -4}) {
    auto out = sentinel_buffer<Ch>(5);
    EXPECT_EQ(Calendar<Ch>::to_string(12, out.data(), size), 0) << size;
    for (int32_t i = size > 0 ? size : 0; i < 5; ++i) EXPECT_EQ(out[i], static_cast<Ch>(0x7B));
  }
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

std::string show(const SYSTEMTIME& t) {
  char text[64];
  std::snprintf(text, sizeof text, "%d-%d-%d(%d) %d:%d:%d.%d", t.wYear, t.wMonth, t.wDay,
                t.wDayOfWeek, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds);
  return text;
}

TEST(SystemTimeArithmetic, AddsAndSubtractsMilliseconds) {
  struct Case {
    SYSTEMTIME before;
    bool add;
    uint32_t amount;
    SYSTEMTIME after;  // day of week included
  };
  const auto with_day = [](SYSTEMTIME t, int day_of_week) {
    t.wDayOfWeek = static_cast<uint16_t>(day_of_week);
    return t;
  };
  const Case cases[] = {
      {record(2024, 1, 31, 23, 59, 59, 500), true, 1000,
       with_day(record(2024, 2, 1, 0, 0, 0, 500), 4)},
      {record(2024, 2, 1, 0, 0, 0, 500), false, 1000,
       with_day(record(2024, 1, 31, 23, 59, 59, 500), 3)},
      // The whole range of the amount: 49 days 17:02:47.295.
      {record(2024, 1, 1, 0, 0, 0, 0), true, 4294967295u,
       with_day(record(2024, 2, 19, 17, 2, 47, 295), 1)},
      {record(2024, 2, 28, 12, 0, 0, 0), true, 86'400'000,
       with_day(record(2024, 2, 29, 12, 0, 0, 0), 4)},
      {record(2100, 2, 28, 12, 0, 0, 0), true, 86'400'000,
       with_day(record(2100, 3, 1, 12, 0, 0, 0), 1)},
      // The way back may pass the last year that the way in accepts.
      {record(30827, 12, 31, 23, 59, 59, 999), true, 1,
       with_day(record(30828, 1, 1, 0, 0, 0, 0), 6)},
      {record(1601, 1, 1, 0, 0, 0, 1), false, 1, with_day(record(1601, 1, 1, 0, 0, 0, 0), 1)},
  };
  for (const Case& c : cases) {
    SYSTEMTIME t = c.before;
    const int32_t result = c.add ? KZ_AddSystemTime(&t, c.amount) : KZ_SubSystemTime(&t, c.amount);
    EXPECT_NE(result, 0) << show(c.before);
    EXPECT_EQ(show(t), show(c.after)) << show(c.before);
  }
}

TEST(SystemTimeArithmetic, AnAmountOfZeroSetsTheTrueDayOfWeek) {
  SYSTEMTIME t = record(2024, 1, 2, 3, 4, 5, 6);
  t.wDayOfWeek = 6;
  EXPECT_NE(KZ_AddSystemTime(&t, 0), 0);
  EXPECT_EQ(show(t), "2024-1-2(2) 3:4:5.6");
}

TEST(SystemTimeArithmetic, RefusesBadRecordsAndUnderflowAndKeepsTheRecord) {
  struct Case {
    SYSTEMTIME before;
    bool add;
    uint32_t amount;
  };
  const Case cases[] = {
      {record(1601, 1, 1, 0, 0, 0, 0), false, 1},  // below the start of the count
      {record(1601, 1, 1, 0, 0, 0, 0), false, 4294967295u},
      {record(2023, 2, 29, 0, 0, 0, 0), true, 0},
      {record(2024, 1, 1, 0, 0, 0, 1000), true, 1},
      {record(1600, 12, 31, 0, 0, 0, 0), true, 1},
  };
  for (const Case& c : cases) {
    SYSTEMTIME t = c.before;
    t.wDayOfWeek = 5;
    const int32_t result = c.add ? KZ_AddSystemTime(&t, c.amount) : KZ_SubSystemTime(&t, c.amount);
    EXPECT_EQ(result, 0) << show(c.before);
    SYSTEMTIME expected = c.before;
    expected.wDayOfWeek = 5;
    EXPECT_EQ(show(t), show(expected));
  }
}

}  // namespace
