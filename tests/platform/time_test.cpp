// The platform's calendar: range checks, the ends of the count, and the
// POSIX arithmetic held against vectors that the real Windows calls wrote.
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "platform/platform.h"
#include "support.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

// 2000 is a leap year, 2100 is not.
TEST(PlatformTime, AcceptsTheEndsOfTheRangeAndRefusesEveryFieldOutOfIt) {
  struct Case {
    bool accepted;
    int year, month, day, hour, minute, second, ms;
  } cases[] = {
      {true, 1601, 1, 1, 0, 0, 0, 0},   {true, 30827, 12, 31, 23, 59, 59, 999},
      {true, 2000, 2, 29, 0, 0, 0, 0},  {false, 1600, 12, 31, 23, 59, 59, 999},
      {false, 30828, 1, 1, 0, 0, 0, 0}, {false, 2100, 2, 29, 0, 0, 0, 0},
      {false, 2024, 4, 31, 0, 0, 0, 0}, {false, 2024, 0, 1, 0, 0, 0, 0},
      {false, 2024, 1, 1, 24, 0, 0, 0}, {false, 2024, 1, 1, 0, 60, 0, 0},
      {false, 2024, 1, 1, 0, 0, 60, 0}, {false, 2024, 1, 1, 0, 0, 0, 1000},
  };
  for (const Case& c : cases) {
    const SYSTEMTIME t = system_time(c.year, c.month, c.day, c.hour, c.minute, c.second, c.ms);
    FILETIME out{0x11111111, 0x22222222};
    EXPECT_EQ(os::SystemTimeToFileTime(&t, &out) != 0, c.accepted)
        << c.year << "-" << c.month << "-" << c.day << " " << c.hour << ":" << c.minute << ":"
        << c.second << "." << c.ms;
  }
}

// The vectors hold the refusal of the top bit; the record is kept too.
TEST(PlatformTime, RefusesTheTopBitAndLeavesTheRecord) {
  for (std::uint64_t bits : {0x8000000000000000ull, 0xFFFFFFFFFFFFFFFFull}) {
    SYSTEMTIME t = system_time(2024, 1, 2, 3, 4, 5, 6);
    t.wDayOfWeek = 9;
    const SYSTEMTIME kept = t;
    const FILETIME top = moment(static_cast<std::int64_t>(bits));
    EXPECT_EQ(os::FileTimeToSystemTime(&top, &t), 0);
    EXPECT_EQ(std::memcmp(&t, &kept, sizeof t), 0);
  }
}

// The high half decides, and the count is unsigned.
TEST(PlatformTime, ComparesWholeUnsignedCounts) {
  struct Case {
    std::uint64_t first, second;
    int expected;
  } cases[] = {
      {0, 0, 0},
      {1, 2, -1},
      {2, 1, 1},
      {0x00000001'00000000ull, 0x00000000'FFFFFFFFull, 1},
      {0xFFFFFFFF'FFFFFFFFull, 0, 1},
  };
  for (const Case& c : cases) {
    const FILETIME a = moment(static_cast<std::int64_t>(c.first));
    const FILETIME b = moment(static_cast<std::int64_t>(c.second));
    EXPECT_EQ(os::CompareFileTime(&a, &b), c.expected) << c.first << " vs " << c.second;
  }
}

// The vectors come from the real calls (tools/gen-time-vectors/generate). On
// POSIX this holds our calendar against Windows; under Wine it checks the
// file against the system it was made on.
TEST(PlatformTime, AgreesWithTheRecordedWindowsVectors) {
  std::ifstream file(KZ_TEST_DATA "/time_vectors.txt");
  ASSERT_TRUE(file) << "cannot open " << KZ_TEST_DATA "/time_vectors.txt";
  std::string line, kind, arrow;
  int system_lines = 0, file_lines = 0;
  while (std::getline(file, line)) {
    std::istringstream in(line);
    in >> kind;
    unsigned long long ticks;
    int ok = 1;
    unsigned fields[8];  // year month day-of-week day hour minute second ms
    if (kind == "S") {
      // A record, its count and its day of week: both ways.
      in >> fields[0] >> fields[1] >> fields[3] >> fields[4] >> fields[5] >> fields[6] >>
          fields[7] >> arrow >> ticks >> fields[2];
      const SYSTEMTIME t =
          system_time(fields[0], fields[1], fields[3], fields[4], fields[5], fields[6], fields[7]);
      FILETIME moment{};
      ASSERT_NE(os::SystemTimeToFileTime(&t, &moment), 0) << line;
      ASSERT_EQ(static_cast<unsigned long long>(kz::test::ticks(moment)), ticks) << line;
      ++system_lines;
    } else if (kind == "F") {
      // A count, whether it converts, and the record it gives.
      in >> ticks >> arrow >> ok;
      for (unsigned& field : fields) in >> field;
      ++file_lines;
    } else {
      continue;
    }
    const FILETIME moment = kz::test::moment(static_cast<std::int64_t>(ticks));
    SYSTEMTIME t{};
    ASSERT_EQ(os::FileTimeToSystemTime(&moment, &t) != 0, ok != 0) << line;
    if (!ok) continue;
    const std::uint16_t got[8] = {t.wYear, t.wMonth,  t.wDayOfWeek, t.wDay,
                                  t.wHour, t.wMinute, t.wSecond,    t.wMilliseconds};
    for (int i = 0; i < 8; ++i) ASSERT_EQ(got[i], fields[i]) << line;
  }
  EXPECT_GT(system_lines, 1000);
  EXPECT_GT(file_lines, 400);
}

// Every day of four centuries, through the conversion and back: the count
// goes up by one day at a time and the day of week turns with it.
TEST(PlatformTime, WalksEveryDayOfFourCenturies) {
  const SYSTEMTIME start = system_time(1999, 3, 1);
  FILETIME first;
  ASSERT_NE(os::SystemTimeToFileTime(&start, &first), 0);
  std::int64_t count = ticks(first);
  SYSTEMTIME previous;
  ASSERT_NE(os::FileTimeToSystemTime(&first, &previous), 0);
  for (int i = 0; i < 146'097; ++i) {
    count += 864'000'000'000;
    const FILETIME next = moment(count);
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
    ASSERT_EQ(ticks(again), count);
    previous = current;
  }
  // 146097 days are exactly 400 years.
  EXPECT_EQ(previous.wYear, 2399);
  EXPECT_EQ(previous.wMonth, 3);
  EXPECT_EQ(previous.wDay, 1);
}

}  // namespace
