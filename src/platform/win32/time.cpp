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

// The system adds the offset without a look at the range: all ones (the
// usual "no time") comes out in the first hours of 1601 east of UTC. A moment
// with the top bit set, or one whose local form leaves the count, is
// refused here first, and local stays as it was.
BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local) {
  FILETIME stepped;
  if (!is_moment(to_ticks(*utc)) || !::FileTimeToLocalFileTime(utc, &stepped) ||
      !is_moment(to_ticks(stepped)))
    return 0;
  *local = stepped;
  return 1;
}

BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc) {
  return ::LocalFileTimeToFileTime(local, utc);
}

LONG CompareFileTime(const FILETIME* first, const FILETIME* second) {
  return ::CompareFileTime(first, second);
}

}  // namespace kz::os
