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

using namespace kz::test;

template <class Ch>
class PinnedClock : public ::testing::Test {
 protected:
  void SetUp() override {
    const char* pinned = std::getenv("KZ_PINNED_CLOCK");
    if (pinned == nullptr) GTEST_SKIP() << "runs only through tests/run-with-clock";
    int f[6];
    char fraction[16] = "0";
    ASSERT_GE(std::sscanf(pinned, "%d-%d-%d %d:%d:%d.%9[0-9]", &f[0], &f[1], &f[2], &f[3], &f[4],
                          &f[5], fraction),
              6);
    const int ms = std::atoi((std::string(fraction) + "000").substr(0, 3).c_str());  // ".5": 500
    kz::os::GetLocalTime(&now);
    ASSERT_EQ(joined(now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond,
                     now.wMilliseconds),
              joined(f[0], f[1], f[2], f[3], f[4], f[5], ms))
        << "the clock is not frozen at " << pinned << " (is libfaketime preloaded?)";
    const DateRecord date{now.wYear, now.wMonth, now.wDay};
    const TimeRecord time{now.wHour, now.wMinute, now.wSecond};
    Ch out[16];
    Twin<Ch>::DateString(&date, out, Ch('-'));
    date_text = out;
    Twin<Ch>::TimeString(&time, out);
    second_text = date_text + Ch('T') + out;
  }
  std::basic_string<Ch> at(const char* time) const { return date_text + text<Ch>(time); }

  SYSTEMTIME now;
  std::basic_string<Ch> date_text, second_text;
};
TYPED_TEST_SUITE(PinnedClock, ElementTypes);

TYPED_TEST(PinnedClock, WritesTheFrozenMoment) {
  using Ch = TypeParam;
  Ch out[32], expected[32];
  EXPECT_EQ(Twin<Ch>::CurrentDateTimeString(out, 1, Ch('-'), Ch('T')), 23);
  EXPECT_EQ(Twin<Ch>::SystemTimeString(&this->now, expected, 1, Ch('-'), Ch('T')), 23);
  EXPECT_EQ(std::basic_string<Ch>(out), expected);
  EXPECT_EQ(Twin<Ch>::CurrentDateString(out, Ch('-')), 10);
  EXPECT_EQ(std::basic_string<Ch>(out), this->date_text);
  EXPECT_EQ(Twin<Ch>::CurrentTimeString(out), 8);
  EXPECT_EQ(std::basic_string<Ch>(out), this->second_text.substr(11));
}

// The record form runs to the last millisecond of the day, the text form
// to the last whole second; the strict compare also leaves out 00:00:00.000
// and 23:59:59.000.
TYPED_TEST(PinnedClock, RecordDateRunsToTheLastMillisecondTextDateToTheLastSecond) {
  const DateRecord today{this->now.wYear, this->now.wMonth, this->now.wDay};
  EXPECT_EQ(KZ_CheckCurrentDate(&today, &today), 1);
  const int seconds = (this->now.wHour * 60 + this->now.wMinute) * 60 + this->now.wSecond;
  const int32_t expected = seconds == 86399 && this->now.wMilliseconds > 0 ? 0 : 1;
  const auto day = this->date_text;
  EXPECT_EQ(Twin<TypeParam>::CheckStringCurrentDate(day.c_str(), day.c_str(), 1), expected);
  const bool on_a_bound = this->now.wMilliseconds == 0 && (seconds == 0 || seconds == 86399);
  EXPECT_EQ(Twin<TypeParam>::CheckStringCurrentDate(day.c_str(), day.c_str(), 0),
            on_a_bound ? 0 : expected);
}

// Starting at this very second: inside under the strict compare only once
// the milliseconds have moved on.
TYPED_TEST(PinnedClock, DateTimeEndNamingThisSecondHoldsOnlyAtMillisecondZero) {
  using T = Twin<TypeParam>;
  const SYSTEMTIME& n = this->now;
  const int32_t expected = n.wMilliseconds == 0 ? 1 : 0;
  const DateTimeRecord start{n.wYear, n.wMonth, n.wDay, 0, 0, 0};
  const DateTimeRecord end{n.wYear, n.wMonth, n.wDay, n.wHour, n.wMinute, n.wSecond};
  EXPECT_EQ(KZ_CheckCurrentDateTime(&start, &end), expected);
  const auto from = this->at("T00:00:00"), to = this->second_text,
             later = this->at("T23:59:59.999");
  EXPECT_EQ(T::CheckStringCurrentDateTime(from.c_str(), to.c_str(), 1), expected);
  EXPECT_EQ(T::CheckStringCurrentDateTime(to.c_str(), later.c_str(), 0), 1 - expected);
}

}  // namespace
