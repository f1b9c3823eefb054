// The time calls on POSIX: the calendar arithmetic is our own, so the whole
// range from 1601 to 30827 works without the limits of time_t conversions;
// the present moment and the zone come from the C library and the process's
// TZ.
#include <time.h>

#include "platform/calendar.h"

namespace kz::os {
namespace {

using namespace calendar;

// The wall clock now, broken down in the zone that TZ names at this moment.
// localtime_r need not look at TZ again once it has read it, so tzset
// first: a program that changes TZ while it runs gets the new zone at the
// next call. False when the moment cannot be broken down.
bool local_now(timespec& now, tm& local) {
  clock_gettime(CLOCK_REALTIME, &now);
  tzset();
  return localtime_r(&now.tv_sec, &local) != nullptr;
}

// The zone offset in force now, in ticks east of UTC.
std::int64_t offset_now() {
  timespec now{};
  tm local{};
  if (!local_now(now, local)) return 0;
  return static_cast<std::int64_t>(local.tm_gmtoff) * static_cast<std::int64_t>(kTicksPerSecond);
}

}  // namespace

void GetLocalTime(SYSTEMTIME* time) {
  timespec now{};
  tm local{};
  local_now(now, local);
  time->wYear = static_cast<WORD>(local.tm_year + 1900);
  time->wMonth = static_cast<WORD>(local.tm_mon + 1);
  time->wDayOfWeek = static_cast<WORD>(local.tm_wday);
  time->wDay = static_cast<WORD>(local.tm_mday);
  time->wHour = static_cast<WORD>(local.tm_hour);
  time->wMinute = static_cast<WORD>(local.tm_min);
  // A leap second shows as 60 in struct tm; SYSTEMTIME has no room for it.
  time->wSecond = static_cast<WORD>(local.tm_sec > 59 ? 59 : local.tm_sec);
  time->wMilliseconds = static_cast<WORD>(now.tv_nsec / 1'000'000);
}

BOOL SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time) {
  const SYSTEMTIME& t = *system_time;
  if (!is_valid(t)) return 0;
  const auto days = static_cast<std::uint64_t>(days_from_civil(t.wYear, t.wMonth, t.wDay));
  const std::uint64_t seconds = t.wHour * 3600u + t.wMinute * 60u + t.wSecond;
  *file_time = to_file_time(days * kTicksPerDay + seconds * kTicksPerSecond +
                            t.wMilliseconds * kTicksPerMillisecond);
  return 1;
}

BOOL FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time) {
  const std::uint64_t ticks = to_ticks(*file_time);
  if (!is_moment(ticks)) return 0;
  const std::uint64_t days = ticks / kTicksPerDay;
  const std::uint64_t in_day = ticks % kTicksPerDay;
  const Civil date = civil_from_days(static_cast<std::int64_t>(days));
  const std::uint64_t seconds = in_day / kTicksPerSecond;
  system_time->wYear = static_cast<WORD>(date.year);
  system_time->wMonth = static_cast<WORD>(date.month);
  system_time->wDayOfWeek = static_cast<WORD>((days + 1) % 7);  // 1601-01-01 was a Monday
  system_time->wDay = static_cast<WORD>(date.day);
  system_time->wHour = static_cast<WORD>(seconds / 3600);
  system_time->wMinute = static_cast<WORD>(seconds / 60 % 60);
  system_time->wSecond = static_cast<WORD>(seconds % 60);
  system_time->wMilliseconds = static_cast<WORD>(in_day % kTicksPerSecond / kTicksPerMillisecond);
  return 1;
}

// The sum wraps in unsigned arithmetic; with the moment in range and an
// offset of hours, a local form outside the count has the top bit set.
BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) {
  const std::uint64_t from = to_ticks(*utc);
  const std::uint64_t to = from + static_cast<std::uint64_t>(offset_now());
  if (!is_moment(from) || !is_moment(to)) return 0;
  *local = to_file_time(to);
  return 1;
}

// Wraps as the system's does: a local moment near the start of the count
// east of UTC gives a value with the top bit set, which FileTimeToSystemTime
// then refuses.
BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc) {
  *utc = to_file_time(to_ticks(*local) - static_cast<std::uint64_t>(offset_now()));
  return 1;
}

LONG CompareFileTime(const FILETIME* first, const FILETIME* second) {
  const std::uint64_t a = to_ticks(*first), b = to_ticks(*second);
  return a < b ? -1 : (a > b ? 1 : 0);
}

}  // namespace kz::os
