// Dates and times written as text: KZ_DateString, KZ_CurrentDateString,
// KZ_TimeString, KZ_CurrentTimeString, KZ_SystemTimeString,
// KZ_CurrentDateTimeString and KZ_FileTimeString. Year first, every field
// in decimal with leading zeros up to a minimum width and never cut, the
// caller's delimiter between the date fields and separator before the time.
// The results are the formatter's count of elements written.
#include "datetime/datetime.h"

namespace kz::datetime {
namespace {

template <class Ch>
struct Layouts {
  static constexpr auto date = literal<Ch>("%04d%c%02d%c%02d");
  static constexpr auto time = literal<Ch>("%02d:%02d:%02d");
  static constexpr auto date_time = literal<Ch>("%04d%c%02d%c%02d%c%02d:%02d:%02d");
  static constexpr auto date_time_ms = literal<Ch>("%04d%c%02d%c%02d%c%02d:%02d:%02d.%03d");
};

// Each 16-bit field goes to the formatter as a non-negative int.
int field(std::uint16_t value) { return value; }

template <class Ch>
std::int32_t date_string(std::uint16_t year, std::uint16_t month, std::uint16_t day, Ch* out,
                         Ch delimiter) {
  return Text<Ch>::format(out, Layouts<Ch>::date.text, field(year), delimiter, field(month),
                          delimiter, field(day));
}

template <class Ch>
std::int32_t time_string(std::uint16_t hour, std::uint16_t minute, std::uint16_t second, Ch* out) {
  return Text<Ch>::format(out, Layouts<Ch>::time.text, field(hour), field(minute), field(second));
}

// The day of week is never read; the milliseconds only under the flag.
template <class Ch>
std::int32_t system_time_string(const SYSTEMTIME& t, Ch* out, std::int32_t milliseconds,
                                Ch delimiter, Ch separator) {
  if (milliseconds != 0)
    return Text<Ch>::format(out, Layouts<Ch>::date_time_ms.text, field(t.wYear), delimiter,
                            field(t.wMonth), delimiter, field(t.wDay), separator, field(t.wHour),
                            field(t.wMinute), field(t.wSecond), field(t.wMilliseconds));
  return Text<Ch>::format(out, Layouts<Ch>::date_time.text, field(t.wYear), delimiter,
                          field(t.wMonth), delimiter, field(t.wDay), separator, field(t.wHour),
                          field(t.wMinute), field(t.wSecond));
}

// The clock is read once, so all fields of one text belong to one reading.
SYSTEMTIME now() {
  SYSTEMTIME t;
  os::GetLocalTime(&t);
  return t;
}

// The moment is UTC and is written in local time, by the zone offset in
// force now. A conversion that fails leaves the buffer untouched.
template <class Ch>
std::int32_t file_time_string(const FILETIME* time, Ch* out, std::int32_t milliseconds,
                              Ch delimiter, Ch separator) {
  FILETIME local;
  if (!os::FileTimeToLocalFileTime(time, &local)) return 0;
  SYSTEMTIME fields;
  const os::BOOL converted = os::FileTimeToSystemTime(&local, &fields);
  if (!converted) return 0;
  system_time_string(fields, out, milliseconds, delimiter, separator);
  return converted;
}

}  // namespace
}  // namespace kz::datetime

using namespace kz::datetime;

extern "C" {

KZ_API int32_t KZ_DateStringW(const DateRecord* date, KZ_WCHAR* out, KZ_WCHAR delimiter) {
  return date_string(date->year, date->month, date->day, out, delimiter);
}
KZ_API int32_t KZ_DateStringA(const DateRecord* date, char* out, char delimiter) {
  return date_string(date->year, date->month, date->day, out, delimiter);
}

KZ_API int32_t KZ_CurrentDateStringW(KZ_WCHAR* out, KZ_WCHAR delimiter) {
  const SYSTEMTIME t = now();
  return date_string(t.wYear, t.wMonth, t.wDay, out, delimiter);
}
KZ_API int32_t KZ_CurrentDateStringA(char* out, char delimiter) {
  const SYSTEMTIME t = now();
  return date_string(t.wYear, t.wMonth, t.wDay, out, delimiter);
}

KZ_API int32_t KZ_TimeStringW(const TimeRecord* time, KZ_WCHAR* out) {
  return time_string(time->hour, time->minute, time->second, out);
}
KZ_API int32_t KZ_TimeStringA(const TimeRecord* time, char* out) {
  return time_string(time->hour, time->minute, time->second, out);
}

KZ_API int32_t KZ_CurrentTimeStringW(KZ_WCHAR* out) {
  const SYSTEMTIME t = now();
  return time_string(t.wHour, t.wMinute, t.wSecond, out);
}
KZ_API int32_t KZ_CurrentTimeStringA(char* out) {
  const SYSTEMTIME t = now();
  return time_string(t.wHour, t.wMinute, t.wSecond, out);
}

KZ_API int32_t KZ_SystemTimeStringW(const SYSTEMTIME* time, KZ_WCHAR* out, int32_t milliseconds,
                                    KZ_WCHAR delimiter, KZ_WCHAR separator) {
  return system_time_string(*time, out, milliseconds, delimiter, separator);
}
KZ_API int32_t KZ_SystemTimeStringA(const SYSTEMTIME* time, char* out, int32_t milliseconds,
                                    char delimiter, char separator) {
  return system_time_string(*time, out, milliseconds, delimiter, separator);
}

KZ_API int32_t KZ_CurrentDateTimeStringW(KZ_WCHAR* out, int32_t milliseconds, KZ_WCHAR delimiter,
                                         KZ_WCHAR separator) {
  return system_time_string(now(), out, milliseconds, delimiter, separator);
}
KZ_API int32_t KZ_CurrentDateTimeStringA(char* out, int32_t milliseconds, char delimiter,
                                         char separator) {
  return system_time_string(now(), out, milliseconds, delimiter, separator);
}

KZ_API int32_t KZ_FileTimeStringW(const FILETIME* time, KZ_WCHAR* out, int32_t milliseconds,
                                  KZ_WCHAR delimiter, KZ_WCHAR separator) {
  return file_time_string(time, out, milliseconds, delimiter, separator);
}
KZ_API int32_t KZ_FileTimeStringA(const FILETIME* time, char* out, int32_t milliseconds,
                                  char delimiter, char separator) {
  return file_time_string(time, out, milliseconds, delimiter, separator);
}

}  // extern "C"
