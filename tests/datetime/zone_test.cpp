// The zone step: FILETIMEs are UTC, records and texts local, and the step
// uses the offset in force at the moment of the call. ctest runs the Zone
// tests under Asia/Tokyo, UTC and America/New_York, on Linux and under Wine
// (which takes its zone from the same TZ), and the offset of those zones is
// known here by their own rules; in any other zone the test skips.
#include <chrono>
#include <cstdlib>
#include <optional>
#include <random>

#include "files.h"
#include "platform/platform.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

constexpr auto kMinute = 60 * static_cast<int64_t>(os::kTicksPerSecond);

int64_t utc_ticks(int year, int month, int day, int hour = 0, int minute = 0) {
  const SYSTEMTIME t = system_time(year, month, day, hour, minute);
  FILETIME out{};
  EXPECT_NE(os::SystemTimeToFileTime(&t, &out), 0);
  return ticks(out);
}

// How far the local clock is from the UTC clock plus `offset`, in ticks.
int64_t clock_drift(int64_t offset) {
  SYSTEMTIME now;
  os::GetLocalTime(&now);
  FILETIME local{};
  EXPECT_NE(os::SystemTimeToFileTime(&now, &local), 0);
  const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
  return std::abs(ticks(local) - offset - utc_ticks(1970, 1, 1) -
                  std::chrono::duration_cast<std::chrono::microseconds>(since_1970).count() * 10);
}

// The offset of the zone TZ names, if the test knows it. New York keeps
// daylight time from the second Sunday of March, 07:00 UTC, to the first
// Sunday of November, 06:00 UTC; the offset in force now is used all year.
std::optional<int64_t> known_offset() {
  using namespace std::chrono;
  const char* zone = std::getenv("TZ");
  const std::string name = zone == nullptr ? "" : zone[0] == ':' ? zone + 1 : zone;
  const auto now = system_clock::now();
  const year this_year = year_month_day{floor<days>(now)}.year();
  const bool summer = now >= sys_days{this_year / March / Sunday[2]} + hours{7} &&
                      now < sys_days{this_year / November / Sunday[1]} + hours{6};
  if (name == "Asia/Tokyo") return 540 * kMinute;
  if (name == "UTC" || name == "UTC0" || name == "Etc/UTC") return 0;
  if (name == "America/New_York") return (summer ? -240 : -300) * kMinute;
  return std::nullopt;
}

KZ_TWIN_SUITE(ZoneText);

// The same offset for every moment converted, winter or summer, and for
// the local clock, and the way back. At both ends of the count, each side
// of the tick at which the local form leaves it in this zone, and with all
// bits set, a local form outside the count is refused and leaves the
// out-value, never wraps.
TYPED_TEST(ZoneText, StepsByTheOffsetOfTheZoneTzNamesAndWrittenMomentsReadBack) {
  using Ch = TypeParam;
  const auto known = known_offset();
  if (!known) GTEST_SKIP() << "TZ names no zone this test knows (ctest sets it for it)";
  const int64_t offset = *known, untouched = 0x5A5A5A5A'A5A5A5A5;
  const auto edge = static_cast<uint64_t>(offset < 0 ? -offset : INT64_MAX - offset);
  for (const uint64_t bits :
       {uint64_t(utc_ticks(2024, 1, 15, 12)), uint64_t(utc_ticks(2024, 7, 15)),
        uint64_t(utc_ticks(1700, 3, 1)), uint64_t{0}, uint64_t{INT64_MAX}, edge, edge - 1, edge + 1,
        ~uint64_t{0}}) {
    const auto utc = static_cast<int64_t>(bits);
    const bool in_count = utc >= 0 && (offset >= 0 ? utc <= INT64_MAX - offset : utc >= -offset);
    FILETIME local = moment(untouched), back{};
    const FILETIME in = moment(utc);
    ASSERT_EQ(os::FileTimeToLocalFileTime(&in, &local) != 0, in_count) << std::hex << utc;
    EXPECT_EQ(ticks(local), in_count ? utc + offset : untouched) << std::hex << utc;
    if (!in_count) continue;
    ASSERT_NE(os::LocalFileTimeToFileTime(&local, &back), 0);
    EXPECT_EQ(ticks(back), utc) << std::hex << utc;
  }
  EXPECT_LT(clock_drift(offset), 20'000'000) << "is tzdata installed for TZ?";
  // A moment whose local form leaves the count, or with the top bit set,
  // gives 0 and leaves the buffer; any other written with milliseconds reads
  // back to the same millisecond, from local text.
  const int64_t ms = static_cast<int64_t>(os::kTicksPerMillisecond);
  FILETIME read{};
  const auto nine = text<Ch>("2024-01-02T09:00:00");
  ASSERT_NE(Twin<Ch>::StringFileTime(nine.c_str(), &read, Ch('-'), Ch('T')), 0);
  EXPECT_EQ(ticks(read), utc_ticks(2024, 1, 2, 9) - offset) << "the text is local time";
  const int64_t first = utc_ticks(1601, 1, 1), last = utc_ticks(30827, 12, 30);
  std::vector<int64_t> moments = {first, last, -1, INT64_MIN};
  std::mt19937_64 random(12345);
  for (int i = 0; i < 500; ++i)
    moments.push_back(first + int64_t(random() % uint64_t(last / ms)) * ms);
  for (const int64_t utc : moments) {
    const FILETIME original = moment(utc);
    const bool written = utc >= 0 && utc + offset >= 0;
    auto out = sentinel_buffer<Ch>(32);
    ASSERT_EQ(Twin<Ch>::FileTimeString(&original, out.data(), 1, Ch('/'), Ch('T')), written) << utc;
    if (!written) {
      EXPECT_TRUE(untouched_from(out, 0)) << utc;
      continue;
    }
    FILETIME back{};
    ASSERT_NE(Twin<Ch>::StringFileTime(out.data(), &back, Ch('/'), Ch('T')), 0);
    ASSERT_EQ(ticks(back), utc);
  }
}

// A program that sets TZ while it runs gets the new zone at the next call,
// in both directions of the step and in the clock. The zones are POSIX
// rules without daylight time, so they need no zone files. Not named Zone:
// it changes TZ itself, and does not apply under the per-zone runs. The
// Windows build takes its zone from the system; KZ_WCHAR is the system's
// wchar_t only there.
TEST(ChangingTz, NextCallTakesTheNewOffset) {
  if (std::is_same_v<KZ_WCHAR, wchar_t>) GTEST_SKIP() << "the Windows zone does not follow TZ";
  const char* zones[] = {"JST-9", "HST10", "IST-5:30", "UTC0", "JST-9"};
  const char* local[] = {"2024-01-02T09:00:00", "2024-01-01T14:00:00", "2024-01-02T05:30:00",
                         "2024-01-02T00:00:00", "2024-01-02T09:00:00"};
  const int minutes[] = {540, -600, 330, 0, 540};
  const FILETIME utc = moment(utc_ticks(2024, 1, 2));
  for (int k = 0; k < 5; ++k) {
    const ScopedVariable zone("TZ", zones[k]);  // the next puts TZ back
    char out[32];
    FILETIME read{};
    ASSERT_NE(KZ_FileTimeStringA(&utc, out, 0, '-', 'T'), 0);
    ASSERT_NE(KZ_StringFileTimeA(local[k], &read, '-', 'T'), 0);
    EXPECT_STREQ(out, local[k]);
    EXPECT_EQ(ticks(read), ticks(utc)) << zones[k];
    EXPECT_LT(clock_drift(minutes[k] * kMinute), kMinute) << zones[k];
  }
}

}  // namespace
