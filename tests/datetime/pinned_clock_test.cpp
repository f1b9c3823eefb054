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
    const char* moment = std::getenv("KZ_PINNED_CLOCK");
    if (moment == nullptr) GTEST_SKIP() << "runs only through tests/run-with-clock";
    char fraction[16] = "0";
    ASSERT_GE(std::sscanf(moment, "%d-%d-%d %d:%d:%d.%9[0-9]", &year, &month, &day, &hour, &minute,
                          &second, fraction),
              6)
        << moment;
    ms = std::atoi((std::string(fraction) + "000").substr(0, 3).c_str());  // ".5" is 500 ms
    SYSTEMTIME now;
    kz::os::GetLocalTime(&now);
    ASSERT_TRUE(now.wYear == year && now.wMonth == month && now.wDay == day && now.wHour == hour &&
                now.wMinute == minute && now.wSecond == second && now.wMilliseconds == ms)
        << "the clock is not frozen at " << moment << " (is libfaketime preloaded?)";
    char out[64];
    std::snprintf(out, sizeof out, "%04d-%02d-%02d", year, month, day);
    date_text = out;
    std::snprintf(out, sizeof out, "T%02d:%02d:%02d", hour, minute, second);
    second_text = date_text + out;
  }
  std::basic_string<Ch> t(const std::string& s) const { return text<Ch>(s); }

  int year, month, day, hour, minute, second, ms;
  std::string date_text, second_text;
};
TYPED_TEST_SUITE(PinnedClock, ElementTypes);

TYPED_TEST(PinnedClock, WritesTheFrozenMoment) {
  using Ch = TypeParam;
  char ms[8];
  std::snprintf(ms, sizeof ms, ".%03d", this->ms);
  auto out = sentinel_buffer<Ch>(32);
  EXPECT_EQ(Twin<Ch>::CurrentDateTimeString(out.data(), 1, Ch('-'), Ch('T')), 23);
  EXPECT_EQ(str(out), this->t(this->second_text + ms));
  EXPECT_EQ(Twin<Ch>::CurrentDateString(out.data(), Ch('/')), 10);
  EXPECT_EQ(str(out), this->t(this->date_text.substr(0, 4) + "/" + this->date_text.substr(5, 2) +
                              "/" + this->date_text.substr(8, 2)));
  EXPECT_EQ(Twin<Ch>::CurrentTimeString(out.data()), 8);
  EXPECT_EQ(str(out), this->t(this->second_text.substr(11)));
}

// The record form runs to the last millisecond of the day, the text form
// to the last whole second.
TYPED_TEST(PinnedClock, RecordDateRunsToTheLastMillisecondTextDateToTheLastSecond) {
  using Ch = TypeParam;
  const DateRecord today_record{static_cast<uint16_t>(this->year),
                                static_cast<uint16_t>(this->month),
                                static_cast<uint16_t>(this->day)};
  EXPECT_EQ(KZ_CheckCurrentDate(&today_record, &today_record), 1);
  const bool last_second = this->hour == 23 && this->minute == 59 && this->second == 59;
  const int32_t expected = last_second && this->ms > 0 ? 0 : 1;
  const auto today = this->t(this->date_text);
  EXPECT_EQ(Twin<Ch>::CheckStringCurrentDate(today.c_str(), today.c_str(), 1), expected);
  // The strict compare also leaves out 00:00:00.000 and 23:59:59.000.
  const bool midnight = this->hour == 0 && this->minute == 0 && this->second == 0;
  const bool on_a_bound = this->ms == 0 && (midnight || last_second);
  EXPECT_EQ(Twin<Ch>::CheckStringCurrentDate(today.c_str(), today.c_str(), 0),
            on_a_bound ? 0 : expected);
}

TYPED_TEST(PinnedClock, DateTimeEndNamingThisSecondHoldsOnlyAtMillisecondZero) {
  using Ch = TypeParam;
  const int32_t expected = this->ms == 0 ? 1 : 0;
  const auto u16 = [](int v) { return static_cast<uint16_t>(v); };
  const DateTimeRecord start{u16(this->year), u16(this->month), u16(this->day), 0, 0, 0};
  const DateTimeRecord end{u16(this->year), u16(this->month),  u16(this->day),
                           u16(this->hour), u16(this->minute), u16(this->second)};
  EXPECT_EQ(KZ_CheckCurrentDateTime(&start, &end), expected);
  const auto from = this->t(this->date_text + "T00:00:00"), to = this->t(this->second_text);
  EXPECT_EQ(Twin<Ch>::CheckStringCurrentDateTime(from.c_str(), to.c_str(), 1), expected);
  // Starting at this very second: inside under the strict compare only
  // once the milliseconds have moved on.
  const auto later = this->t(this->date_text + "T23:59:59.999");
  EXPECT_EQ(Twin<Ch>::CheckStringCurrentDateTime(to.c_str(), later.c_str(), 0),
            this->ms > 0 ? 1 : 0);
}

}  // namespace
