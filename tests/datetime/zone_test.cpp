// The zone step: FILETIMEs are UTC, records and texts local, and the step
// uses the offset in force at the moment of the call. These tests know the
// offset of a few zones by their own rules and run when TZ names one of
// them: ctest runs them under Asia/Tokyo, UTC and America/New_York, on
// Linux and under Wine (which takes its zone from the same TZ).
#include <chrono>
#include <cstdlib>
#include <optional>
#include <string>

#include "platform/platform.h"
#include "support.h"

namespace {

namespace os = kz::os;
using kz::test::text;

constexpr std::int64_t kTicksPerMinute = 600'000'000;

// Days from 1970-01-01 to a date of the proleptic Gregorian calendar.
std::int64_t days_since_1970(std::int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const auto yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

// The n-th Sunday of a month, as days since 1970 (1970-01-01 was a Thursday).
std::int64_t nth_sunday(std::int64_t year, unsigned month, int n) {
  const std::int64_t first = days_since_1970(year, month, 1);
  const std::int64_t weekday = (first + 4) % 7;
  return first + (7 - weekday) % 7 + 7 * (n - 1);
}

// New York keeps daylight time from the second Sunday of March, 07:00 UTC,
// to the first Sunday of November, 06:00 UTC.
int new_york_offset_now() {
  const std::int64_t now = std::chrono::duration_cast<std::chrono::seconds>(
                               std::chrono::system_clock::now().time_since_epoch())
                               .count();
  std::int64_t year = 1970 + now / 31'556'952;
  if (now < days_since_1970(year, 1, 1) * 86400) --year;
  if (now >= days_since_1970(year + 1, 1, 1) * 86400) ++year;
  const std::int64_t begins = nth_sunday(year, 3, 2) * 86400 + 7 * 3600;
  const std::int64_t ends = nth_sunday(year, 11, 1) * 86400 + 6 * 3600;
  return now >= begins && now < ends ? -240 : -300;
}

// The offset east of UTC in minutes that TZ names, if the test knows it.
std::optional<int> expected_offset() {
  const char* zone = std::getenv("TZ");
  if (zone == nullptr) return std::nullopt;
  std::string name = zone;
  if (!name.empty() && name[0] == ':') name.erase(0, 1);
  if (name == "Asia/Tokyo") return 540;
  if (name == "UTC" || name == "UTC0" || name == "Etc/UTC") return 0;
  if (name == "America/New_York") return new_york_offset_now();
  return std::nullopt;
}

// Skips the tests of a zone that TZ does not name.
class KnownZone {
 protected:
  bool known() {
    offset_ = expected_offset();
    return offset_.has_value();
  }
  int minutes() const { return *offset_; }
  std::int64_t step() const { return *offset_ * kTicksPerMinute; }

 private:
  std::optional<int> offset_;
};

constexpr const char* kUnknownZone = "TZ names no zone these tests know (ctest sets it for them)";

class Zone : public ::testing::Test, protected KnownZone {
 protected:
  void SetUp() override {
    if (!known()) GTEST_SKIP() << kUnknownZone;
  }
};

std::int64_t ticks(const FILETIME& t) {
  return static_cast<std::int64_t>((static_cast<std::uint64_t>(t.dwHighDateTime) << 32) |
                                   t.dwLowDateTime);
}

FILETIME moment(std::int64_t value) {
  const auto bits = static_cast<std::uint64_t>(value);
  return {static_cast<std::uint32_t>(bits), static_cast<std::uint32_t>(bits >> 32)};
}

std::int64_t utc_ticks(int year, int month, int day, int hour, int minute) {
  SYSTEMTIME t{};
  t.wYear = static_cast<std::uint16_t>(year);
  t.wMonth = static_cast<std::uint16_t>(month);
  t.wDay = static_cast<std::uint16_t>(day);
  t.wHour = static_cast<std::uint16_t>(hour);
  t.wMinute = static_cast<std::uint16_t>(minute);
  FILETIME out{};
  EXPECT_NE(os::SystemTimeToFileTime(&t, &out), 0);
  return ticks(out);
}

// The same offset for every moment converted, winter or summer: the one in
// force now.
TEST_F(Zone, StepsByTheOffsetInForceNow) {
  for (const std::int64_t utc : {utc_ticks(2024, 1, 15, 12, 0), utc_ticks(2024, 7, 15, 12, 0),
                                 utc_ticks(1700, 3, 1, 0, 0)}) {
    FILETIME local{}, back{};
    const FILETIME in = moment(utc);
    ASSERT_NE(os::FileTimeToLocalFileTime(&in, &local), 0);
    EXPECT_EQ(ticks(local) - utc, this->step());
    ASSERT_NE(os::LocalFileTimeToFileTime(&local, &back), 0);
    EXPECT_EQ(ticks(back), utc);
  }
}

TEST_F(Zone, LocalClockIsTheUtcClockPlusTheOffset) {
  SYSTEMTIME local;
  os::GetLocalTime(&local);
  FILETIME local_moment;
  ASSERT_NE(os::SystemTimeToFileTime(&local, &local_moment), 0);
  const std::int64_t unix_ticks = std::chrono::duration_cast<std::chrono::microseconds>(
                                      std::chrono::system_clock::now().time_since_epoch())
                                      .count() *
                                  10;
  const std::int64_t utc_now = unix_ticks + utc_ticks(1970, 1, 1, 0, 0);
  const std::int64_t drift = ticks(local_moment) - this->step() - utc_now;
  EXPECT_LT(drift < 0 ? -drift : drift, 20'000'000) << "is tzdata installed for TZ?";
}

template <class Ch>
class ZoneText : public ::testing::Test, protected KnownZone {
 protected:
  void SetUp() override {
    if (!known()) GTEST_SKIP() << kUnknownZone;
  }
};
TYPED_TEST_SUITE(ZoneText, kz::test::ElementTypes);

template <class Ch>
int32_t write_file_time(const FILETIME* t, Ch* out, int32_t ms, Ch d, Ch s) {
  if constexpr (sizeof(Ch) == 1)
    return KZ_FileTimeStringA(t, out, ms, d, s);
  else
    return KZ_FileTimeStringW(t, out, ms, d, s);
}

template <class Ch>
int32_t read_file_time(const Ch* text, FILETIME* t, Ch d, Ch s) {
  if constexpr (sizeof(Ch) == 1)
    return KZ_StringFileTimeA(text, t, d, s);
  else
    return KZ_StringFileTimeW(text, t, d, s);
}

// East of UTC the start of the count is written in local time; west of it
// the local moment lies before the count and nothing is written.
TYPED_TEST(ZoneText, StartOfTheCountIsWrittenInLocalTime) {
  using Ch = TypeParam;
  const FILETIME zero{0, 0};
  auto out = kz::test::sentinel_buffer<Ch>(32);
  const int32_t result = write_file_time<Ch>(&zero, out.data(), 0, '-', ' ');
  if (this->minutes() < 0) {
    EXPECT_EQ(result, 0);
    EXPECT_EQ(out, kz::test::sentinel_buffer<Ch>(32));
    return;
  }
  char expected[32];
  std::snprintf(expected, sizeof expected, "1601-01-01 %02d:%02d:00", this->minutes() / 60,
                this->minutes() % 60);
  EXPECT_NE(result, 0);
  EXPECT_EQ(std::basic_string<Ch>(out.data()), text<Ch>(expected));
}

TYPED_TEST(ZoneText, FileTimeTextIsLocalTime) {
  using Ch = TypeParam;
  FILETIME read{};
  ASSERT_NE(read_file_time<Ch>(text<Ch>("2024-01-02T09:00:00").c_str(), &read, '-', 'T'), 0);
  EXPECT_EQ(ticks(read), utc_ticks(2024, 1, 2, 9, 0) - this->step());
  Ch out[32];
  const FILETIME nine_utc = moment(utc_ticks(2024, 1, 2, 9, 0) + 6 * 10'000);
  ASSERT_NE(write_file_time<Ch>(&nine_utc, out, 1, '/', 'T'), 0);
  FILETIME back{};
  ASSERT_NE(read_file_time<Ch>(out, &back, '/', 'T'), 0);
  EXPECT_EQ(ticks(back), ticks(nine_utc));
}

// Any moment written with milliseconds reads back to the same millisecond.
TYPED_TEST(ZoneText, WrittenMomentsReadBackExactly) {
  using Ch = TypeParam;
  std::uint64_t state = 12345;
  const std::int64_t first = utc_ticks(1602, 1, 1, 0, 0), last = utc_ticks(30827, 12, 30, 0, 0);
  for (int i = 0; i < 500; ++i) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    const std::int64_t ms = static_cast<std::int64_t>(
        (state >> 11) % static_cast<std::uint64_t>((last - first) / 10'000));
    const FILETIME original = moment(first + ms * 10'000);
    Ch out[32];
    ASSERT_NE(write_file_time<Ch>(&original, out, 1, '-', 'T'), 0);
    FILETIME back{};
    ASSERT_NE(read_file_time<Ch>(out, &back, '-', 'T'), 0);
    ASSERT_EQ(ticks(back), ticks(original));
  }
}

// From 00:00:00.000 to 23:59:59.000 of the local day, also far from UTC.
TEST_F(Zone, TodayIsInsideTodayInTheTextForms) {
  SYSTEMTIME now;
  os::GetLocalTime(&now);
  if (now.wHour == 23 && now.wMinute == 59 && now.wSecond == 59)
    GTEST_SKIP() << "the last second of the day lies outside by design";
  char today[32];
  std::snprintf(today, sizeof today, "%04d-%02d-%02d", now.wYear, now.wMonth, now.wDay);
  EXPECT_EQ(KZ_CheckStringCurrentDateA(today, today, 1), 1);
  const auto wide = text<kz::test::wchar>(today);
  EXPECT_EQ(KZ_CheckStringCurrentDateW(wide.c_str(), wide.c_str(), 1), 1);
  const DateRecord date{now.wYear, now.wMonth, now.wDay};
  EXPECT_EQ(KZ_CheckCurrentDate(&date, &date), 1);
}

}  // namespace
