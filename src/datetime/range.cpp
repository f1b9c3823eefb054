// Does a moment lie between a start and an end? KZ_CheckDate,
// KZ_CheckCurrentDate, KZ_CheckDateTime, KZ_CheckCurrentDateTime,
// KZ_CheckStringDate, KZ_CheckStringCurrentDate, KZ_CheckStringDateTime and
// KZ_CheckStringCurrentDateTime. Every point becomes a
// FILETIME, so the platform's validation decides what a date is. The record
// forms stay in local wall-clock time; the text forms read through the
// file-time reader, which ends in UTC, and bring the clock to UTC as well.
// Results: 1 inside, 0 outside, -1 for a point that does not convert; the
// points convert in the order start, end, target, and the first failure
// ends the call.
#include "datetime/datetime.h"
#include "frame/convert.h"

namespace kz::datetime {
namespace {

constexpr std::int32_t kBadPoint = -1;
constexpr std::size_t kDateScratch = 32;  // wide elements of the date-time scratch text
constexpr std::size_t kLongestDate = kDateScratch - 10;  // the appended time and terminator

struct TimeOfDay {
  std::uint16_t hour, minute, second, milliseconds;
};

constexpr TimeOfDay kDayStart = {0, 0, 0, 0};
constexpr TimeOfDay kDayEnd = {23, 59, 59, 999};
constexpr TimeOfDay kNoon = {12, 0, 0, 0};

std::int32_t compare(const FILETIME& start, const FILETIME& end, const FILETIME& target,
                     bool inclusive) {
  const os::LONG after_start = os::CompareFileTime(&target, &start);
  const os::LONG before_end = os::CompareFileTime(&target, &end);
  if (inclusive) return after_start >= 0 && before_end <= 0 ? 1 : 0;
  return after_start == 1 && before_end == -1 ? 1 : 0;
}

bool local_moment(std::uint16_t year, std::uint16_t month, std::uint16_t day, TimeOfDay at,
                  FILETIME* moment) {
  SYSTEMTIME t{};
  t.wYear = year;
  t.wMonth = month;
  t.wDay = day;
  t.wHour = at.hour;
  t.wMinute = at.minute;
  t.wSecond = at.second;
  t.wMilliseconds = at.milliseconds;
  return os::SystemTimeToFileTime(&t, moment) != 0;
}

bool date_moment(const DateRecord* date, TimeOfDay at, FILETIME* moment) {
  return local_moment(date->year, date->month, date->day, at, moment);
}

bool date_time_moment(const DateTimeRecord* r, FILETIME* moment) {
  return local_moment(r->year, r->month, r->day, {r->hour, r->minute, r->second, 0}, moment);
}

bool clock_moment(FILETIME* moment) {
  SYSTEMTIME t;
  os::GetLocalTime(&t);
  return os::SystemTimeToFileTime(&t, moment) != 0;
}

bool utc_clock_moment(FILETIME* moment) {
  FILETIME local;
  if (!clock_moment(&local)) return false;
  os::LocalFileTimeToFileTime(&local, moment);
  return true;
}

bool text_moment(const wchar* text, FILETIME* moment) {
  return string_file_time(text, moment, wchar('-'), wchar('T')) != 0;
}

// A date text with a time of day appended; a date longer than the scratch
// allows is a point that does not convert.
bool date_text_moment(const wchar* date, const wchar* suffix_format, FILETIME* moment) {
  if (length(date) > kLongestDate) return false;
  wchar scratch[kDateScratch];
  os::wsprintfW(scratch, suffix_format, date);
  return text_moment(scratch, moment);
}

constexpr auto kStartOfDay = literal<wchar>("%sT00:00:00");
constexpr auto kEndOfDay = literal<wchar>("%sT23:59:59");
constexpr auto kNoonOfDay = literal<wchar>("%sT12:00:00");

// The text forms, with the target as a callable that fills its moment: a
// text of the caller or the clock.
template <class Target>
std::int32_t check_dates(const wchar* start, const wchar* end, Target target,
                         std::int32_t inclusive) {
  FILETIME from, to, at;
  if (!date_text_moment(start, kStartOfDay.text, &from)) return kBadPoint;
  if (!date_text_moment(end, kEndOfDay.text, &to)) return kBadPoint;
  if (!target(&at)) return kBadPoint;
  return compare(from, to, at, inclusive != 0);
}

template <class Target>
std::int32_t check_date_times(const wchar* start, const wchar* end, Target target,
                              std::int32_t inclusive) {
  FILETIME from, to, at;
  if (!text_moment(start, &from)) return kBadPoint;
  if (!text_moment(end, &to)) return kBadPoint;
  if (!target(&at)) return kBadPoint;
  return compare(from, to, at, inclusive != 0);
}

std::int32_t check_string_date(const wchar* start, const wchar* end, const wchar* target,
                               std::int32_t inclusive) {
  const auto noon_of_target = [target](FILETIME* at) {
    return date_text_moment(target, kNoonOfDay.text, at);
  };
  return check_dates(start, end, noon_of_target, inclusive);
}

std::int32_t check_string_current_date(const wchar* start, const wchar* end,
                                       std::int32_t inclusive) {
  return check_dates(start, end, utc_clock_moment, inclusive);
}

std::int32_t check_string_date_time(const wchar* start, const wchar* end, const wchar* target,
                                    std::int32_t inclusive) {
  const auto target_text = [target](FILETIME* at) { return text_moment(target, at); };
  return check_date_times(start, end, target_text, inclusive);
}

std::int32_t check_string_current_date_time(const wchar* start, const wchar* end,
                                            std::int32_t inclusive) {
  return check_date_times(start, end, utc_clock_moment, inclusive);
}

// The narrow forms hold no logic of their own: each text is converted up
// into scratch sized to it, and the wide form decides. Scratch that cannot
// be had gives the bad-point result.
template <class WideForm, class... Narrow>
std::int32_t through_wide(WideForm wide_form, std::int32_t inclusive, const Narrow*... texts) {
  const auto run = [&](const auto&... wide) {
    if (!(static_cast<bool>(wide) && ...)) return kBadPoint;
    return wide_form(wide.get()..., inclusive);
  };
  return run(WideText(texts)...);
}

}  // namespace
}  // namespace kz::datetime

using namespace kz::datetime;

extern "C" {

KZ_API int32_t KZ_CheckDate(const DateRecord* start, const DateRecord* end,
                            const DateRecord* target) {
  FILETIME from, to, at;
  if (!date_moment(start, kDayStart, &from)) return kBadPoint;
  if (!date_moment(end, kDayEnd, &to)) return kBadPoint;
  if (!date_moment(target, kNoon, &at)) return kBadPoint;
  return compare(from, to, at, true);
}

KZ_API int32_t KZ_CheckCurrentDate(const DateRecord* start, const DateRecord* end) {
  FILETIME from, to, at;
  if (!date_moment(start, kDayStart, &from)) return kBadPoint;
  if (!date_moment(end, kDayEnd, &to)) return kBadPoint;
  if (!clock_moment(&at)) return kBadPoint;
  return compare(from, to, at, true);
}

KZ_API int32_t KZ_CheckDateTime(const DateTimeRecord* start, const DateTimeRecord* end,
                                const DateTimeRecord* target) {
  FILETIME from, to, at;
  if (!date_time_moment(start, &from)) return kBadPoint;
  if (!date_time_moment(end, &to)) return kBadPoint;
  if (!date_time_moment(target, &at)) return kBadPoint;
  return compare(from, to, at, true);
}

KZ_API int32_t KZ_CheckCurrentDateTime(const DateTimeRecord* start, const DateTimeRecord* end) {
  FILETIME from, to, at;
  if (!date_time_moment(start, &from)) return kBadPoint;
  if (!date_time_moment(end, &to)) return kBadPoint;
  if (!clock_moment(&at)) return kBadPoint;
  return compare(from, to, at, true);
}

KZ_API int32_t KZ_CheckStringDateW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                   const KZ_WCHAR* target, int32_t inclusive) {
  return check_string_date(start, end, target, inclusive);
}
KZ_API int32_t KZ_CheckStringDateA(const char* start, const char* end, const char* target,
                                   int32_t inclusive) {
  return through_wide(check_string_date, inclusive, start, end, target);
}

KZ_API int32_t KZ_CheckStringCurrentDateW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                          int32_t inclusive) {
  return check_string_current_date(start, end, inclusive);
}
KZ_API int32_t KZ_CheckStringCurrentDateA(const char* start, const char* end, int32_t inclusive) {
  return through_wide(check_string_current_date, inclusive, start, end);
}

KZ_API int32_t KZ_CheckStringDateTimeW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                       const KZ_WCHAR* target, int32_t inclusive) {
  return check_string_date_time(start, end, target, inclusive);
}
KZ_API int32_t KZ_CheckStringDateTimeA(const char* start, const char* end, const char* target,
                                       int32_t inclusive) {
  return through_wide(check_string_date_time, inclusive, start, end, target);
}

KZ_API int32_t KZ_CheckStringCurrentDateTimeW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                              int32_t inclusive) {
  return check_string_current_date_time(start, end, inclusive);
}
KZ_API int32_t KZ_CheckStringCurrentDateTimeA(const char* start, const char* end,
                                              int32_t inclusive) {
  return through_wide(check_string_current_date_time, inclusive, start, end);
}

}  // extern "C"
