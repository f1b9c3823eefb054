// The platform's calendar: range checks, the ends of the count, and the
// POSIX arithmetic held against vectors that the real Windows calls wrote.
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/platform.h"
#include "support.h"

namespace {

namespace os = kz::os;

std::uint64_t ticks_of(const FILETIME& t) {
  return (static_cast<std::uint64_t>(t.dwHighDateTime) << 32) | t.dwLowDateTime;
}

FILETIME moment_of(std::uint64_t ticks) {
  return {static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
}

SYSTEMTIME record(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                  int ms = 0) {
  SYSTEMTIME t{};
  t.wYear = static_cast<std::uint16_t>(year);
  t.wMonth = static_cast<std::uint16_t>(month);
  t.wDay = static_cast<std::uint16_t>(day);
  t.wHour = static_cast<std::uint16_t>(hour);
  t.wMinute = static_cast<std::uint16_t>(minute);
  t.wSecond = static_cast<std::uint16_t>(second);
  t.wMilliseconds = static_cast<std::uint16_t>(ms);
  return t;
}

TEST(PlatformTime, RefusesEveryFieldOutOfRange) {
  const SYSTEMTIME refused[] = {
      record(1600, 12, 31, 23, 59, 59, 999),
      record(30828, 1, 1),
      record(65535, 1, 1),
      record(2023, 2, 29),  // a common year
      record(2100, 2, 29),  // a century that is no leap year
      record(2024, 4, 31),
      record(2024, 0, 1),
      record(2024, 13, 1),
      record(2024, 1, 0),
      record(2024, 1, 32),
      record(2024, 1, 1, 24),
      record(2024, 1, 1, 0, 60),
      record(2024, 1, 1, 0, 0, 60),
      record(2024, 1, 1, 0, 0, 0, 1000),
  };
  for (const SYSTEMTIME& t : refused) {
    FILETIME out{0x11111111, 0x22222222};
    EXPECT_EQ(os::SystemTimeToFileTime(&t, &out), 0) << t.wYear << "-" << t.wMonth << "-" << t.wDay;
  }
}

TEST(PlatformTime, AcceptsTheEndsOfTheRangeAndLeapDays) {
  const SYSTEMTIME accepted[] = {record(1601, 1, 1), record(30827, 12, 31, 23, 59, 59, 999),
                                 record(2000, 2, 29), record(2024, 2, 29), record(1604, 2, 29)};
  for (const SYSTEMTIME& t : accepted) {
    FILETIME out;
    EXPECT_NE(os::SystemTimeToFileTime(&t, &out), 0) << t.wYear << "-" << t.wMonth << "-" << t.wDay;
  }
}

TEST(PlatformTime, RefusesTheTopBitAndLeavesTheRecord) {
  for (std::uint64_t ticks : {0x8000000000000000ull, 0xFFFFFFFFFFFFFFFFull}) {
    SYSTEMTIME t = record(2024, 1, 2, 3, 4, 5, 6);
    t.wDayOfWeek = 9;
    const FILETIME moment = moment_of(ticks);
    EXPECT_EQ(os::FileTimeToSystemTime(&moment, &t), 0);
    EXPECT_EQ(t.wYear, 2024);
    EXPECT_EQ(t.wDayOfWeek, 9);
    EXPECT_EQ(t.wMilliseconds, 6);
  }
}

TEST(PlatformTime, ComparesWholeUnsignedCounts) {
  struct Case {
    std::uint64_t first, second;
    int expected;
  };
  const Case cases[] = {
      {0, 0, 0},
      {1, 2, -1},
      {2, 1, 1},
      {0x00000001'00000000ull, 0x00000000'FFFFFFFFull, 1},  // the high half decides
      {0x00000000'80000000ull, 0x00000000'7FFFFFFFull, 1},  // halves are unsigned
      {0xFFFFFFFF'FFFFFFFFull, 0, 1},
  };
  for (const Case& c : cases) {
    const FILETIME a = moment_of(c.first), b = moment_of(c.second);
    EXPECT_EQ(os::CompareFileTime(&a, &b), c.expected) << c.first << " vs " << c.second;
  }
}

// The vectors come from the real calls (tools/gen-time-vectors/generate). On
// POSIX this holds our calendar against Windows; under Wine it checks the
// file against the system it was made on.
TEST(PlatformTime, AgreesWithTheRecordedWindowsVectors) {
  std::ifstream file(KZ_TEST_DATA "/time_vectors.txt");
  ASSERT_TRUE(file) << "cannot open " << KZ_TEST_DATA "/time_vectors.txt";
  std::string line;
  int system_lines = 0, file_lines = 0;
  while (std::getline(file, line)) {
    std::istringstream in(line);
    std::string kind, arrow;
    in >> kind;
    if (kind == "S") {
      int y, mo, d, h, mi, s, ms;
      unsigned long long ticks;
      int day_of_week;
      in >> y >> mo >> d >> h >> mi >> s >> ms >> arrow >> ticks >> day_of_week;
      const SYSTEMTIME t = record(y, mo, d, h, mi, s, ms);
      FILETIME moment{};
      ASSERT_NE(os::SystemTimeToFileTime(&t, &moment), 0) << line;
      ASSERT_EQ(ticks_of(moment), ticks) << line;
      SYSTEMTIME back{};
      ASSERT_NE(os::FileTimeToSystemTime(&moment, &back), 0) << line;
      SYSTEMTIME expected = t;
      expected.wDayOfWeek = static_cast<std::uint16_t>(day_of_week);
      ASSERT_EQ(0, std::memcmp(&back, &expected, sizeof back)) << "round trip of " << line;
      ++system_lines;
    } else if (kind == "F") {
      unsigned long long ticks;
      int ok;
      unsigned fields[8];
      in >> ticks >> arrow >> ok;
      for (unsigned& field : fields) in >> field;
      const FILETIME moment = moment_of(ticks);
      SYSTEMTIME t{};
      ASSERT_EQ(os::FileTimeToSystemTime(&moment, &t) != 0, ok != 0) << line;
      if (!ok) continue;
      const std::uint16_t got[8] = {t.wYear, t.wMonth,  t.wDayOfWeek, t.wDay,
                                    t.wHour, t.wMinute, t.wSecond,    t.wMilliseconds};
      for (int i = 0; i < 8; ++i) ASSERT_EQ(got[i], fields[i]) << line;
      ++file_lines;
    }
  }
  EXPECT_GT(system_lines, 1000);
  EXPECT_GT(file_lines, 400);
}

// Every day of four centuries, through the conversion and back: the count
// goes up by one day at a time and the day of week turns with it.
TEST(PlatformTime, WalksEveryDayOfFourCenturies) {
  SYSTEMTIME t = record(1999, 3, 1);
  FILETIME moment;
  ASSERT_NE(os::SystemTimeToFileTime(&t, &moment), 0);
  const std::uint64_t day = 864'000'000'000ull;
  std::uint64_t ticks = ticks_of(moment);
  SYSTEMTIME previous;
  ASSERT_NE(os::FileTimeToSystemTime(&moment, &previous), 0);
  for (int i = 0; i < 146'097; ++i) {
    ticks += day;
    const FILETIME next = moment_of(ticks);
    SYSTEMTIME current;
    ASSERT_NE(os::FileTimeToSystemTime(&next, &current), 0);
    ASSERT_EQ(current.wDayOfWeek, (previous.wDayOfWeek + 1) % 7);
    const bool next_day = current.wDay == previous.wDay + 1 && current.wMonth == previous.wMonth;
    const bool next_month =
        current.wDay == 1 &&
        (current.wMonth == previous.wMonth + 1 ||
         (previous.wMonth == 12 && current.wMonth == 1 && current.wYear == previous.wYear + 1));
    ASSERT_TRUE(next_day || next_month) << current.wYear << "-" << current.wMonth;
    FILETIME again;
    ASSERT_NE(os::SystemTimeToFileTime(&current, &again), 0);
    ASSERT_EQ(ticks_of(again), ticks);
    previous = current;
  }
  EXPECT_EQ(previous.wYear, 2399);  // 146097 days are exactly 400 years
  EXPECT_EQ(previous.wMonth, 3);
  EXPECT_EQ(previous.wDay, 1);
}

}  // namespace
