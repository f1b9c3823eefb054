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
using namespace kz::test;

// New York keeps daylight time from the second Sunday of March, 07:00 UTC,
// to the first Sunday of November, 06:00 UTC.
int new_york_offset_now() {
  using namespace std::chrono;
  const auto now = system_clock::now();
  const year this_year = year_month_day{floor<days>(now)}.year();
  const auto begins = sys_days{this_year / March / Sunday[2]} + hours{7};
  const auto ends = sys_days{this_year / November / Sunday[1]} + hours{6};
  return now >= begins && now < ends ? -240 : -300;
}

// The offset east of UTC in minutes that TZ names, if the test knows it.
std::optional<int> expected_offset() {
  const char* zone = std::getenv("TZ");
  if (zone == nullptr) return std::nullopt;
  const std::string name = zone[0] == ':' ? zone + 1 : zone;
  if (name == "Asia/Tokyo") return 540;
  if (name == "UTC" || name == "UTC0" || name == "Etc/UTC") return 0;
  if (name == "America/New_York") return new_york_offset_now();
  return std::nullopt;
}

// Skips the tests of a zone that TZ does not name.
template <class Ch>
class ZoneText : public ::testing::Test {
 protected:
  void SetUp() override {
    offset_ = expected_offset();
    if (!offset_) GTEST_SKIP() << "TZ names no zone these tests know (ctest sets it for them)";
  }
  int minutes() const { return *offset_; }
  int64_t step() const { return *offset_ * int64_t{600'000'000}; }

 private:
  std::optional<int> offset_;
};
TYPED_TEST_SUITE(ZoneText, ElementTypes);
using Zone = ZoneText<char>;

int64_t utc_ticks(int year, int month, int day, int hour, int minute) {
  const SYSTEMTIME t = system_time(year, month, day, hour, minute);
  FILETIME out{};
  EXPECT_NE(os::SystemTimeToFileTime(&t, &out), 0);
  return ticks(out);
}

// The same offset for every moment converted, winter or summer: the one in
// force now.
TEST_F(Zone, StepsByTheOffsetInForceNow) {
  for (const int64_t utc : {utc_ticks(2024, 1, 15, 12, 0), utc_ticks(2024, 7, 15, 12, 0),
                            utc_ticks(1700, 3, 1, 0, 0)}) {
    FILETIME local{}, back{};
    const FILETIME in = moment(utc);
    ASSERT_NE(os::FileTimeToLocalFileTime(&in, &local), 0);
    EXPECT_EQ(ticks(local) - utc, step());
    ASSERT_NE(os::LocalFileTimeToFileTime(&local, &back), 0);
    EXPECT_EQ(ticks(back), utc);
  }
}

TEST_F(Zone, LocalClockIsTheUtcClockPlusTheOffset) {
  using namespace std::chrono;
  SYSTEMTIME local;
  os::GetLocalTime(&local);
  FILETIME local_moment;
  ASSERT_NE(os::SystemTimeToFileTime(&local, &local_moment), 0);
  const auto since_1970 = duration_cast<microseconds>(system_clock::now().time_since_epoch());
  const int64_t utc_now = since_1970.count() * 10 + utc_ticks(1970, 1, 1, 0, 0);
  const int64_t drift = ticks(local_moment) - step() - utc_now;
  EXPECT_LT(drift < 0 ? -drift : drift, 20'000'000) << "is tzdata installed for TZ?";
}

// East of UTC the start of the count is written in local time; west of it
// the local moment lies before the count and nothing is written.
TYPED_TEST(ZoneText, StartOfTheCountIsWrittenInLocalTime) {
  using Ch = TypeParam;
  const FILETIME zero{0, 0};
  auto out = sentinel_buffer<Ch>(32);
  const int32_t result = Twin<Ch>::FileTimeString(&zero, out.data(), 0, Ch('-'), Ch(' '));
  char expected[32];
  std::snprintf(expected, sizeof expected, "1601-01-01 %02d:%02d:00", this->minutes() / 60,
                this->minutes() % 60);
  EXPECT_EQ(result, this->minutes() < 0 ? 0 : 1);
  EXPECT_TRUE(this->minutes() < 0 ? untouched_from(out, 0) : holds(out, text<Ch>(expected), 0, 20));
}

TYPED_TEST(ZoneText, FileTimeTextIsLocalTime) {
  using Ch = TypeParam;
  FILETIME read{};
  ASSERT_NE(
      Twin<Ch>::StringFileTime(text<Ch>("2024-01-02T09:00:00").c_str(), &read, Ch('-'), Ch('T')),
      0);
  EXPECT_EQ(ticks(read), utc_ticks(2024, 1, 2, 9, 0) - this->step());
}

// Any moment written with milliseconds reads back to the same millisecond.
TYPED_TEST(ZoneText, WrittenMomentsReadBackExactly) {
  using Ch = TypeParam;
  uint64_t state = 12345;
  const int64_t first = utc_ticks(1602, 1, 1, 0, 0), last = utc_ticks(30827, 12, 30, 0, 0);
  for (int i = 0; i < 500; ++i) {
    state = state * 6364136223846793005ull + 1442695040888963407ull;
    const auto ms = static_cast<int64_t>(
        (state >> 11) %
        static_cast<uint64_t>((last - first) / static_cast<int64_t>(kz::os::kTicksPerMillisecond)));
    const FILETIME original =
        moment(first + ms * static_cast<int64_t>(kz::os::kTicksPerMillisecond));
    Ch out[32];
    ASSERT_NE(Twin<Ch>::FileTimeString(&original, out, 1, Ch('/'), Ch('T')), 0);
    FILETIME back{};
    ASSERT_NE(Twin<Ch>::StringFileTime(out, &back, Ch('/'), Ch('T')), 0);
    ASSERT_EQ(ticks(back), ticks(original));
  }
}

// From 00:00:00.000 to 23:59:59.000 of the local day, also far from UTC.
TYPED_TEST(ZoneText, TodayIsInsideTodayInTheTextForms) {
  using Ch = TypeParam;
  SYSTEMTIME now;
  os::GetLocalTime(&now);
  if (now.wHour == 23 && now.wMinute == 59 && now.wSecond == 59)
    GTEST_SKIP() << "the last second of the day lies outside by design";
  char today[32];
  std::snprintf(today, sizeof today, "%04d-%02d-%02d", now.wYear, now.wMonth, now.wDay);
  const auto day = text<Ch>(today);
  EXPECT_EQ(Twin<Ch>::CheckStringCurrentDate(day.c_str(), day.c_str(), 1), 1);
  const DateRecord date{now.wYear, now.wMonth, now.wDay};
  EXPECT_EQ(KZ_CheckCurrentDate(&date, &date), 1);
}

}  // namespace
