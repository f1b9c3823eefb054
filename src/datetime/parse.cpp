// Date and time text read back into records and moments: KZ_StringDate,
// KZ_StringTime, KZ_StringDateTime and KZ_StringFileTime. The readers are
// tolerant: the text is split at its delimiters, each field is read as a
// leading integer whose low 16 bits are kept, missing fields stay 0 and
// surplus fields are ignored. Only the file-time reader tests the values,
// through the platform's conversion.
#include "datetime/datetime.h"

namespace kz::datetime {
namespace {

constexpr std::size_t kPartCapacity = 32;  // elements of each date-time part

// A split list released on every way out.
template <class Ch>
class Fields {
 public:
  Fields(const Ch* text, Ch delimiter) : ok_(split(text, delimiter, &list_, true) != 0) {}
  ~Fields() {
    if (ok_) release_list(&list_);
  }
  Fields(const Fields&) = delete;
  Fields& operator=(const Fields&) = delete;

  explicit operator bool() const { return ok_; }
  std::int32_t count() const { return list_.count; }
  const Ch* operator[](std::int32_t index) const { return entry<Ch>(list_, index); }
  // The value of an entry, 0 for an entry that is not there.
  std::uint16_t value(std::int32_t index) const {
    return index < list_.count ? static_cast<std::uint16_t>(Text<Ch>::to_int((*this)[index])) : 0;
  }

 private:
  StrList list_{0, nullptr};
  bool ok_;
};

// Three fields at one delimiter: year, month, day or hour, minute, second.
template <class Ch>
std::int32_t read_three(const Ch* text, Ch delimiter, std::uint16_t (&fields)[3]) {
  fields[0] = fields[1] = fields[2] = 0;
  const Fields<Ch> parts(text, delimiter);
  if (!parts) return 0;
  for (std::int32_t i = 0; i < 3; ++i) fields[i] = parts.value(i);
  return 1;
}

template <class Ch>
std::int32_t string_date(const Ch* text, DateRecord* date, Ch delimiter) {
  std::uint16_t fields[3];
  const std::int32_t result = read_three(text, delimiter, fields);
  *date = {fields[0], fields[1], fields[2]};
  return result;
}

template <class Ch>
std::int32_t string_time(const Ch* text, TimeRecord* time) {
  std::uint16_t fields[3];
  const std::int32_t result = read_three(text, static_cast<Ch>(':'), fields);
  *time = {fields[0], fields[1], fields[2]};
  return result;
}

// The record holds all six values on 1 and all zeros on 0, never half a
// reading. A part longer than its 31-element scratch is a failure too.
template <class Ch>
std::int32_t string_date_time(const Ch* text, DateTimeRecord* record, Ch delimiter, Ch separator) {
  *record = {};
  Ch date_part[kPartCapacity] = {};
  Ch time_part[kPartCapacity] = {};
  {
    const Fields<Ch> parts(text, separator);
    if (!parts) return 0;
    if (Text<Ch>::copy(date_part, kPartCapacity, parts[0]) != 0) return 0;
    if (parts.count() > 1 && Text<Ch>::copy(time_part, kPartCapacity, parts[1]) != 0) return 0;
  }
  DateRecord date;
  if (!string_date(date_part, &date, delimiter)) return 0;
  TimeRecord time;
  if (!string_time(time_part, &time)) return 0;
  *record = {date.year, date.month, date.day, time.hour, time.minute, time.second};
  return 1;
}

}  // namespace

// Local text to a UTC moment. Milliseconds count only when the time part
// has exactly one ".", and are read as a whole number: ".5" is 5.
template <class Ch>
std::int32_t string_file_time(const Ch* text, FILETIME* time, Ch delimiter, Ch separator) {
  SYSTEMTIME fields{};
  {
    const Fields<Ch> parts(text, separator);
    if (!parts || parts.count() < 2) return 0;
    DateRecord date;
    string_date(parts[0], &date, delimiter);  // an empty date stays 0 and is refused below
    const Fields<Ch> clock(parts[1], static_cast<Ch>('.'));
    if (!clock) return 0;
    TimeRecord hms;
    // An empty time reads as midnight; a time whose split ran out of memory
    // must not.
    if (!string_time(clock[0], &hms) && clock[0][0] != 0) return 0;
    fields.wYear = date.year;
    fields.wMonth = date.month;
    fields.wDay = date.day;
    fields.wHour = hms.hour;
    fields.wMinute = hms.minute;
    fields.wSecond = hms.second;
    fields.wMilliseconds = clock.count() == 2 ? clock.value(1) : 0;
  }
  FILETIME local;
  const os::BOOL converted = os::SystemTimeToFileTime(&fields, &local);
  if (!converted) return 0;
  os::LocalFileTimeToFileTime(&local, time);
  return converted;
}

template std::int32_t string_file_time(const char*, FILETIME*, char, char);
template std::int32_t string_file_time(const wchar*, FILETIME*, wchar, wchar);

}  // namespace kz::datetime

using namespace kz::datetime;

extern "C" {

KZ_API int32_t KZ_StringDateW(const KZ_WCHAR* text, DateRecord* date, KZ_WCHAR delimiter) {
  return string_date(text, date, delimiter);
}
KZ_API int32_t KZ_StringDateA(const char* text, DateRecord* date, char delimiter) {
  return string_date(text, date, delimiter);
}

KZ_API int32_t KZ_StringTimeW(const KZ_WCHAR* text, TimeRecord* time) {
  return string_time(text, time);
}
KZ_API int32_t KZ_StringTimeA(const char* text, TimeRecord* time) {
  return string_time(text, time);
}

KZ_API int32_t KZ_StringDateTimeW(const KZ_WCHAR* text, DateTimeRecord* datetime,
                                  KZ_WCHAR delimiter, KZ_WCHAR separator) {
  return string_date_time(text, datetime, delimiter, separator);
}
KZ_API int32_t KZ_StringDateTimeA(const char* text, DateTimeRecord* datetime, char delimiter,
                                  char separator) {
  return string_date_time(text, datetime, delimiter, separator);
}

KZ_API int32_t KZ_StringFileTimeW(const KZ_WCHAR* text, FILETIME* time, KZ_WCHAR delimiter,
                                  KZ_WCHAR separator) {
  return string_file_time(text, time, delimiter, separator);
}
KZ_API int32_t KZ_StringFileTimeA(const char* text, FILETIME* time, char delimiter,
                                  char separator) {
  return string_file_time(text, time, delimiter, separator);
}

}  // extern "C"
