// Date range checks: 1 inside, 0 outside, -1 for a point that does not
// convert, from records and texts. Allocation failures are held by the
// allocation table, the edges of the day for the forms that read the clock
// by the pinned-clock tests.
#include <cstdio>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(RangeText);

// A date record from the text's leading "Y-M-D".
DateRecord record(const char* s) {
  DateRecord r{};
  std::sscanf(s, "%hu-%hu-%hu", &r.year, &r.month, &r.day);
  return r;
}

constexpr int32_t kTextOnly = 9;

// Date bounds are whole days, the same under both compares; a start after
// the end is outside, and a bad point beats outside. A date text that holds
// a time keeps it, and the appended one is ignored. The scratch text's limit
// is held by the guard-page table; the narrow twin counts it in characters
// after conversion (23 bytes but 17 characters).
TYPED_TEST(RangeText, DatesAreWholeDaysDateTimesStrictOrInclusiveByTheFlag) {
  using Ch = TypeParam;
  const std::tuple<const char*, const char*, const char*, int32_t, int32_t, Only> cases[] = {
      {"2024-01-01", "2024-01-31", "2024-01-01", 1, 1, kBoth},
      {"2024-01-01", "2024-01-31", "2024-01-31", 1, 1, kBoth},
      {"2024-01-01", "2024-01-31", "2024-02-01", 0, 0, kBoth},
      {"2024-01-01", "2024-01-31", "2023-12-31", 0, 0, kBoth},
      {"2024-01-31", "2024-01-01", "2024-01-15", 0, 0, kBoth},
      {"2024-01-31", "2024-01-01", "2023-02-29", -1, -1, kBoth},
      {"2024-01-02T13:00:00", "2024-01-31", "2024-01-02", 0, kTextOnly, kBoth},
      {"2024-01-02T11:59:59", "2024-01-31", "2024-01-02", 1, kTextOnly, kBoth},
      {"", "2024-01-31", "2024-01-15", -1, kTextOnly, kBoth},
      {"2024-13-01", "2024-01-31", "2024-01-15", -1, -1, kBoth},
      {"2024-01-01", "2024-02-30", "2024-01-15", -1, -1, kBoth},
      {"2024-01-01-\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA\x93\xFA", "2024-01-31", "2024-01-15", 1,
       kTextOnly, kNarrow}};
  for (const auto& [start, end, target, expected, from_records, only] : cases) {
    const DateRecord s = record(start), e = record(end), t = record(target);
    EXPECT_EQ(from_records == kTextOnly ? kTextOnly : KZ_CheckDate(&s, &e, &t), from_records);
    for (int32_t inclusive : {1, 0, -7})
      EXPECT_EQ(runs<Ch>(only)
                    ? Twin<Ch>::CheckStringDate(text<Ch>(start).c_str(), text<Ch>(end).c_str(),
                                                text<Ch>(target).c_str(), inclusive)
                    : expected,
                expected)
          << start << " .. " << end << " @ " << target << " inclusive " << inclusive;
  }
  // Date-time records are inclusive to the second, texts to the millisecond
  // and strict or inclusive by the flag. The forms that read the clock
  // refuse a bad end and compare with both bounds like the others (the
  // pinned-clock runs hold the edges of the day).
  const DateTimeRecord start{2024, 1, 2, 3, 4, 5}, end{2024, 1, 2, 3, 4, 7},
      bad{2024, 2, 30, 0, 0, 0};
  for (const auto& [second, expected] : {std::pair(5, 1), {7, 1}, {4, 0}, {8, 0}, {60, -1}}) {
    const DateTimeRecord target{2024, 1, 2, 3, 4, static_cast<uint16_t>(second)};
    EXPECT_EQ(KZ_CheckDateTime(&start, &end, &target), expected) << second;
  }
  const DateRecord first{1602, 1, 1}, second{1602, 1, 2};
  EXPECT_EQ(joined(KZ_CheckDateTime(&bad, &end, &start), KZ_CheckDateTime(&start, &bad, &start),
                   KZ_CheckCurrentDateTime(&start, &bad), KZ_CheckCurrentDate(&first, &second)),
            joined(-1, -1, -1, 0));
  const auto past = text<Ch>("1700-01-01T00:00:00"), future = text<Ch>("30000-12-31T00:00:00");
  EXPECT_EQ(joined(Twin<Ch>::CheckStringCurrentDate(past.c_str(), future.c_str(), 0),
                   Twin<Ch>::CheckStringCurrentDateTime(past.c_str(), future.c_str(), 0)),
            joined(1, 1));
  const char *from = "2024-01-02T03:04:05", *to = "2024-01-02T03:04:07.500",
             *wrong = "2024-02-30T00:00:00";
  const std::tuple<const char*, const char*, const char*, int32_t, int32_t> times[] = {
      {from, to, from, 1, 0},
      {from, to, "2024-01-02T03:04:05.001", 1, 1},
      {from, to, to, 1, 0},
      {from, to, "2024-01-02T03:04:07.501", 0, 0},
      {from, to, "2024-01-02T03:04:04.999", 0, 0},
      {from, to, "2024-01-02", -1, -1},
      {wrong, to, from, -1, -1},
      {from, wrong, from, -1, -1}};
  for (const auto& [s, e, target, inclusive_result, strict_result] : times)
    for (const int32_t inclusive : {1, 0})
      EXPECT_EQ(Twin<Ch>::CheckStringDateTime(text<Ch>(s).c_str(), text<Ch>(e).c_str(),
                                              text<Ch>(target).c_str(), inclusive),
                inclusive ? inclusive_result : strict_result)
          << s << " .. " << e << " @ " << target << " inclusive " << inclusive;
}

}  // namespace
