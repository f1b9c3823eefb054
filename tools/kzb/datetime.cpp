// kzb now / weekday / in-range, and the date and time family's part of the
// tour.
#include <cstring>
#include <string>

#include "kzb.h"

namespace kzb {
namespace {

wstring wide(const std::string& utf8) { return from_utf8(utf8); }

// One character of the command line as one wide element.
bool single_element(const std::string& utf8, KZ_WCHAR* element) {
  const wstring text = from_utf8(utf8);
  if (text.size() != 1) return false;
  *element = text[0];
  return true;
}

std::string system_time_text(const SYSTEMTIME& t) {
  KZ_WCHAR out[42];
  KZ_SystemTimeStringW(&t, out, 1, '-', ' ');
  return to_utf8(out);
}

SYSTEMTIME record(int year, int month, int day, int hour, int minute, int second, int ms) {
  SYSTEMTIME t{};
  t.wYear = static_cast<uint16_t>(year);
  t.wMonth = static_cast<uint16_t>(month);
  t.wDay = static_cast<uint16_t>(day);
  t.wHour = static_cast<uint16_t>(hour);
  t.wMinute = static_cast<uint16_t>(minute);
  t.wSecond = static_cast<uint16_t>(second);
  t.wMilliseconds = static_cast<uint16_t>(ms);
  return t;
}

}  // namespace

int run_now(const Args& args) {
  int32_t milliseconds = 0;
  KZ_WCHAR delimiter = '-', separator = ' ';
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--ms") {
      milliseconds = 1;
    } else if ((args[i] == "-d" || args[i] == "-s") && i + 1 < args.size()) {
      KZ_WCHAR* target = args[i] == "-d" ? &delimiter : &separator;
      if (!single_element(args[++i], target))
        return fail(kBadUsage, "%s takes one character", args[i - 1].c_str());
    } else {
      return fail(kBadUsage, "usage: kzb now [--ms] [-d C] [-s C]");
    }
  }
  KZ_WCHAR out[42];
  KZ_CurrentDateTimeStringW(out, milliseconds, delimiter, separator);
  std::printf("%s\n", to_utf8(out).c_str());
  return kOk;
}

int run_weekday(const Args& args) {
  if (args.size() != 1) return fail(kBadUsage, "usage: kzb weekday YYYY-MM-DD");
  DateRecord date;
  uint16_t day_of_week = 0;
  KZ_WCHAR english[32], japanese[32];
  if (!KZ_StringDateW(wide(args[0]).c_str(), &date, '-') ||
      !KZ_QueryDayOfWeekW(&date, &day_of_week, english, japanese))
    return fail(kBadInput, "'%s' is no date of the calendar", args[0].c_str());
  std::printf("%04u-%02u-%02u %u %sday %s\n", date.year, date.month, date.day, day_of_week,
              to_utf8(english).c_str(), to_utf8(japanese).c_str());
  return kOk;
}

// Exit status 0 inside, 1 outside, 2 for a point that does not convert.
int run_in_range(const Args& args) {
  if (args.size() != 2 && args.size() != 3)
    return fail(kBadUsage, "usage: kzb in-range START END [TARGET]");
  bool date_times = false;
  for (const std::string& point : args) date_times |= point.find('T') != std::string::npos;
  const wstring start = wide(args[0]), end = wide(args[1]);
  const wstring target = args.size() == 3 ? wide(args[2]) : wstring();
  int32_t result;
  if (args.size() == 3) {
    result = date_times ? KZ_CheckStringDateTimeW(start.c_str(), end.c_str(), target.c_str(), 1)
                        : KZ_CheckStringDateW(start.c_str(), end.c_str(), target.c_str(), 1);
  } else {
    result = date_times ? KZ_CheckStringCurrentDateTimeW(start.c_str(), end.c_str(), 1)
                        : KZ_CheckStringCurrentDateW(start.c_str(), end.c_str(), 1);
  }
  if (result < 0) return fail(2, "a point is no %s", date_times ? "date-time" : "date");
  std::printf("%s\n", result == 1 ? "inside" : "outside");
  return result == 1 ? 0 : 1;
}

void tour_datetime() {
  std::printf("\nDates and times\n");
  show("KZ_QueryDays(2100, 2)", std::to_string(KZ_QueryDays(2100, 2)));
  const DateRecord tuesday{2024, 1, 2}, no_such_day{2100, 2, 29};
  uint16_t day_of_week = 0;
  KZ_WCHAR english[32], japanese[32];
  const int32_t found = KZ_QueryDayOfWeekW(&tuesday, &day_of_week, english, japanese);
  show("KZ_QueryDayOfWeekW(2024-01-02)", std::to_string(found) + ": " +
                                             std::to_string(day_of_week) + " " + to_utf8(english) +
                                             " " + to_utf8(japanese));
  show("KZ_QueryDayOfWeekW(2100-02-29)",
       std::to_string(KZ_QueryDayOfWeekW(&no_such_day, nullptr, nullptr, nullptr)));
  show("KZ_MonthToNumericW(\"jan\")", std::to_string(KZ_MonthToNumericW(wide("jan").c_str())));

  SYSTEMTIME t = record(2024, 1, 31, 23, 59, 59, 500);
  KZ_AddSystemTime(&t, 1000);
  show("KZ_AddSystemTime(2024-01-31 23:59:59.500, 1000)",
       system_time_text(t) + " (day " + std::to_string(t.wDayOfWeek) + ")");
  KZ_WCHAR out[42];
  const SYSTEMTIME sample = record(2024, 1, 2, 3, 4, 5, 6);
  KZ_SystemTimeStringW(&sample, out, 1, '-', 'T');
  show("KZ_SystemTimeStringW(.., ms, '-', 'T')", to_utf8(out));
  const FILETIME zero{0, 0};
  const int32_t converted = KZ_FileTimeStringW(&zero, out, 0, '-', ' ');
  show("KZ_FileTimeStringW(0) in the local zone",
       converted ? to_utf8(out) : std::string("0 (before the count here)"));

  DateRecord loose;
  KZ_StringDateW(wide("2024-13-45").c_str(), &loose, '-');
  show("KZ_StringDateW(\"2024-13-45\")", std::to_string(loose.year) + " " +
                                             std::to_string(loose.month) + " " +
                                             std::to_string(loose.day));
  FILETIME moment{};
  const int32_t read = KZ_StringFileTimeW(wide("2024-01-02T09:00:00.5").c_str(), &moment, '-', 'T');
  KZ_FileTimeStringW(&moment, out, 1, '-', 'T');
  show("KZ_StringFileTimeW(\"2024-01-02T09:00:00.5\")",
       std::to_string(read) + ", back: " + to_utf8(out));
  show("KZ_CheckStringDateW(01-01, 01-31, 01-15)",
       std::to_string(KZ_CheckStringDateW(wide("2024-01-01").c_str(), wide("2024-01-31").c_str(),
                                          wide("2024-01-15").c_str(), 1)));
  show("KZ_CheckStringDateTimeW(target = start, strict)",
       std::to_string(KZ_CheckStringDateTimeW(wide("2024-01-02T03:04:05").c_str(),
                                              wide("2024-01-02T04:00:00").c_str(),
                                              wide("2024-01-02T03:04:05").c_str(), 0)));
  const DateRecord bad{2024, 13, 1};
  show("KZ_CheckDate(2024-13-01, ..)", std::to_string(KZ_CheckDate(&bad, &tuesday, &tuesday)));
}

}  // namespace kzb
