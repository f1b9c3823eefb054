// The zone step at the ends of the count, and a zone changed while the
// program runs. The Zone tests hold in any zone; ctest runs them under
// Asia/Tokyo, UTC and America/New_York, on Linux and under Wine.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <iterator>
#include <string>
#include <type_traits>

#include "platform/filetime.h"
#include "platform/platform.h"
#include "support.h"
#include "twins.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

constexpr std::uint64_t kLastTick = 0x7FFF'FFFF'FFFF'FFFFull;
constexpr std::uint64_t kNoTime = 0xFFFF'FFFF'FFFF'FFFFull;
constexpr std::uint64_t kTopBit = 0x8000'0000'0000'0000ull;
constexpr auto kTicksPerSecond = static_cast<std::int64_t>(os::kTicksPerSecond);
constexpr FILETIME kUntouched = {0x5A5A5A5A, 0xA5A5A5A5};

FILETIME at(std::uint64_t bits) { return moment(static_cast<std::int64_t>(bits)); }

bool same(const FILETIME& a, const FILETIME& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// The offset in force, in ticks east of UTC, as the platform steps a moment
// in the middle of the count.
std::int64_t offset_in_force() {
  const SYSTEMTIME t = system_time(2024, 1, 15, 12, 0);
  FILETIME utc{}, local{};
  EXPECT_NE(os::SystemTimeToFileTime(&t, &utc), 0);
  EXPECT_NE(os::FileTimeToLocalFileTime(&utc, &local), 0);
  return ticks(local) - ticks(utc);
}

// Whether utc plus offset lies within the count, worked out without the
// unsigned sum that wraps.
bool local_form_in_count(std::uint64_t utc, std::int64_t offset) {
  if (utc > kLastTick) return false;
  const auto from = static_cast<std::int64_t>(utc);
  return offset >= 0 ? from <= static_cast<std::int64_t>(kLastTick) - offset : from >= -offset;
}

// Both ends of the count, each side of the tick at which the local form
// leaves it in this zone, and the two usual values with the top bit set.
TEST(ZoneEdge, LocalFormOutsideTheCountIsRefusedNotWrapped) {
  const std::int64_t offset = offset_in_force();
  const std::uint64_t edge = offset < 0 ? static_cast<std::uint64_t>(-offset)
                                        : kLastTick - static_cast<std::uint64_t>(offset);
  for (const std::uint64_t utc :
       {std::uint64_t{0}, kLastTick, edge, edge - 1, edge + 1, kTopBit, kNoTime}) {
    FILETIME local = kUntouched;
    const FILETIME in = at(utc);
    const os::BOOL stepped = os::FileTimeToLocalFileTime(&in, &local);
    if (local_form_in_count(utc, offset)) {
      ASSERT_NE(stepped, 0) << std::hex << utc;
      EXPECT_EQ(ticks(local), static_cast<std::int64_t>(utc) + offset) << std::hex << utc;
    } else {
      EXPECT_EQ(stepped, 0) << std::hex << utc;
      EXPECT_TRUE(same(local, kUntouched)) << std::hex << utc;
    }
  }
}

template <class Ch>
class ZoneEdgeText : public ::testing::Test {};
TYPED_TEST_SUITE(ZoneEdgeText, ElementTypes);

TYPED_TEST(ZoneEdgeText, TopBitGivesZeroAndLeavesTheBuffer) {
  using Ch = TypeParam;
  for (const std::uint64_t bits : {kNoTime, kTopBit}) {
    for (const int32_t milliseconds : {0, 1}) {
      const FILETIME time = at(bits);
      auto out = sentinel_buffer<Ch>(32);
      EXPECT_EQ(Twin<Ch>::FileTimeString(&time, out.data(), milliseconds, Ch('-'), Ch('T')), 0)
          << std::hex << bits;
      EXPECT_TRUE(untouched_from(out, 0)) << std::hex << bits;
    }
  }
}

// The Windows build takes its zone from the system, not from the process's
// TZ; KZ_WCHAR is the system's wchar_t only there.
constexpr bool kZoneFollowsTz = !std::is_same_v<KZ_WCHAR, wchar_t>;

// Puts TZ back as it was, set or not, when the test ends.
class SavedTz {
 public:
  SavedTz() {
    const char* value = std::getenv("TZ");
    setting_ = value != nullptr ? std::string("TZ=") + value : "TZ";
  }
  ~SavedTz() { putenv(setting_.data()); }  // "TZ" alone removes it
  SavedTz(const SavedTz&) = delete;
  SavedTz& operator=(const SavedTz&) = delete;

 private:
  static inline std::string setting_;  // putenv keeps the pointer
};

// A program that sets TZ while it runs gets the new zone at the next call,
// in both directions of the step and in the clock. The zones are POSIX
// rules without daylight time, so they need no zone files. Not named Zone:
// it changes TZ itself, and does not apply under the per-zone runs.
TEST(ChangingTz, NextCallTakesTheNewOffset) {
  if (!kZoneFollowsTz) GTEST_SKIP() << "the Windows zone does not follow TZ";
  const SavedTz saved;
  static char settings[][16] = {"TZ=JST-9", "TZ=HST10", "TZ=IST-5:30", "TZ=UTC0", "TZ=JST-9"};
  const struct {
    const char* local_text;
    int minutes;
  } expected[] = {
      {"2024-01-02T09:00:00", 540}, {"2024-01-01T14:00:00", -600}, {"2024-01-02T05:30:00", 330},
      {"2024-01-02T00:00:00", 0},   {"2024-01-02T09:00:00", 540},
  };
  const SYSTEMTIME midnight = system_time(2024, 1, 2), epoch = system_time(1970, 1, 1);
  FILETIME utc{}, unix_start{};
  ASSERT_NE(os::SystemTimeToFileTime(&midnight, &utc), 0);
  ASSERT_NE(os::SystemTimeToFileTime(&epoch, &unix_start), 0);
  const std::int64_t unix_epoch = ticks(unix_start);
  for (std::size_t i = 0; i < std::size(settings); ++i) {
    ASSERT_EQ(putenv(settings[i]), 0);
    char out[32];
    ASSERT_NE(KZ_FileTimeStringA(&utc, out, 0, '-', 'T'), 0);
    EXPECT_STREQ(out, expected[i].local_text) << settings[i];
    FILETIME read{};
    ASSERT_NE(KZ_StringFileTimeA(expected[i].local_text, &read, '-', 'T'), 0);
    EXPECT_EQ(ticks(read), ticks(utc)) << settings[i];
    // The clock: local now less the zone's offset is UTC now, within a minute.
    SYSTEMTIME now;
    os::GetLocalTime(&now);
    FILETIME local_now{};
    ASSERT_NE(os::SystemTimeToFileTime(&now, &local_now), 0);
    const std::int64_t utc_now = unix_epoch + std::int64_t{std::time(nullptr)} * kTicksPerSecond;
    const std::int64_t drift =
        ticks(local_now) - expected[i].minutes * 60 * kTicksPerSecond - utc_now;
    EXPECT_LT(drift < 0 ? -drift : drift, 60 * kTicksPerSecond) << settings[i];
  }
}

}  // namespace
