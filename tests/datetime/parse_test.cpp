// Date and time text read back into records and moments.
#include <string>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(TextToDate);

std::string show(const DateTimeRecord& r) {
  return joined(r.year, r.month, r.day, r.hour, r.minute, r.second);
}

// Dates read at the delimiter, times at colons: a missing field is 0, a
// surplus one ignored, each field the low 16 bits of a leading integer
// after white space and a sign, and quoted fields lose their quotes. Every
// case starts from a record of sevens, so a field left unwritten shows.
TYPED_TEST(TextToDate, ReadsDateAndTimeFieldsTolerantly) {
  using Ch = TypeParam;
  const struct {
    const char* input;
    char delimiter;  // 0: read as a time
    int32_t result;
    std::string expected;
  } cases[] = {{"2024", '-', 1, joined(2024, 0, 0)},
               {"2024-13-45-99", '-', 1, joined(2024, 13, 45)},
               {" 2024- +1-x", '-', 1, joined(2024, 1, 0)},
               {"-1/70000/0", '/', 1, joined(65535, 4464, 0)},
               {"\"2024\"-\"01\"-\"02\"", '-', 1, joined(2024, 1, 2)},
               {"", '-', 0, joined(0, 0, 0)},
               {"12:34:56.789", 0, 1, joined(12, 34, 56)}};
  for (const auto& c : cases) {
    const auto input = text<Ch>(c.input);
    DateRecord date{7, 7, 7};
    TimeRecord time{7, 7, 7};
    EXPECT_EQ(c.delimiter ? Twin<Ch>::StringDate(input.c_str(), &date, Ch(c.delimiter))
                          : Twin<Ch>::StringTime(input.c_str(), &time),
              c.result)
        << c.input;
    EXPECT_EQ(c.delimiter ? joined(date.year, date.month, date.day)
                          : joined(time.hour, time.minute, time.second),
              c.expected)
        << c.input;
  }
}

// A part of 31 elements is read, one of 32 overflows its scratch.
TYPED_TEST(TextToDate, DateTimeHoldsAllSixValuesOrAllZeros) {
  using Ch = TypeParam;
  const std::string long_part(32, '1'), fits(31, '0'), zeros = joined(0, 0, 0, 0, 0, 0);
  const struct {
    std::string input, expected;  // expected empty: refused
  } cases[] = {{"2024-01-02T03", joined(2024, 1, 2, 3, 0, 0)},
               {fits + "T" + fits, zeros},
               {"2024-01-02", ""},
               {"T03:04:05", ""},
               {long_part + "T03:04:05", ""},
               {"2024-01-02T" + long_part, ""}};
  for (const auto& c : cases) {
    DateTimeRecord record{7, 7, 7, 7, 7, 7};
    EXPECT_EQ(Twin<Ch>::StringDateTime(text<Ch>(c.input).c_str(), &record, Ch('-'), Ch('T')),
              c.expected.empty() ? 0 : 1)
        << c.input;
    EXPECT_EQ(show(record), c.expected.empty() ? zeros : c.expected) << c.input;
  }
}

// The zone step is the same for texts of one zone offset, so differences
// between moments are known here whatever the zone; the zone tests check
// the absolute values. A refused text leaves the moment as it was.
TYPED_TEST(TextToDate, FileTimeReadsMillisecondsAsAWholeNumber) {
  using Ch = TypeParam;
  static constexpr int64_t kRefused = INT64_MIN, kUntouched = 0x5A5A5A5A'A5A5A5A5;
  const auto read = [](const std::string& input) {
    FILETIME out = moment(kUntouched);
    if (Twin<Ch>::StringFileTime(text<Ch>(input).c_str(), &out, Ch('-'), Ch('T')) != 0)
      return ticks(out);
    EXPECT_EQ(ticks(out), kUntouched) << "refused " << input;
    return kRefused;
  };
  const int64_t base = read("2024-01-02T12:00:00");
  const auto ms = static_cast<int64_t>(kz::os::kTicksPerMillisecond);
  const std::pair<const char*, int64_t> cases[] = {
      {"2024-01-02T12:00:00.5", base + 5 * ms},
      {"2024-01-02T12:00:00.1.2", base},
      {"2024-01-02T12", base},
      {"2024-01-02T11:59:59.x", base - 1000 * ms},
      {"2024-01-03Tab:cd:ef", base + 12 * 3600 * 1000 * ms},  // no number: the time counts as 0
      {"2024-01-02", kRefused},
      {"2024-01-02T12:00:00.1000", kRefused},
      {"2024-02-30T12:00:00", kRefused},
      {"2024-01-02T24:00:00", kRefused}};
  ASSERT_NE(base, kRefused);
  for (const auto& [input, expected] : cases) EXPECT_EQ(read(input), expected) << input;
}

// A failed allocation in a split counts as a split that gave 0. Whatever
// fails, the date-time record never holds half a reading, and the leak
// checker sees every list released.
TYPED_TEST(TextToDate, AllocationFailuresLeaveWholeResultsAndNoLeaks) {
  using Ch = TypeParam;
  const auto input = text<Ch>("2024-01-02T03:04:05.678");
  expect_whole_or(joined(0, 0, 0, 0), [&] {
    DateRecord d{7, 7, 7};
    const int32_t read = Twin<Ch>::StringDate(input.c_str(), &d, Ch('-'));
    return joined(read, d.year, d.month, d.day);
  });
  expect_whole_or(joined(0) + show({}), [&] {
    DateTimeRecord r{7, 7, 7, 7, 7, 7};
    const int32_t read = Twin<Ch>::StringDateTime(input.c_str(), &r, Ch('-'), Ch('T'));
    return joined(read) + show(r);
  });
  for_each_allocation_failure([&] {  // a split that fails reads as 0: only no leak
    FILETIME moment{1, 1};
    Twin<Ch>::StringFileTime(input.c_str(), &moment, Ch('-'), Ch('T'));
  });
}

}  // namespace
