// kzb now / weekday / in-range, and the date and time family's part of the
// tour.
#include <cstdlib>
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

// Date and date-time arguments, read strictly: a year of four digits (five
// up to 30827), a month and a day of two, and nothing after. Gives "" when
// the text has that shape, else what is wrong with it.
std::string date_shape(const std::string& text, bool& has_time) {
  const auto digits = [&](std::size_t at, std::size_t count) {
    if (at + count > text.size()) return false;
    for (std::size_t i = at; i < at + count; ++i)
      if (text[i] < '0' || text[i] > '9') return false;
    return true;
  };
  const std::size_t year_digits = digits(0, 5) ? 5 : 4;
  if (!digits(0, year_digits)) return "no year of four digits";
  std::size_t at = year_digits;
  const auto field = [&](char before, std::size_t count) {
    if (at >= text.size() || text[at] != before || !digits(at + 1, count)) return false;
    at += 1 + count;
    return true;
  };
  if (!field('-', 2) || !field('-', 2)) return "not YYYY-MM-DD";
  has_time = at < text.size() && text[at] == 'T';
  if (has_time) {
    ++at;
    if (!digits(at, 2) || !(at += 2, field(':', 2)) || !field(':', 2))
      return "not YYYY-MM-DDThh:mm:ss";
    if (at < text.size() && text[at] == '.' && !field('.', 3)) return "not a time with .mmm";
  }
  if (at != text.size()) return "something after the date";
  return "";
}

// Whether a date of the right shape lies from 1601-01-01 to 30827-12-31,
// with a month and a day of the calendar's ranges.
bool in_calendar(const std::string& text) {
  const long year = std::strtol(text.c_str(), nullptr, 10);
  const char* rest = std::strchr(text.c_str(), '-');
  const long month = std::strtol(rest + 1, nullptr, 10);
  const long day = std::strtol(rest + 4, nullptr, 10);
  return year >= 1601 && year <= 30827 && month >= 1 && month <= 12 && day >= 1 && day <= 31;
}

}  // namespace

extern const Command kCommand_now, kCommand_weekday, kCommand_in_range;

int run_now(const Args& args) {
  int32_t milliseconds = 0;
  KZ_WCHAR delimiter = '-', separator = ' ';
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--ms") {
      milliseconds = 1;
    } else if (args[i] == "-d" || args[i] == "-s") {
      if (i + 1 == args.size())
        return usage_error(kCommand_now, "%s needs a character", args[i].c_str());
      KZ_WCHAR* target = args[i] == "-d" ? &delimiter : &separator;
      if (!single_element(args[++i], target))
        return usage_error(kCommand_now, "%s takes one character, not '%s'", args[i - 1].c_str(),
                           args[i].c_str());
    } else {
      return usage_error(kCommand_now, "unknown argument '%s'", args[i].c_str());
    }
  }
  KZ_WCHAR text[42];
  KZ_CurrentDateTimeStringW(text, milliseconds, delimiter, separator);
  out().write(to_utf8(text) + "\n");
  return kOk;
}

int run_weekday(const Args& args) {
  if (args.size() != 1) return usage_error(kCommand_weekday, "one date needed");
  bool has_time = false;
  const std::string shape = date_shape(args[0], has_time);
  if (!shape.empty() || has_time)
    return usage_error(kCommand_weekday, "'%s': %s", args[0].c_str(),
                       has_time ? "a date without a time needed" : shape.c_str());
  DateRecord date;
  uint16_t day_of_week = 0;
  KZ_WCHAR english[32], japanese[32];
  if (!in_calendar(args[0]) || !KZ_StringDateW(wide(args[0]).c_str(), &date, '-') ||
      !KZ_QueryDayOfWeekW(&date, &day_of_week, english, japanese))
    return fail(kFailed, "'%s' is no date from 1601-01-01 to 30827-12-31", args[0].c_str());
  out().print("%04u-%02u-%02u %u %sday %s\n", date.year, date.month, date.day, day_of_week,
              to_utf8(english).c_str(), to_utf8(japanese).c_str());
  return kOk;
}

// Exit status 0 inside, 1 outside, 2 for a point that does not convert.
int run_in_range(const Args& args) {
  if (args.size() != 2 && args.size() != 3)
    return usage_error(kCommand_in_range, "two or three points needed");
  bool date_times = false;
  for (const std::string& point : args) {
    bool has_time = false;
    const std::string shape = date_shape(point, has_time);
    if (!shape.empty())
      return usage_error(kCommand_in_range, "'%s': %s", point.c_str(), shape.c_str());
    if (!in_calendar(point))
      return fail(kBadUsage, "in-range: '%s' is outside 1601-01-01 to 30827-12-31", point.c_str());
    date_times |= has_time;
  }
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
  if (result < 0)
    return fail(kBadUsage, "in-range: a point is no %s", date_times ? "date-time" : "date");
  out().write(result == 1 ? "inside\n" : "outside\n");
  return result == 1 ? 0 : 1;
}

const Command kCommand_now = {"now", R"usage(now [--ms] [-d C] [-s C]
  Writes the local date and time; C: the date delimiter (default '-') and
  the separator before the time (default ' '); --ms adds milliseconds.
  Example: kzb now --ms -d / -s T
)usage",
                              run_now};

const Command kCommand_weekday = {"weekday", R"usage(weekday YYYY-MM-DD
  Writes the day of the week of a date from 1601-01-01 to 30827-12-31, in
  English and in Japanese; exit status 1 for a day the calendar lacks.
  Example: kzb weekday 2024-01-02
)usage",
                                  run_weekday};

const Command kCommand_in_range = {"in-range", R"usage(in-range START END [TARGET]
  Tells whether TARGET (default: now) lies from START to END, both bounds
  included. The points are dates (YYYY-MM-DD) or date-times
  (YYYY-MM-DDThh:mm:ss[.mmm]). Exit status 0 inside, 1 outside, 2 for a
  point that is no date.
  Example: kzb in-range 2024-04-01 2025-03-31 2024-12-24
)usage",
                                   run_in_range};

void tour_datetime() {
  out().print("\nDates and times\n");
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
