// Days in a month, the day of the week with its names, and milliseconds
// added to or taken from a SYSTEMTIME: KZ_QueryDays, KZ_QueryDayOfWeek,
// KZ_AddSystemTime and KZ_SubSystemTime. KZ_QueryDays keeps a calendar of its
// own (every fourth year a leap year, nothing before 1960); the rest stands
// on the platform's Gregorian conversions.
#include <array>

#include "datetime/datetime.h"
#include "platform/filetime.h"

namespace kz::datetime {
namespace {

constexpr std::int32_t kDaysInMonth[2][12] = {
    {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
    {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31},
};

constexpr std::size_t kDayNameCapacity = 32;  // elements every name buffer holds

// The English names stop before the ending "day" that all seven share.
constexpr const char* kEnglishDays[7] = {"Sun", "Mon", "Tues", "Wednes", "Thurs", "Fri", "Satur"};

template <class Ch>
constexpr auto kEnglishDayNames = [] {
  std::array<Literal<Ch, 8>, 7> table{};
  for (std::size_t day = 0; day < 7; ++day)
    for (std::size_t i = 0; kEnglishDays[day][i] != 0; ++i)
      table[day].text[i] = static_cast<Ch>(kEnglishDays[day][i]);
  return table;
}();

// The single kanji of each day: Shift-JIS byte pairs for narrow text,
// whatever the code page at run time, and UTF-16 units for wide text.
template <class Ch>
struct JapaneseDays;

template <>
struct JapaneseDays<char> {
  static constexpr char names[7][3] = {"\x93\xFA", "\x8C\x8E", "\x89\xCE", "\x90\x85",
                                       "\x96\xD8", "\x8B\xE0", "\x93\x79"};
};

template <>
struct JapaneseDays<wchar> {
  static constexpr wchar names[7][2] = {{0x65E5, 0}, {0x6708, 0}, {0x706B, 0}, {0x6C34, 0},
                                        {0x6728, 0}, {0x91D1, 0}, {0x571F, 0}};
};

template <class Ch>
std::int32_t query_day_of_week(const DateRecord* date, std::uint16_t* day_of_week, Ch* english,
                               Ch* japanese) {
  SYSTEMTIME time{};
  time.wYear = date->year;
  time.wMonth = date->month;
  time.wDay = date->day;
  FILETIME moment;
  if (!os::SystemTimeToFileTime(&time, &moment)) return 0;
  const os::BOOL converted = os::FileTimeToSystemTime(&moment, &time);
  if (!converted) return 0;
  if (day_of_week != nullptr) *day_of_week = time.wDayOfWeek;
  if (english != nullptr)
    Text<Ch>::copy(english, kDayNameCapacity, kEnglishDayNames<Ch>[time.wDayOfWeek].text);
  if (japanese != nullptr)
    Text<Ch>::copy(japanese, kDayNameCapacity, JapaneseDays<Ch>::names[time.wDayOfWeek]);
  return converted;
}

// One signed step of milliseconds on the tick count. The sum wraps in 64
// bits; a difference below the start of the count sets the top bit, which
// the conversion back refuses, so the record stays as it was.
std::int32_t shift_system_time(SYSTEMTIME* time, std::uint32_t milliseconds, bool add) {
  FILETIME moment;
  if (!os::SystemTimeToFileTime(time, &moment)) return 0;
  const std::uint64_t ticks = os::to_ticks(moment);
  const std::uint64_t step = milliseconds * os::kTicksPerMillisecond;
  moment = os::to_file_time(add ? ticks + step : ticks - step);
  return os::FileTimeToSystemTime(&moment, time);
}

}  // namespace
}  // namespace kz::datetime

extern "C" {

KZ_API int32_t KZ_QueryDays(uint16_t year, uint16_t month) {
  if (year < 1960) return -1;
  if (month < 1 || month > 12) return -1;
  return kz::datetime::kDaysInMonth[year % 4 == 0 ? 1 : 0][month - 1];
}

KZ_API int32_t KZ_QueryDayOfWeekW(const DateRecord* date, uint16_t* day_of_week, KZ_WCHAR* english,
                                  KZ_WCHAR* japanese) {
  return kz::datetime::query_day_of_week(date, day_of_week, english, japanese);
}

KZ_API int32_t KZ_QueryDayOfWeekA(const DateRecord* date, uint16_t* day_of_week, char* english,
                                  char* japanese) {
  return kz::datetime::query_day_of_week(date, day_of_week, english, japanese);
}

KZ_API int32_t KZ_AddSystemTime(SYSTEMTIME* time, uint32_t milliseconds) {
  return kz::datetime::shift_system_time(time, milliseconds, true);
}

KZ_API int32_t KZ_SubSystemTime(SYSTEMTIME* time, uint32_t milliseconds) {
  return kz::datetime::shift_system_time(time, milliseconds, false);
}

}  // extern "C"
