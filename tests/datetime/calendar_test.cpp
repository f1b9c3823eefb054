// Days in a month, days of the week and their names, month names, and
// milliseconds added to and taken from a SYSTEMTIME. Names are held against
// the C runtime's own in the "C" locale and the code page conversion.
#include <ctime>

#include "files.h"
#include "platform/platform.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(CalendarNames);

// A name from strftime in the "C" locale: "%A" for a day of the week, "%b"
// for a month.
std::string c_locale_name(const char* conversion, int day_of_week, int month) {
  std::tm fields{};
  fields.tm_wday = day_of_week;
  fields.tm_mon = month - 1;
  char name[32];
  return std::string(name, std::strftime(name, sizeof name, conversion, &fields));
}

// The last day of a month by the platform's Gregorian calendar.
int gregorian_days(int year, int month) {
  FILETIME moment;
  for (int day = 31;; --day) {
    const SYSTEMTIME t = system_time(year, month, day);
    if (kz::os::SystemTimeToFileTime(&t, &moment)) return day;
  }
}

// KZ_QueryDays keeps its own calendar from 1960 on, with every fourth year
// a leap year: it differs from the Gregorian one in 2100, 2200 and 2300.
TEST(QueryDays, FollowsTheCalendarWithEveryFourthYearLeap) {
  for (int year = 1960; year <= 2400; ++year)
    for (int month = 1; month <= 12; ++month)
      ASSERT_EQ(KZ_QueryDays(year, month),
                gregorian_days(year, month) + (month == 2 && year % 100 == 0 && year % 400 != 0))
          << year << "-" << month;
  for (const auto& [year, month] : {std::pair(1959, 12), {2024, 0}, {2024, 13}})
    EXPECT_EQ(KZ_QueryDays(year, month), -1) << year << "-" << month;
  EXPECT_EQ(KZ_QueryDays(65535, 11), 30);
}

// A week from Sunday 2024-01-07: the day of week counts from Sunday, the
// English name is the full name less "day", the Japanese one the day's
// single kanji, in Shift-JIS for the narrow twin. Null outputs are skipped.
// The date is checked by the platform's calendar alone (whose bounds its
// own tests hold): 1601 lies below the lowest year of KZ_QueryDays, 2100
// has no 29th of February there. A refused date gives 0 and writes nothing.
TYPED_TEST(CalendarNames, NamesEveryDayOfAWeekAndEveryMonth) {
  using Ch = TypeParam;
  const wstring kanji = utf16("日月火水木金土");
  std::vector<std::pair<DateRecord, int>> dates = {{{1601, 1, 1}, 1}, {{2100, 2, 29}, 99}};
  for (uint16_t day = 0; day < 7; ++day) dates.push_back({{2024, 1, uint16_t(7 + day)}, day});
  for (const auto& [date, expected] : dates) {
    uint16_t got = 99;
    auto english = sentinel_buffer<Ch>(32), japanese = sentinel_buffer<Ch>(32);
    const int32_t result = Twin<Ch>::QueryDayOfWeek(&date, &got, english.data(), japanese.data());
    EXPECT_EQ(joined(result != 0, got), joined(expected != 99, expected));
    EXPECT_EQ(Twin<Ch>::QueryDayOfWeek(&date, nullptr, nullptr, nullptr) != 0, expected != 99);
    if (expected == 99) {
      EXPECT_TRUE(untouched_from(english, 0));
      EXPECT_TRUE(untouched_from(japanese, 0));
      continue;
    }
    const std::string full = c_locale_name("%A", expected, 1);
    EXPECT_TRUE(holds(english, text<Ch>(full.substr(0, full.size() - 3)), 0, full.size() - 2));
    const auto name = in<Ch>(narrow(kanji.substr(expected, 1)));
    EXPECT_TRUE(holds(japanese, name, 0, name.size() + 1)) << expected;
  }
  // Every name is the runtime's abbreviation, and reads back in any case; a
  // month outside 1 to 12 gets no name and no write (the sizes are the
  // guard-page table's).
  for (int32_t month = 0; month <= 13; ++month) {
    auto out = sentinel_buffer<Ch>(5);
    const bool named = month >= 1 && month <= 12;
    EXPECT_EQ(Twin<Ch>::MonthToString(month, out.data(), 4), named);
    EXPECT_TRUE(named ? holds(out, text<Ch>(c_locale_name("%b", 0, month)), 0, 4)
                      : untouched_from(out, 0));
    EXPECT_EQ(named ? Twin<Ch>::MonthToNumeric(out.data()) : month, month);
  }
  for (const auto& [name, month] : {std::pair("sEP", 9), {"January", -1}, {"Ja", -1}, {"", -1}})
    EXPECT_EQ(Twin<Ch>::MonthToNumeric(text<Ch>(name).c_str()), month) << name;
}

std::string show(const SYSTEMTIME& t) {
  return joined(t.wYear, t.wMonth, t.wDay, t.wDayOfWeek, t.wHour, t.wMinute, t.wSecond,
                t.wMilliseconds);
}

// A positive amount is added, a negative one taken away; the whole range
// of the amount is 49 days 17:02:47.295, and the way back may pass the last
// year that the way in accepts. A refused record is kept as it was, its
// day of week (5 on the way in) included.
TEST(SystemTimeArithmetic, AddsAndSubtractsMillisecondsOrKeepsTheRecord) {
  const std::tuple<SYSTEMTIME, int64_t, std::string> cases[] = {
      // after empty: refused
      {system_time(2024, 1, 31, 23, 59, 59, 500), 1000, joined(2024, 2, 1, 4, 0, 0, 0, 500)},
      {system_time(2024, 2, 1, 0, 0, 0, 500), -1000, joined(2024, 1, 31, 3, 23, 59, 59, 500)},
      {system_time(2024, 1, 1), 4294967295, joined(2024, 2, 19, 1, 17, 2, 47, 295)},
      {system_time(2100, 2, 28, 12), 86'400'000, joined(2100, 3, 1, 1, 12, 0, 0, 0)},
      {system_time(30827, 12, 31, 23, 59, 59, 999), 1, joined(30828, 1, 1, 6, 0, 0, 0, 0)},
      {system_time(1601, 1, 1, 0, 0, 0, 1), -1, joined(1601, 1, 1, 1, 0, 0, 0, 0)},
      {system_time(1601, 1, 1), -1, ""},
      {system_time(2023, 2, 29), 0, ""}};
  for (const auto& [before, amount, after] : cases) {
    SYSTEMTIME t = before;
    t.wDayOfWeek = 5;
    const std::string kept = show(t);
    const auto step = static_cast<uint32_t>(amount < 0 ? -amount : amount);
    const int32_t result = amount < 0 ? KZ_SubSystemTime(&t, step) : KZ_AddSystemTime(&t, step);
    EXPECT_EQ(joined(result != 0) + show(t),
              joined(!after.empty()) + (after.empty() ? kept : after));
  }
}

}  // namespace
