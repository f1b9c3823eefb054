// The clock's edge cases, run by ctest through tests/run-with-clock with
// the clock frozen at the moment in KZ_PINNED_CLOCK (local time). The
// record forms end a day at 23:59:59.999, the text forms at 23:59:59.000,
// and a date-time end has milliseconds 0.
#include <cstdio>
#include <cstdlib>

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
    const std::string moment = pinned;  // "YYYY-MM-DD hh:mm:ss[.fraction]"
    date_text = text<Ch>(moment.substr(0, 10));
    second_text = date_text + Ch('T') + text<Ch>(moment.substr(11, 8));
    kz::os::GetLocalTime(&now);
    char clock[64];
    std::snprintf(clock, sizeof clock, "%04d-%02d-%02d %02d:%02d:%02d.%03d", now.wYear, now.wMonth,
                  now.wDay, now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
    ASSERT_EQ(clock, ((moment.size() > 19 ? moment : moment + ".0") + "00").substr(0, 23))
        << "the clock is not frozen (is libfaketime preloaded?)";
  }
  std::basic_string<Ch> at(const char* time) const { return date_text + text<Ch>(time); }

  SYSTEMTIME now;
  std::basic_string<Ch> date_text, second_text;
};
TYPED_TEST_SUITE(PinnedClock, ElementTypes);

TYPED_TEST(PinnedClock, CurrentFormsWriteAndCheckTheFrozenMoment) {
  using Ch = TypeParam;
  using T = Twin<Ch>;
  const SYSTEMTIME& n = this->now;
  Ch all[32], date[16], time[16];
  EXPECT_EQ(joined(T::CurrentDateTimeString(all, 1, Ch('-'), Ch('T')),
                   T::CurrentDateString(date, Ch('-')), T::CurrentTimeString(time)),
            joined(23, 10, 8));
  const auto ms = text<Ch>(std::to_string(1000 + n.wMilliseconds).substr(1));
  EXPECT_EQ(std::basic_string<Ch>(all), this->second_text + Ch('.') + ms);
  EXPECT_EQ(std::basic_string<Ch>(date) + Ch('T') + time, this->second_text);
  // The record form runs to the last millisecond of the day, the text form
  // to the last whole second; the strict compare also leaves out 00:00:00.000
  // and 23:59:59.000.
  const DateRecord today{n.wYear, n.wMonth, n.wDay};
  EXPECT_EQ(KZ_CheckCurrentDate(&today, &today), 1);
  const int seconds = (n.wHour * 60 + n.wMinute) * 60 + n.wSecond;
  const int32_t expected = seconds == 86399 && n.wMilliseconds > 0 ? 0 : 1;
  const auto day = this->date_text;
  EXPECT_EQ(T::CheckStringCurrentDate(day.c_str(), day.c_str(), 1), expected);
  const bool on_a_bound = n.wMilliseconds == 0 && (seconds == 0 || seconds == 86399);
  EXPECT_EQ(T::CheckStringCurrentDate(day.c_str(), day.c_str(), 0), on_a_bound ? 0 : expected);
  // Starting at this very second: inside under the strict compare only once
  // the milliseconds have moved on.
  const int32_t at_zero = n.wMilliseconds == 0 ? 1 : 0;
  const DateTimeRecord start{n.wYear, n.wMonth, n.wDay, 0, 0, 0};
  const DateTimeRecord end{n.wYear, n.wMonth, n.wDay, n.wHour, n.wMinute, n.wSecond};
  EXPECT_EQ(KZ_CheckCurrentDateTime(&start, &end), at_zero);
  const auto from = this->at("T00:00:00"), to = this->second_text,
             later = this->at("T23:59:59.999");
  EXPECT_EQ(T::CheckStringCurrentDateTime(from.c_str(), to.c_str(), 1), at_zero);
  EXPECT_EQ(T::CheckStringCurrentDateTime(to.c_str(), later.c_str(), 0), 1 - at_zero);
}

}  // namespace
