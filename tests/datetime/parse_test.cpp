// Date and time text read back into records and moments.
#include <string>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(TextToDate);

std::string show(uint16_t a, uint16_t b, uint16_t c) {
  return std::to_string(a) + "-" + std::to_string(b) + "-" + std::to_string(c);
}
std::string show(const DateTimeRecord& r) {
  return show(r.year, r.month, r.day) + " " + show(r.hour, r.minute, r.second);
}

// Dates read at the delimiter, times at colons: a missing field is 0, a
// surplus one ignored, each field the low 16 bits of a leading integer
// after white space and a sign, and quoted fields lose their quotes. Every
// case starts from a record of sevens, so a field left unwritten shows.
TYPED_TEST(TextToDate, ReadsDateAndTimeFieldsTolerantly) {
  using Ch = TypeParam;
  struct Case {
    const char* input;
    char delimiter;  // 0: read as a time
    int32_t result;
    const char* expected;
  } cases[] = {
      {"2024-01-02", '-', 1, "2024-1-2"},
      {"2024", '-', 1, "2024-0-0"},
      {"2024-13-45", '-', 1, "2024-13-45"},
      {"2024-01-02-99", '-', 1, "2024-1-2"},
      {" 2024- +1-x", '-', 1, "2024-1-0"},
      {"-1/70000/0", '/', 1, "65535-4464-0"},
      {"\"2024\"-\"01\"-\"02\"", '-', 1, "2024-1-2"},
      {"", '-', 0, "0-0-0"},
      {"12:34:56.789", 0, 1, "12-34-56"},
  };
  for (const Case& c : cases) {
    const auto input = text<Ch>(c.input);
    if (c.delimiter) {
      DateRecord date{7, 7, 7};
      EXPECT_EQ(Twin<Ch>::StringDate(input.c_str(), &date, Ch(c.delimiter)), c.result) << c.input;
      EXPECT_EQ(show(date.year, date.month, date.day), c.expected) << c.input;
    } else {
      TimeRecord time{7, 7, 7};
      EXPECT_EQ(Twin<Ch>::StringTime(input.c_str(), &time), c.result) << c.input;
      EXPECT_EQ(show(time.hour, time.minute, time.second), c.expected) << c.input;
    }
  }
}

TYPED_TEST(TextToDate, DateTimeHoldsAllSixValuesOrAllZeros) {
  using Ch = TypeParam;
  const std::string long_part(32, '1');  // one element beyond a part's scratch
  const std::string fits(31, '0');
  const char* zeros = "0-0-0 0-0-0";
  struct Case {
    std::string input;
    const char* expected;
  } cases[] = {
      {"2024-01-02T03:04:05", "2024-1-2 3-4-5"},
      {"2024-01-02T03", "2024-1-2 3-0-0"},
      {fits + "T" + fits, zeros},  // read, and all zero
      {"2024-01-02", nullptr},
      {"T03:04:05", nullptr},
      {"", nullptr},
      {long_part + "T03:04:05", nullptr},
      {"2024-01-02T" + long_part, nullptr},
  };
  for (const Case& c : cases) {
    DateTimeRecord record{7, 7, 7, 7, 7, 7};
    EXPECT_EQ(Twin<Ch>::StringDateTime(text<Ch>(c.input).c_str(), &record, Ch('-'), Ch('T')),
              c.expected ? 1 : 0)
        << c.input;
    EXPECT_EQ(show(record), c.expected ? c.expected : zeros) << c.input;
  }
}

// The zone step is the same for texts of one zone offset, so differences
// between moments are known here whatever the zone; the zone tests check
// the absolute values. A refused text leaves the moment as it was.
TYPED_TEST(TextToDate, FileTimeReadsMillisecondsAsAWholeNumber) {
  using Ch = TypeParam;
  constexpr int64_t kRefused = INT64_MIN;
  const auto read = [](const std::string& input) {
    FILETIME moment{0xDEADBEEF, 0xDEADBEEF};
    const int32_t result =
        Twin<Ch>::StringFileTime(text<Ch>(input).c_str(), &moment, Ch('-'), Ch('T'));
    if (result != 0) return ticks(moment);
    EXPECT_EQ(ticks(moment), ticks({0xDEADBEEF, 0xDEADBEEF})) << "refused " << input;
    return kRefused;
  };
  const int64_t base = read("2024-01-02T12:00:00");
  ASSERT_NE(base, kRefused);
  struct Case {
    const char* input;
    int64_t milliseconds_after_base;
  } cases[] = {
      {"2024-01-02T12:00:00.5", 5},
      {"2024-01-02T12:00:00.006", 6},
      {"2024-01-02T12:00:00.1.2", 0},
      {"2024-01-02T12", 0},
      {"2024-01-02T11:59:59.x", -1000},
      {"2024-01-03Tab:cd:ef", 12 * 3600 * 1000},  // no number: the time counts as 0
      {"2024-01-02", kRefused},
      {"2024-01-02T12:00:00.1000", kRefused},
      {"2024-02-30T12:00:00", kRefused},
      {"2024-01-02T24:00:00", kRefused},
  };
  for (const Case& c : cases) {
    const int64_t got = read(c.input), after = c.milliseconds_after_base;
    EXPECT_EQ(
        got == kRefused ? got : got - base,
        after == kRefused ? after : after * static_cast<int64_t>(kz::os::kTicksPerMillisecond))
        << c.input;
  }
}

// A failed allocation in a split counts as a split that gave 0. Whatever
// fails, the date-time record never holds half a reading, and the leak
// checker sees every list released.
TYPED_TEST(TextToDate, AllocationFailuresLeaveWholeResultsAndNoLeaks) {
  using Ch = TypeParam;
  const auto input = text<Ch>("2024-01-02T03:04:05.678");
  for_each_allocation_failure([&] {
    DateRecord date{7, 7, 7};
    const int32_t read = Twin<Ch>::StringDate(input.c_str(), &date, Ch('-'));
    EXPECT_EQ(show(date.year, date.month, date.day), read ? "2024-1-2" : "0-0-0");
    DateTimeRecord record{7, 7, 7, 7, 7, 7};
    const int32_t result = Twin<Ch>::StringDateTime(input.c_str(), &record, Ch('-'), Ch('T'));
    EXPECT_EQ(show(record), result ? "2024-1-2 3-4-5" : "0-0-0 0-0-0");
    FILETIME moment{1, 1};
    Twin<Ch>::StringFileTime(input.c_str(), &moment, Ch('-'), Ch('T'));
  });
}

}  // namespace
