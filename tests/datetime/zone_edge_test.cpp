// The zone step at the ends of the count, and a zone changed while the
// program runs. The Zone tests hold in any zone; ctest runs them under
// Asia/Tokyo, UTC and America/New_York, on Linux and under Wine.
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string>
#include <type_traits>

#include "platform/filetime.h"
#include "platform/platform.h"
#include "support.h"
#include "twins.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

constexpr std::int64_t kLastTick = 0x7FFF'FFFF'FFFF'FFFF;
constexpr auto kTicksPerSecond = static_cast<std::int64_t>(os::kTicksPerSecond);
constexpr std::int64_t kUntouched = 0x5A5A5A5A'A5A5A5A5;

// The offset in force, in ticks east of UTC, as the platform steps a moment
// in the middle of the count.
std::int64_t offset_in_force() {
  const SYSTEMTIME t = system_time(2024, 1, 15, 12, 0);
  FILETIME utc{}, local{};
  EXPECT_NE(os::SystemTimeToFileTime(&t, &utc), 0);
  EXPECT_NE(os::FileTimeToLocalFileTime(&utc, &local), 0);
  return ticks(local) - ticks(utc);
}

// Both ends of the count, each side of the tick at which the local form
// leaves it in this zone, and all bits set: a local form outside the
// count is refused and leaves the out-value, never wraps.
TEST(ZoneEdge, LocalFormOutsideTheCountIsRefusedNotWrapped) {
  const std::int64_t offset = offset_in_force();
  const std::int64_t edge = offset < 0 ? -offset : kLastTick - offset;
  for (const std::uint64_t bits :
       {std::uint64_t{0}, std::uint64_t{kLastTick}, std::uint64_t(edge), std::uint64_t(edge) - 1,
        std::uint64_t(edge) + 1, ~std::uint64_t{0}}) {
    const auto utc = static_cast<std::int64_t>(bits);
    const bool in_count = utc >= 0 && (offset >= 0 ? utc <= kLastTick - offset : utc >= -offset);
    FILETIME local = moment(kUntouched);
    const FILETIME in = moment(utc);
    ASSERT_EQ(os::FileTimeToLocalFileTime(&in, &local) != 0, in_count) << std::hex << utc;
    EXPECT_EQ(ticks(local), in_count ? utc + offset : kUntouched) << std::hex << utc;
  }
}

template <class Ch>
class ZoneEdgeText : public ::testing::Test {};
TYPED_TEST_SUITE(ZoneEdgeText, ElementTypes);

TYPED_TEST(ZoneEdgeText, TopBitGivesZeroAndLeavesTheBuffer) {
  using Ch = TypeParam;
  for (const std::int64_t bits : {std::int64_t{-1}, INT64_MIN}) {
    const FILETIME time = moment(bits);
    auto out = sentinel_buffer<Ch>(32);
    EXPECT_EQ(Twin<Ch>::FileTimeString(&time, out.data(), 1, Ch('-'), Ch('T')), 0) << bits;
    EXPECT_TRUE(untouched_from(out, 0)) << bits;
  }
}

// Puts TZ back as it was, set or not ("TZ" alone removes it), at the end.
struct SavedTz {
  std::string setting = std::getenv("TZ") ? std::string("TZ=") + std::getenv("TZ") : "TZ";
  ~SavedTz() {
    static std::string kept;  // putenv keeps the pointer
    kept = setting;
    putenv(kept.data());
  }
};

// A program that sets TZ while it runs gets the new zone at the next call,
// in both directions of the step and in the clock. The zones are POSIX
// rules without daylight time, so they need no zone files. Not named Zone:
// it changes TZ itself, and does not apply under the per-zone runs. The
// Windows build takes its zone from the system; KZ_WCHAR is the system's
// wchar_t only there.
TEST(ChangingTz, NextCallTakesTheNewOffset) {
  if (std::is_same_v<KZ_WCHAR, wchar_t>) GTEST_SKIP() << "the Windows zone does not follow TZ";
  const SavedTz saved;
  static struct {
    char setting[16];
    const char* local_text;
    int minutes;
  } rows[] = {{"TZ=JST-9", "2024-01-02T09:00:00", 540},
              {"TZ=HST10", "2024-01-01T14:00:00", -600},
              {"TZ=IST-5:30", "2024-01-02T05:30:00", 330},
              {"TZ=UTC0", "2024-01-02T00:00:00", 0},
              {"TZ=JST-9", "2024-01-02T09:00:00", 540}};
  const SYSTEMTIME midnight = system_time(2024, 1, 2), epoch = system_time(1970, 1, 1);
  FILETIME utc{}, unix_start{};
  ASSERT_NE(os::SystemTimeToFileTime(&midnight, &utc), 0);
  ASSERT_NE(os::SystemTimeToFileTime(&epoch, &unix_start), 0);
  for (auto& row : rows) {
    ASSERT_EQ(putenv(row.setting), 0);
    char out[32];
    ASSERT_NE(KZ_FileTimeStringA(&utc, out, 0, '-', 'T'), 0);
    EXPECT_STREQ(out, row.local_text) << row.setting;
    FILETIME read{};
    ASSERT_NE(KZ_StringFileTimeA(row.local_text, &read, '-', 'T'), 0);
    EXPECT_EQ(ticks(read), ticks(utc)) << row.setting;
    // The clock: local now less the zone's offset is UTC now, within a minute.
    SYSTEMTIME now;
    os::GetLocalTime(&now);
    FILETIME local_now{};
    ASSERT_NE(os::SystemTimeToFileTime(&now, &local_now), 0);
    const std::int64_t drift = ticks(local_now) - row.minutes * 60 * kTicksPerSecond -
                               ticks(unix_start) -
                               std::int64_t{std::time(nullptr)} * kTicksPerSecond;
    EXPECT_LT(std::abs(drift), 60 * kTicksPerSecond) << row.setting;
  }
}

}  // namespace
