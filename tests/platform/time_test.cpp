// The platform's calendar: range checks, the ends of the count, and the
// POSIX arithmetic held against vectors that the real Windows calls wrote.
#include <array>
#include <cstring>
#include <fstream>
#include <sstream>

#include "platform/platform.h"
#include "support.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

// The ends of the range and one step beyond each field's; 2000 is a leap
// year, 2100 is not.
TEST(PlatformTime, AcceptsTheEndsOfTheRangeAndRefusesEveryFieldOutOfIt) {
  const std::array<int, 8> cases[] = {
      // accepted, then the fields
      {1, 1601, 1, 1, 0, 0, 0, 0},  {1, 30827, 12, 31, 23, 59, 59, 999},
      {1, 2000, 2, 29, 0, 0, 0, 0}, {0, 1600, 12, 31, 23, 59, 59, 999},
      {0, 30828, 1, 1, 0, 0, 0, 0}, {0, 2100, 2, 29, 0, 0, 0, 0},
      {0, 2024, 4, 31, 0, 0, 0, 0}, {0, 2024, 0, 1, 0, 0, 0, 0},
      {0, 2024, 1, 1, 24, 0, 0, 0}, {0, 2024, 1, 1, 0, 60, 0, 0},
      {0, 2024, 1, 1, 0, 0, 60, 0}, {0, 2024, 1, 1, 0, 0, 0, 1000}};
  for (const auto& c : cases) {
    const SYSTEMTIME t = system_time(c[1], c[2], c[3], c[4], c[5], c[6], c[7]);
    FILETIME out{};
    EXPECT_EQ(os::SystemTimeToFileTime(&t, &out) != 0, c[0] == 1)
        << c[1] << "-" << c[2] << "-" << c[3] << " " << c[4] << ":" << c[5] << ":" << c[6] << "."
        << c[7];
  }
  // A count with the top bit set is refused, and the record is kept.
  for (std::uint64_t bits : {0x8000000000000000ull, 0xFFFFFFFFFFFFFFFFull}) {
    SYSTEMTIME t = system_time(2024, 1, 2, 3, 4, 5, 6);
    const SYSTEMTIME kept = t;
    const FILETIME top = moment(static_cast<std::int64_t>(bits));
    EXPECT_EQ(os::FileTimeToSystemTime(&top, &t), 0);
    EXPECT_EQ(std::memcmp(&t, &kept, sizeof t), 0);
  }
}

// The high half decides, and the count is unsigned.
TEST(PlatformTime, ComparesWholeUnsignedCounts) {
  const std::tuple<std::uint64_t, std::uint64_t, int> cases[] = {
      {0, 0, 0}, {1, 2, -1}, {0x1'00000000ull, 0xFFFFFFFFull, 1}, {~0ull, 0, 1}};
  for (const auto& [first, second, expected] : cases) {
    const FILETIME a = moment(static_cast<std::int64_t>(first));
    const FILETIME b = moment(static_cast<std::int64_t>(second));
    EXPECT_EQ(os::CompareFileTime(&a, &b), expected) << first << " vs " << second;
    EXPECT_EQ(os::CompareFileTime(&b, &a), -expected) << first << " vs " << second;
  }
}

// The vectors come from the real calls (tools/gen-time-vectors/generate):
// "S" records give a record, its count and its day of week (both ways),
// "F" records a count, whether it converts, and the record it gives. On
// POSIX this holds our calendar against Windows; under Wine it checks the
// file against the system it was made on.
TEST(PlatformTime, AgreesWithTheRecordedWindowsVectors) {
  std::ifstream file(KZ_TEST_DATA "/time_vectors.txt");
  ASSERT_TRUE(file) << "cannot open " << KZ_TEST_DATA "/time_vectors.txt";
  int lines[2] = {};
  for (std::string line, kind, arrow; std::getline(file, line);) {
    std::istringstream in(line);
    unsigned long long count;
    int ok = 1;
    unsigned f[8];  // year month day-of-week day hour minute second ms
    if (!(in >> kind) || (kind != "S" && kind != "F")) continue;
    if (kind == "S") {
      in >> f[0] >> f[1] >> f[3] >> f[4] >> f[5] >> f[6] >> f[7] >> arrow >> count >> f[2];
      const SYSTEMTIME t = system_time(f[0], f[1], f[3], f[4], f[5], f[6], f[7]);
      FILETIME written{};
      ASSERT_NE(os::SystemTimeToFileTime(&t, &written), 0) << line;
      ASSERT_EQ(static_cast<unsigned long long>(ticks(written)), count) << line;
    } else {
      in >> count >> arrow >> ok;
      for (unsigned& field : f) in >> field;
    }
    ++lines[kind == "F"];
    const FILETIME given = moment(static_cast<std::int64_t>(count));
    SYSTEMTIME t{};
    ASSERT_EQ(os::FileTimeToSystemTime(&given, &t) != 0, ok != 0) << line;
    const unsigned got[8] = {t.wYear, t.wMonth,  t.wDayOfWeek, t.wDay,
                             t.wHour, t.wMinute, t.wSecond,    t.wMilliseconds};
    ASSERT_TRUE(!ok || std::memcmp(got, f, sizeof got) == 0) << line;
  }
  EXPECT_GT(lines[0], 1000);
  EXPECT_GT(lines[1], 400);
}

}  // namespace
