// Date range checks: 1 inside, 0 outside, -1 for a point that does not
// convert, from records, texts and the clock.
#include <functional>
#include <string>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(RangeText);

// Date bounds are whole days; a start after the end is outside, and a bad
// point beats outside. Date-time bounds are inclusive to the second.
TEST(RangeRecords, DateBoundsAreWholeDaysAndDateTimeBoundsInclusiveToTheSecond) {
  const struct {
    DateRecord start, end, target;
    int32_t expected;
  } dates[] = {{{2024, 1, 1}, {2024, 1, 31}, {2024, 1, 1}, 1},
               {{2024, 1, 1}, {2024, 1, 31}, {2024, 1, 31}, 1},
               {{2024, 1, 1}, {2024, 1, 31}, {2024, 2, 1}, 0},
               {{2024, 1, 1}, {2024, 1, 31}, {2023, 12, 31}, 0},
               {{2024, 1, 31}, {2024, 1, 1}, {2024, 1, 15}, 0},
               {{2024, 13, 1}, {2024, 1, 31}, {2024, 1, 15}, -1},
               {{2024, 1, 1}, {2024, 2, 30}, {2024, 1, 15}, -1},
               {{2024, 1, 31}, {2024, 1, 1}, {2023, 2, 29}, -1}};
  for (const auto& c : dates)
    EXPECT_EQ(KZ_CheckDate(&c.start, &c.end, &c.target), c.expected)
        << joined(c.target.year, c.target.month, c.target.day);
  const DateTimeRecord start{2024, 1, 2, 3, 4, 5}, end{2024, 1, 2, 3, 4, 7},
      bad{2024, 2, 30, 0, 0, 0};
  for (const auto& [second, expected] : {std::pair(5, 1), {7, 1}, {4, 0}, {8, 0}, {60, -1}}) {
    const DateTimeRecord target{2024, 1, 2, 3, 4, static_cast<uint16_t>(second)};
    EXPECT_EQ(KZ_CheckDateTime(&start, &end, &target), expected) << second;
  }
  EXPECT_EQ(KZ_CheckDateTime(&bad, &end, &start), -1);
  EXPECT_EQ(KZ_CheckDateTime(&start, &bad, &start), -1);
  const DateRecord all_start{1602, 1, 1}, all_end{30827, 12, 31}, past_end{1602, 1, 2};
  EXPECT_EQ(KZ_CheckCurrentDate(&all_start, &all_end), 1);
  EXPECT_EQ(KZ_CheckCurrentDate(&all_start, &past_end), 0);
  const DateTimeRecord from{1602, 1, 1, 0, 0, 0}, to{30827, 12, 31, 23, 59, 59},
      bad_time{2024, 1, 1, 0, 0, 60};
  EXPECT_EQ(KZ_CheckCurrentDateTime(&from, &to), 1);
  EXPECT_EQ(KZ_CheckCurrentDateTime(&to, &from), 0);
  EXPECT_EQ(KZ_CheckCurrentDateTime(&from, &bad_time), -1);
}

// Both compares give the same answer for date texts. A date that holds a
// time keeps it, and the appended one is ignored; a date of 22 characters
// is the longest that the scratch text takes, and the narrow twin counts
// characters after conversion (23 bytes but 17 characters).
TYPED_TEST(RangeText, DateTextsGiveTheSameAnswerUnderBothCompares) {
  using Ch = TypeParam;
  const std::string longest = "2024-01-02-" + std::string(11, '0');
  const struct {
    std::string start, end, target;
    int32_t expected;
    Only only = kBoth;
  } cases[] = {{"2024-01-01", "2024-01-31", "2024-01-01", 1},
               {"2024-01-01", "2024-01-31", "2024-01-31", 1},
               {"2024-01-01", "2024-01-31", "2024-02-01", 0},
               {"2024-01-31", "2024-01-01", "2024-01-15", 0},
               {"2024-01-02T13:00:00", "2024-01-31", "2024-01-02", 0},
               {"2024-01-02T11:59:59", "2024-01-31", "2024-01-02", 1},
               {"", "2024-01-31", "2024-01-15", -1},
               {"2024-01-01", "2024-13-01", "2024-01-15", -1},
               {"2024-01-01", "2024-01-31", "2024-02-30", -1},
               {longest, "2024-01-31", "2024-01-15", 1},
               {longest + "0", "2024-01-31", "2024-01-15", -1},
               {"2024-01-01", longest + "0", "2024-01-15", -1},
               {"2024-01-01", "2024-01-31", longest + "0", -1},
               {"2024-01-01-\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA", "2024-01-31",
                "2024-01-15", 1, kNarrow}};
  for (const auto& c : cases)
    for (int32_t inclusive : {1, 0, -7})
      if (runs<Ch>(c.only)) {
        EXPECT_EQ(Twin<Ch>::CheckStringDate(text<Ch>(c.start).c_str(), text<Ch>(c.end).c_str(),
                                            text<Ch>(c.target).c_str(), inclusive),
                  c.expected)
            << c.start << " .. " << c.end << " @ " << c.target << " inclusive " << inclusive;
      }
}

TYPED_TEST(RangeText, DateTimeTextsAreStrictOrInclusiveByTheFlag) {
  using Ch = TypeParam;
  const auto start = text<Ch>("2024-01-02T03:04:05"), end = text<Ch>("2024-01-02T03:04:07.500");
  const auto bad = text<Ch>("2024-02-30T00:00:00");
  const struct {
    std::basic_string<Ch> start, end, target;
    int32_t inclusive_result, strict_result;
  } cases[] = {{start, end, start, 1, 0},
               {start, end, text<Ch>("2024-01-02T03:04:05.001"), 1, 1},
               {start, end, end, 1, 0},
               {start, end, text<Ch>("2024-01-02T03:04:07.501"), 0, 0},
               {start, end, text<Ch>("2024-01-02T03:04:04.999"), 0, 0},
               {start, end, text<Ch>("2024-01-02"), -1, -1},
               {bad, end, start, -1, -1},
               {start, bad, start, -1, -1}};
  for (const auto& c : cases)
    for (const int32_t inclusive : {1, 0})
      EXPECT_EQ(Twin<Ch>::CheckStringDateTime(c.start.c_str(), c.end.c_str(), c.target.c_str(),
                                              inclusive),
                inclusive ? c.inclusive_result : c.strict_result)
          << &c - cases << " inclusive " << inclusive;
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
// cannot be had the answer is -1 and nothing leaks, and every later failure
// (inside the readers' splits) gives a whole answer too.
TEST(RangeText, NarrowFormsGiveMinusOneWhenAWideBlockFails) {
  static constexpr const char *kFrom = "1700-01-01T00:00:00", *kTo = "30000-12-31T00:00:00";
  const std::pair<long, std::function<int32_t()>> forms[] = {
      {3, [] { return KZ_CheckStringDateA("2024-01-01", "2024-01-31", "2024-01-15", 1); }},
      {3, [] { return KZ_CheckStringDateTimeA(kFrom, kTo, kTo, 1); }},
      {2, [] { return KZ_CheckStringCurrentDateA("1700-01-01", "30000-12-31", 1); }},
      {2, [] { return KZ_CheckStringCurrentDateTimeA(kFrom, kTo, 1); }}};
  for (const auto& [blocks, check] : forms) {
    for (long nth = 1; nth <= blocks; ++nth) {
      kz::alloc_faults::arm(nth, false);
      EXPECT_EQ(check(), -1) << nth;
      kz::alloc_faults::disarm();
    }
    expect_whole_or("-1", [&] { return std::to_string(check()); });
  }
}

}  // namespace
