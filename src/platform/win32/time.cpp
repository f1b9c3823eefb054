// The time calls: the real Win32 API.
#include "platform/calendar.h"

namespace kz::os {

void GetLocalTime(SYSTEMTIME* time) { ::GetLocalTime(time); }

// Windows refuses 29 February of a common year and every year after 30827;
// Wine accepts both, so the record is checked here first and the library
// sees the same calendar on every system.
BOOL SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time) {
  if (!calendar::is_valid(*system_time)) return 0;
  return ::SystemTimeToFileTime(system_time, file_time);
}

BOOL FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time) {
  return ::FileTimeToSystemTime(file_time, system_time);
}

BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) {
  return ::FileTimeToLocalFileTime(utc, local);
}

BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc) {
  return ::LocalFileTimeToFileTime(local, utc);
}

LONG CompareFileTime(const FILETIME* first, const FILETIME* second) {
  return ::CompareFileTime(first, second);
}

}  // namespace kz::os
