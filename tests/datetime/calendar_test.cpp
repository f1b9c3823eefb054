// Days in a month, days of the week and their names, month names, and
// milliseconds added to and taken from a SYSTEMTIME.
#include <cstdio>
#include <string>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class CalendarNames : public ::testing::Test {};
TYPED_TEST_SUITE(CalendarNames, ElementTypes);

TEST(QueryDays, UsesItsOwnTableWithEveryFourthYearLeap) {
  struct Case {
    uint16_t year, month;
    int32_t expected;
  } cases[] = {
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
    const char *english, *sjis, *utf8;
  } cases[] = {
      {7, "Sun", "\x93\xFA", "日"},    {8, "Mon", "\x8C\x8E", "月"},
      {9, "Tues", "\x89\xCE", "火"},   {10, "Wednes", "\x90\x85", "水"},
      {11, "Thurs", "\x96\xD8", "木"}, {12, "Fri", "\x8B\xE0", "金"},
      {13, "Satur", "\x93\x79", "土"},
  };
  for (const Case& c : cases) {
    const DateRecord date{2024, 1, c.day};
    uint16_t day_of_week = 99;
    auto english = sentinel_buffer<Ch>(32), japanese = sentinel_buffer<Ch>(32);
    EXPECT_NE(Twin<Ch>::QueryDayOfWeek(&date, &day_of_week, english.data(), japanese.data()), 0);
    EXPECT_EQ(day_of_week, c.day - 7);
    EXPECT_EQ(str(english), text<Ch>(c.english));
    if constexpr (sizeof(Ch) == 1)
      EXPECT_EQ(str(japanese), c.sjis);
    else
      EXPECT_EQ(str(japanese), utf16(c.utf8));
  }
  // Null outputs are skipped, and the date is checked by the platform's
  // calendar alone: 1601 lies below the lowest year of KZ_QueryDays.
  const DateRecord early{1601, 1, 1};
  uint16_t day_of_week = 99;
  EXPECT_NE(Twin<Ch>::QueryDayOfWeek(&early, nullptr, nullptr, nullptr), 0);
  EXPECT_NE(Twin<Ch>::QueryDayOfWeek(&early, &day_of_week, nullptr, nullptr), 0);
  EXPECT_EQ(day_of_week, 1);
}

TYPED_TEST(CalendarNames, DayOfWeekRefusesWhatThePlatformRefusesAndWritesNothing) {
  using Ch = TypeParam;
  // KZ_QueryDays gives 2100 a 29th of February; the Gregorian calendar does not.
  const DateRecord refused[] = {
      {2100, 2, 29}, {2023, 2, 29}, {1600, 12, 31}, {2024, 13, 1}, {2024, 1, 0}, {30828, 1, 1},
  };
  for (const DateRecord& date : refused) {
    uint16_t day_of_week = 99;
    auto english = sentinel_buffer<Ch>(32), japanese = sentinel_buffer<Ch>(32);
    EXPECT_EQ(Twin<Ch>::QueryDayOfWeek(&date, &day_of_week, english.data(), japanese.data()), 0)
        << date.year << "-" << date.month << "-" << date.day;
    EXPECT_EQ(day_of_week, 99);
    EXPECT_TRUE(untouched_from(english, 0));
    EXPECT_TRUE(untouched_from(japanese, 0));
  }
}

TYPED_TEST(CalendarNames, MonthNamesReadBackIgnoringCaseButNotLength) {
  using Ch = TypeParam;
  struct Case {
    const char* name;
    int32_t expected;
  } cases[] = {
      {"Jan", 1}, {"JAN", 1}, {"jan", 1},   {"Dec", 12},  {"sEP", 9},  {"January", -1},
      {"", -1},   {"Ja", -1}, {"Jan ", -1}, {" Jan", -1}, {"Foo", -1},
  };
  for (const Case& c : cases)
    EXPECT_EQ(Twin<Ch>::MonthToNumeric(text<Ch>(c.name).c_str()), c.expected) << c.name;
}

TYPED_TEST(CalendarNames, MonthNamesWriteOnlyForAGoodMonthAndAFullCapacity) {
  using Ch = TypeParam;
  const std::string names = "JanFebMarAprMayJunJulAugSepOctNovDec";
  // A capacity below the name's needs gets no name and no write past it.
  struct Case {
    int32_t month, size;
  } cases[] = {{0, 4}, {13, 4}, {-1, 4}, {12, 3}, {12, 1}, {12, 0}, {12, -4}};
  for (int32_t month = 1; month <= 12; ++month) {
    auto out = sentinel_buffer<Ch>(5);
    EXPECT_EQ(Twin<Ch>::MonthToString(month, out.data(), 4), 1);
    EXPECT_EQ(str(out), text<Ch>(names.substr(3 * (month - 1), 3)));
    EXPECT_TRUE(untouched_from(out, 4));
  }
  for (const Case& c : cases) {
    auto out = sentinel_buffer<Ch>(5);
    EXPECT_EQ(Twin<Ch>::MonthToString(c.month, out.data(), c.size), 0) << c.month << "/" << c.size;
    EXPECT_TRUE(untouched_from(out, c.size > 0 && c.month == 12 ? c.size : 0));
  }
}

std::string show(const SYSTEMTIME& t) {
  char text[64];
  std::snprintf(text, sizeof text, "%d-%d-%d(%d) %d:%d:%d.%d", t.wYear, t.wMonth, t.wDay,
                t.wDayOfWeek, t.wHour, t.wMinute, t.wSecond, t.wMilliseconds);
  return text;
}

// A positive amount is added, a negative one taken away. A refused record
// is kept as it was, its day of week (5 on the way in) included.
TEST(SystemTimeArithmetic, AddsAndSubtractsMillisecondsOrKeepsTheRecord) {
  struct Case {
    SYSTEMTIME before;
    int64_t amount;
    const char* after;  // null: refused
  } cases[] = {
      {system_time(2024, 1, 31, 23, 59, 59, 500), 1000, "2024-2-1(4) 0:0:0.500"},
      {system_time(2024, 2, 1, 0, 0, 0, 500), -1000, "2024-1-31(3) 23:59:59.500"},
      // The whole range of the amount: 49 days 17:02:47.295.
      {system_time(2024, 1, 1), 4294967295, "2024-2-19(1) 17:2:47.295"},
      {system_time(2024, 2, 28, 12), 86'400'000, "2024-2-29(4) 12:0:0.0"},
      {system_time(2100, 2, 28, 12), 86'400'000, "2100-3-1(1) 12:0:0.0"},
      // The way back may pass the last year that the way in accepts.
      {system_time(30827, 12, 31, 23, 59, 59, 999), 1, "30828-1-1(6) 0:0:0.0"},
      {system_time(1601, 1, 1, 0, 0, 0, 1), -1, "1601-1-1(1) 0:0:0.0"},
      {system_time(2024, 1, 2, 3, 4, 5, 6), 0, "2024-1-2(2) 3:4:5.6"},  // sets the day of week
      {system_time(1601, 1, 1), -1, nullptr},  // below the start of the count
      {system_time(1601, 1, 1), -4294967295, nullptr},
      {system_time(2023, 2, 29), 0, nullptr},
      {system_time(2024, 1, 1, 0, 0, 0, 1000), 1, nullptr},
      {system_time(1600, 12, 31), 1, nullptr},
  };
  for (const Case& c : cases) {
    SYSTEMTIME t = c.before;
    t.wDayOfWeek = 5;
    const SYSTEMTIME kept = t;
    const auto amount = static_cast<uint32_t>(c.amount < 0 ? -c.amount : c.amount);
    const int32_t result =
        c.amount < 0 ? KZ_SubSystemTime(&t, amount) : KZ_AddSystemTime(&t, amount);
    EXPECT_EQ(result != 0, c.after != nullptr) << show(c.before);
    EXPECT_EQ(show(t), c.after ? c.after : show(kept)) << show(c.before);
  }
}

}  // namespace
