// Date range checks: 1 inside, 0 outside, -1 for a point that does not
// convert, from records, texts and the clock. Allocation failures are held
// by the allocation table.

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(RangeText);

// Date bounds are whole days; a start after the end is outside, and a bad
// point beats outside. Date-time bounds are inclusive to the second.
TEST(RangeRecords, DateBoundsAreWholeDaysAndDateTimeBoundsInclusiveToTheSecond) {
  const std::tuple<DateRecord, DateRecord, DateRecord, int32_t> dates[] = {
      {{2024, 1, 1}, {2024, 1, 31}, {2024, 1, 1}, 1},
      {{2024, 1, 1}, {2024, 1, 31}, {2024, 1, 31}, 1},
      {{2024, 1, 1}, {2024, 1, 31}, {2024, 2, 1}, 0},
      {{2024, 1, 1}, {2024, 1, 31}, {2023, 12, 31}, 0},
      {{2024, 1, 31}, {2024, 1, 1}, {2024, 1, 15}, 0},
      {{2024, 13, 1}, {2024, 1, 31}, {2024, 1, 15}, -1},
      {{2024, 1, 1}, {2024, 2, 30}, {2024, 1, 15}, -1},
      {{2024, 1, 31}, {2024, 1, 1}, {2023, 2, 29}, -1}};
  for (const auto& [start, end, target, expected] : dates)
    EXPECT_EQ(KZ_CheckDate(&start, &end, &target), expected)
        << joined(target.year, target.month, target.day);
  const DateTimeRecord start{2024, 1, 2, 3, 4, 5}, end{2024, 1, 2, 3, 4, 7},
      bad{2024, 2, 30, 0, 0, 0};
  for (const auto& [second, expected] : {std::pair(5, 1), {7, 1}, {4, 0}, {8, 0}, {60, -1}}) {
    const DateTimeRecord target{2024, 1, 2, 3, 4, static_cast<uint16_t>(second)};
    EXPECT_EQ(KZ_CheckDateTime(&start, &end, &target), expected) << second;
  }
  EXPECT_EQ(joined(KZ_CheckDateTime(&bad, &end, &start), KZ_CheckDateTime(&start, &bad, &start)),
            joined(-1, -1));
  const DateRecord first{1602, 1, 1}, last{30827, 12, 31}, second{1602, 1, 2};
  const DateTimeRecord from{1602, 1, 1, 0, 0, 0}, to{30827, 12, 31, 23, 59, 59},
      bad_time{2024, 1, 1, 0, 0, 60};
  EXPECT_EQ(joined(KZ_CheckCurrentDate(&first, &last), KZ_CheckCurrentDate(&first, &second),
                   KZ_CheckCurrentDateTime(&from, &to), KZ_CheckCurrentDateTime(&to, &from),
                   KZ_CheckCurrentDateTime(&from, &bad_time)),
            joined(1, 0, 1, 0, -1));
}

// Both compares give the same answer for date texts. A date that holds a
// time keeps it, and the appended one is ignored. The scratch text's limit
// is held by the guard-page table; the narrow twin counts it in characters
// after conversion (23 bytes but 17 characters).
TYPED_TEST(RangeText, DateTextsGiveTheSameAnswerUnderBothCompares) {
  using Ch = TypeParam;
  const std::tuple<const char*, const char*, const char*, int32_t, Only> cases[] = {
      {"2024-01-01", "2024-01-31", "2024-01-01", 1, kBoth},
      {"2024-01-01", "2024-01-31", "2024-01-31", 1, kBoth},
      {"2024-01-01", "2024-01-31", "2024-02-01", 0, kBoth},
      {"2024-01-31", "2024-01-01", "2024-01-15", 0, kBoth},
      {"2024-01-02T13:00:00", "2024-01-31", "2024-01-02", 0, kBoth},
      {"2024-01-02T11:59:59", "2024-01-31", "2024-01-02", 1, kBoth},
      {"", "2024-01-31", "2024-01-15", -1, kBoth},
      {"2024-01-01", "2024-13-01", "2024-01-15", -1, kBoth},
      {"2024-01-01", "2024-01-31", "2024-02-30", -1, kBoth},
      {"2024-01-01-\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA", "2024-01-31", "2024-01-15", 1,
       kNarrow}};
  for (const auto& [start, end, target, expected, only] : cases)
    for (int32_t inclusive : {1, 0, -7})
      EXPECT_EQ(runs<Ch>(only)
                    ? Twin<Ch>::CheckStringDate(text<Ch>(start).c_str(), text<Ch>(end).c_str(),
                                                text<Ch>(target).c_str(), inclusive)
                    : expected,
                expected)
          << start << " .. " << end << " @ " << target << " inclusive " << inclusive;
}

TYPED_TEST(RangeText, DateTimeTextsAreStrictOrInclusiveByTheFlag) {
  using Ch = TypeParam;
  const char *start = "2024-01-02T03:04:05", *end = "2024-01-02T03:04:07.500",
             *bad = "2024-02-30T00:00:00";
  const std::tuple<const char*, const char*, const char*, int32_t, int32_t> cases[] = {
      {start, end, start, 1, 0},
      {start, end, "2024-01-02T03:04:05.001", 1, 1},
      {start, end, end, 1, 0},
      {start, end, "2024-01-02T03:04:07.501", 0, 0},
      {start, end, "2024-01-02T03:04:04.999", 0, 0},
      {start, end, "2024-01-02", -1, -1},
      {bad, end, start, -1, -1},
      {start, bad, start, -1, -1}};
  for (const auto& [from, to, target, inclusive_result, strict_result] : cases)
    for (const int32_t inclusive : {1, 0})
      EXPECT_EQ(Twin<Ch>::CheckStringDateTime(text<Ch>(from).c_str(), text<Ch>(to).c_str(),
                                              text<Ch>(target).c_str(), inclusive),
                inclusive ? inclusive_result : strict_result)
          << from << " .. " << to << " @ " << target << " inclusive " << inclusive;
}

// The clock lies between 1700 and 30000, in UTC or not (the pinned-clock
// tests hold the day's edges).
TYPED_TEST(RangeText, CurrentFormsReadTheClock) {
  using Ch = TypeParam;
  const auto check = [](const char* s, const char* e, int32_t inclusive) {
    const auto start = text<Ch>(s), end = text<Ch>(e);
    return s[10] == 0 ? Twin<Ch>::CheckStringCurrentDate(start.c_str(), end.c_str(), inclusive)
                      : Twin<Ch>::CheckStringCurrentDateTime(start.c_str(), end.c_str(), inclusive);
  };
  EXPECT_EQ(joined(check("1700-01-01", "30000-12-31", 1), check("1700-01-01", "1700-01-02", 0),
                   check("2024-02-30", "30000-12-31", 1),
                   check("1700-01-01T00:00:00", "30000-12-31T00:00:00", 0),
                   check("30000-12-31T00:00:00", "1700-01-01T00:00:00", 1),
                   check("1700-01-01T00:00:00", "2024-02-30", 1)),
            joined(1, 0, -1, 1, 0, -1));
}

}  // namespace
