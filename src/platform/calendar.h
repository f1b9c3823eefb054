// The proleptic Gregorian calendar behind SYSTEMTIME and FILETIME, for the
// POSIX reproduction of the time calls and for the checks that the Windows
// side makes before it hands a record to the system.
#pragma once

#include <cstdint>

#include "platform/filetime.h"
#include "platform/platform.h"

namespace kz::os::calendar {

inline constexpr int kFirstYear = 1601;
inline constexpr int kLastYear = 30827;

constexpr bool is_leap_year(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

constexpr int days_in_month(int year, int month) {
  constexpr int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && is_leap_year(year) ? 29 : kDays[month - 1];
}

// Every field within the range that SystemTimeToFileTime accepts; the day
// of week is not looked at.
constexpr bool is_valid(const SYSTEMTIME& t) {
  return t.wYear >= kFirstYear && t.wYear <= kLastYear && t.wMonth >= 1 && t.wMonth <= 12 &&
         t.wDay >= 1 && t.wDay <= days_in_month(t.wYear, t.wMonth) && t.wHour <= 23 &&
         t.wMinute <= 59 && t.wSecond <= 59 && t.wMilliseconds <= 999;
}

// Days from 0000-03-01 of the proleptic calendar to 1601-01-01.
inline constexpr std::int64_t kDaysFromMarch0 = 584'694;

// Days from 1601-01-01 to the given date, in the era-based way: years are
// counted from March so that the leap day ends a year.
constexpr std::int64_t days_from_civil(std::int64_t year, unsigned month, unsigned day) {
  year -= month <= 2 ? 1 : 0;
  const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
  const auto year_of_era = static_cast<unsigned>(year - era * 400);
  const unsigned day_of_year = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const unsigned day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146'097 + static_cast<std::int64_t>(day_of_era) - kDaysFromMarch0;
}

struct Civil {
  std::int64_t year;
  unsigned month;
  unsigned day;
};

// The inverse of days_from_civil.
constexpr Civil civil_from_days(std::int64_t days) {
  days += kDaysFromMarch0;
  const std::int64_t era = (days >= 0 ? days : days - 146'096) / 146'097;
  const auto day_of_era = static_cast<unsigned>(days - era * 146'097);
  const unsigned year_of_era =
      (day_of_era - day_of_era / 1460 + day_of_era / 36'524 - day_of_era / 146'096) / 365;
  const unsigned day_of_year =
      day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const unsigned month_index = (5 * day_of_year + 2) / 153;
  const unsigned day = day_of_year - (153 * month_index + 2) / 5 + 1;
  const unsigned month = month_index < 10 ? month_index + 3 : month_index - 9;
  const std::int64_t year =
      static_cast<std::int64_t>(year_of_era) + era * 400 + (month <= 2 ? 1 : 0);
  return {year, month, day};
}

static_assert(days_from_civil(1601, 1, 1) == 0);
static_assert(days_from_civil(1970, 1, 1) == 134'774);
static_assert(civil_from_days(134'774).year == 1970);
static_assert(civil_from_days(days_from_civil(30827, 12, 31)).day == 31);

}  // namespace kz::os::calendar
