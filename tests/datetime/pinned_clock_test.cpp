// The clock's edge cases, run by ctest through tests/run-with-clock with
// the clock frozen at the moment in KZ_PINNED_CLOCK (local time). The
// record forms end a day at 23:59:59.999, the text forms at 23:59:59.000,
// and a date-time end has milliseconds 0.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "platform/platform.h"
#include "support.h"

namespace {

using kz::test::text;

struct Pinned {
  int year, month, day, hour, minute, second, ms;
};

class PinnedClock : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* moment = std::getenv("KZ_PINNED_CLOCK");
    if (moment == nullptr) GTEST_SKIP() << "runs only through tests/run-with-clock";
    char fraction[16] = "0";
    const int fields = std::sscanf(moment, "%d-%d-%d %d:%d:%d.%9[0-9]", &at_.year, &at_.month,
                                   &at_.day, &at_.hour, &at_.minute, &at_.second, fraction);
    ASSERT_GE(fields, 6) << moment;
    // A fraction of a second: ".5" is 500 milliseconds.
    const std::string digits = (std::string(fraction) + "000").substr(0, 3);
    at_.ms = std::atoi(digits.c_str());
    SYSTEMTIME now;
    kz::os::GetLocalTime(&now);
    ASSERT_TRUE(now.wYear == at_.year && now.wMonth == at_.month && now.wDay == at_.day &&
                now.wHour == at_.hour && now.wMinute == at_.minute && now.wSecond == at_.second &&
                now.wMilliseconds == at_.ms)
        << "the clock is not frozen at " << moment << " (is libfaketime preloaded?)";
  }

  std::string date_text() const { return format("%04d-%02d-%02d", at_.year, at_.month, at_.day); }
  std::string second_text() const {
    return date_text() + format("T%02d:%02d:%02d", at_.hour, at_.minute, at_.second);
  }
  static std::string format(const char* layout, int a, int b, int c) {
    char out[64];
    std::snprintf(out, sizeof out, layout, a, b, c);
    return out;
  }
  bool in_last_second_after_its_start() const {
    return at_.hour == 23 && at_.minute == 59 && at_.second == 59 && at_.ms > 0;
  }

  Pinned at_{};
};

TEST_F(PinnedClock, WritesTheFrozenMoment) {
  kz::test::wchar wide[32];
  KZ_CurrentDateTimeStringW(wide, 1, '-', 'T');
  char ms[8];
  std::snprintf(ms, sizeof ms, ".%03d", at_.ms);
  EXPECT_EQ(kz::test::utf8(wide), second_text() + ms);
}

TEST_F(PinnedClock, RecordDateRunsToTheLastMillisecondOfTheDay) {
  const DateRecord today{static_cast<uint16_t>(at_.year), static_cast<uint16_t>(at_.month),
                         static_cast<uint16_t>(at_.day)};
  EXPECT_EQ(KZ_CheckCurrentDate(&today, &today), 1);
}

TEST_F(PinnedClock, TextDateEndsAtTheLastWholeSecond) {
  const int32_t expected = in_last_second_after_its_start() ? 0 : 1;
  const std::string today = date_text();
  const auto wide = text<kz::test::wchar>(today);
  EXPECT_EQ(KZ_CheckStringCurrentDateW(wide.c_str(), wide.c_str(), 1), expected);
  EXPECT_EQ(KZ_CheckStringCurrentDateA(today.c_str(), today.c_str(), 1), expected);
  // The strict compare also leaves out 00:00:00.000 and 23:59:59.000.
  const bool on_a_bound = at_.ms == 0 && ((at_.hour == 0 && at_.minute == 0 && at_.second == 0) ||
                                          (at_.hour == 23 && at_.minute == 59 && at_.second == 59));
  EXPECT_EQ(KZ_CheckStringCurrentDateW(wide.c_str(), wide.c_str(), 0), on_a_bound ? 0 : expected);
}

TEST_F(PinnedClock, DateTimeEndNamingThisSecondHoldsOnlyAtMillisecondZero) {
  const int32_t expected = at_.ms == 0 ? 1 : 0;
  const DateTimeRecord start{static_cast<uint16_t>(at_.year),
                             static_cast<uint16_t>(at_.month),
                             static_cast<uint16_t>(at_.day),
                             0,
                             0,
                             0};
  const DateTimeRecord end{static_cast<uint16_t>(at_.year),   static_cast<uint16_t>(at_.month),
                           static_cast<uint16_t>(at_.day),    static_cast<uint16_t>(at_.hour),
                           static_cast<uint16_t>(at_.minute), static_cast<uint16_t>(at_.second)};
  EXPECT_EQ(KZ_CheckCurrentDateTime(&start, &end), expected);
  const std::string from = date_text() + "T00:00:00", to = second_text();
  EXPECT_EQ(KZ_CheckStringCurrentDateTimeA(from.c_str(), to.c_str(), 1), expected);
  const auto wide_from = text<kz::test::wchar>(from), wide_to = text<kz::test::wchar>(to);
  EXPECT_EQ(KZ_CheckStringCurrentDateTimeW(wide_from.c_str(), wide_to.c_str(), 1), expected);
  // Starting at this very second: inside under the strict compare only
  // once the milliseconds have moved on.
  const std::string later = date_text() + "T23:59:59.999";
  EXPECT_EQ(KZ_CheckStringCurrentDateTimeA(to.c_str(), later.c_str(), 0), at_.ms > 0 ? 1 : 0);
}

}  // namespace
