// Date range checks: 1 inside, 0 outside, -1 for a point that does not
// convert, from records, texts and the clock.
#include <functional>
#include <string>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class RangeText : public ::testing::Test {};
TYPED_TEST_SUITE(RangeText, ElementTypes);

TEST(RangeRecords, DateBoundsAreWholeDaysAndDateTimeBoundsInclusiveToTheSecond) {
  struct Case {
    DateRecord start, end, target;
    int32_t expected;
  } dates[] = {
      {{2024, 1, 1}, {2024, 1, 31}, {2024, 1, 1}, 1},
      {{2024, 1, 1}, {2024, 1, 31}, {2024, 1, 31}, 1},
      {{2024, 1, 1}, {2024, 1, 1}, {2024, 1, 1}, 1},
      {{2024, 1, 1}, {2024, 1, 31}, {2024, 2, 1}, 0},
      {{2024, 1, 1}, {2024, 1, 31}, {2023, 12, 31}, 0},
      {{2024, 1, 31}, {2024, 1, 1}, {2024, 1, 15}, 0},  // start after end: outside
      {{2024, 13, 1}, {2024, 1, 31}, {2024, 1, 15}, -1},
      {{2024, 1, 1}, {2024, 2, 30}, {2024, 1, 15}, -1},
      {{2024, 1, 1}, {2024, 1, 31}, {1600, 1, 15}, -1},
      {{2024, 1, 31}, {2024, 1, 1}, {2023, 2, 29}, -1},  // a bad point beats outside
  };
  for (int i = 0; i < 10; ++i)
    EXPECT_EQ(KZ_CheckDate(&dates[i].start, &dates[i].end, &dates[i].target), dates[i].expected)
        << "case " << i;
  const DateTimeRecord start{2024, 1, 2, 3, 4, 5}, end{2024, 1, 2, 3, 4, 7};
  const DateTimeRecord bad{2024, 2, 30, 0, 0, 0};
  struct TimeCase {
    DateTimeRecord target;
    int32_t expected;
  } times[] = {
      {{2024, 1, 2, 3, 4, 5}, 1},   {{2024, 1, 2, 3, 4, 6}, 1}, {{2024, 1, 2, 3, 4, 7}, 1},
      {{2024, 1, 2, 3, 4, 4}, 0},   {{2024, 1, 2, 3, 4, 8}, 0}, {{2024, 1, 2, 3, 4, 60}, -1},
      {{2024, 1, 2, 24, 0, 0}, -1},
  };
  for (const TimeCase& c : times)
    EXPECT_EQ(KZ_CheckDateTime(&start, &end, &c.target), c.expected) << c.target.second;
  EXPECT_EQ(KZ_CheckDateTime(&bad, &end, &start), -1);
  EXPECT_EQ(KZ_CheckDateTime(&start, &bad, &start), -1);
}

TEST(RangeRecords, CurrentFormsReadTheLocalClock) {
  const DateRecord all_start{1602, 1, 1}, all_end{30827, 12, 31};
  const DateRecord past_end{1602, 1, 2}, bad{2024, 0, 1};
  EXPECT_EQ(KZ_CheckCurrentDate(&all_start, &all_end), 1);
  EXPECT_EQ(KZ_CheckCurrentDate(&all_start, &past_end), 0);
  EXPECT_EQ(KZ_CheckCurrentDate(&bad, &all_end), -1);
  const DateTimeRecord from{1602, 1, 1, 0, 0, 0}, to{30827, 12, 31, 23, 59, 59};
  const DateTimeRecord bad_time{2024, 1, 1, 0, 0, 60};
  EXPECT_EQ(KZ_CheckCurrentDateTime(&from, &to), 1);
  EXPECT_EQ(KZ_CheckCurrentDateTime(&to, &from), 0);
  EXPECT_EQ(KZ_CheckCurrentDateTime(&from, &bad_time), -1);
}

TYPED_TEST(RangeText, DateTextsGiveTheSameAnswerUnderBothCompares) {
  using Ch = TypeParam;
  const std::string longest = "2024-01-02-" + std::string(11, '0');  // 22 characters
  struct Case {
    std::string start, end, target;
    int32_t expected;
  } cases[] = {
      {"2024-01-01", "2024-01-31", "2024-01-01", 1},
      {"2024-01-01", "2024-01-31", "2024-01-31", 1},
      {"2024-01-01", "2024-01-31", "2024-02-01", 0},
      {"2024-01-31", "2024-01-01", "2024-01-15", 0},
      {"2024-1-1", "2024-1-31", "2024-1-15", 1},
      // A date that holds a time keeps it; the appended one is ignored.
      {"2024-01-02T13:00:00", "2024-01-31", "2024-01-02", 0},
      {"2024-01-02T11:59:59", "2024-01-31", "2024-01-02", 1},
      {"", "2024-01-31", "2024-01-15", -1},
      {"2024-01-01", "2024-13-01", "2024-01-15", -1},
      {"2024-01-01", "2024-01-31", "2024-02-30", -1},
      {"1600-01-01", "2024-01-31", "2024-01-15", -1},
      {longest, "2024-01-31", "2024-01-15", 1},
      {longest + "0", "2024-01-31", "2024-01-15", -1},  // beyond the scratch text
      {"2024-01-01", longest + "0", "2024-01-15", -1},
      {"2024-01-01", "2024-01-31", longest + "0", -1},
  };
  for (const Case& c : cases)
    for (int32_t inclusive : {1, 0, -7})
      EXPECT_EQ(Twin<Ch>::CheckStringDate(text<Ch>(c.start).c_str(), text<Ch>(c.end).c_str(),
                                          text<Ch>(c.target).c_str(), inclusive),
                c.expected)
          << c.start << " .. " << c.end << " @ " << c.target << " inclusive " << inclusive;
  if constexpr (sizeof(Ch) == 1) {
    // 23 bytes but 17 characters: the limit counts characters after conversion.
    const std::string start = "2024-01-01-\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA";
    EXPECT_EQ(KZ_CheckStringDateA(start.c_str(), "2024-01-31", "2024-01-15", 1), 1);
  }
}

TYPED_TEST(RangeText, DateTimeTextsAreStrictOrInclusiveByTheFlag) {
  using Ch = TypeParam;
  struct Case {
    const char *start, *end, *target;
    int32_t inclusive_result, strict_result;
  } cases[] = {
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02T03:04:05", 1, 0},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02T03:04:05.001", 1, 1},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02T03:04:07.500", 1, 0},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02T03:04:07.501", 0, 0},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02T03:04:04.999", 0, 0},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02", -1, -1},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "", -1, -1},
      {"2024-01-02T03:04:05", "2024-01-02T03:04:07.500", "2024-01-02 03:04:06", -1, -1},
      {"2024-02-30T00:00:00", "2024-01-02T03:04:05", "2024-01-02T03:04:05", -1, -1},
      {"2024-01-02T03:04:05", "2024-02-30T00:00:00", "2024-01-02T03:04:05", -1, -1},
  };
  for (const Case& c : cases) {
    const auto s = text<Ch>(c.start), e = text<Ch>(c.end), t = text<Ch>(c.target);
    EXPECT_EQ(Twin<Ch>::CheckStringDateTime(s.c_str(), e.c_str(), t.c_str(), 1), c.inclusive_result)
        << c.start << " .. " << c.end << " @ " << c.target;
    EXPECT_EQ(Twin<Ch>::CheckStringDateTime(s.c_str(), e.c_str(), t.c_str(), 0), c.strict_result)
        << c.start << " .. " << c.end << " @ " << c.target;
  }
}

TYPED_TEST(RangeText, CurrentFormsReadTheClockInUtc) {
  using Ch = TypeParam;
  const auto date = [](const char* s, const char* e, int32_t inclusive) {
    return Twin<Ch>::CheckStringCurrentDate(text<Ch>(s).c_str(), text<Ch>(e).c_str(), inclusive);
  };
  const auto date_time = [](const char* s, const char* e, int32_t inclusive) {
    return Twin<Ch>::CheckStringCurrentDateTime(text<Ch>(s).c_str(), text<Ch>(e).c_str(),
                                                inclusive);
  };
  EXPECT_EQ(date("1700-01-01", "30000-12-31", 1), 1);
  EXPECT_EQ(date("1700-01-01", "1700-01-02", 0), 0);
  EXPECT_EQ(date("2024-02-30", "30000-12-31", 1), -1);
  EXPECT_EQ(date_time("1700-01-01T00:00:00", "30000-12-31T00:00:00", 0), 1);
  EXPECT_EQ(date_time("30000-12-31T00:00:00", "1700-01-01T00:00:00", 1), 0);
  EXPECT_EQ(date_time("1700-01-01T00:00:00", "2024-02-30", 1), -1);
}

// The narrow forms widen each text into a heap block first; when a block
// cannot be had the answer is -1 and nothing leaks.
TEST(RangeText, NarrowFormsGiveMinusOneWhenAWideBlockFails) {
  const struct {
    long blocks;
    std::function<int32_t()> check;
  } forms[] = {
      {3, [] { return KZ_CheckStringDateA("2024-01-01", "2024-01-31", "2024-01-15", 1); }},
      {3,
       [] {
         return KZ_CheckStringDateTimeA("2024-01-01T00:00:00", "2024-01-31T00:00:00",
                                        "2024-01-15T00:00:00", 1);
       }},
      {2, [] { return KZ_CheckStringCurrentDateA("1700-01-01", "30000-12-31", 1); }},
      {2,
       [] {
         return KZ_CheckStringCurrentDateTimeA("1700-01-01T00:00:00", "30000-12-31T00:00:00", 1);
       }},
  };
  for (const auto& form : forms) {
    for (long nth = 1; nth <= form.blocks; ++nth) {
      kz::alloc_faults::arm(nth, false);
      EXPECT_EQ(form.check(), -1) << nth;
      kz::alloc_faults::disarm();
    }
    // Every later failure (inside the readers' splits) gives a whole answer too.
    for_each_allocation_failure([&] {
      const int32_t result = form.check();
      EXPECT_TRUE(result == 1 || result == -1) << result;
    });
  }
}

}  // namespace
