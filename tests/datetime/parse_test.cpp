// Date and time text read back into records and moments.
#include <cstring>
#include <string>

#include "support.h"

namespace {

using kz::test::text;

template <class Ch>
struct Readers;

template <>
struct Readers<char> {
  static int32_t date(const char* t, DateRecord* r, char d) { return KZ_StringDateA(t, r, d); }
  static int32_t time(const char* t, TimeRecord* r) { return KZ_StringTimeA(t, r); }
  static int32_t date_time(const char* t, DateTimeRecord* r, char d, char s) {
    return KZ_StringDateTimeA(t, r, d, s);
  }
  static int32_t file_time(const char* t, FILETIME* f, char d, char s) {
    return KZ_StringFileTimeA(t, f, d, s);
  }
};

template <>
struct Readers<kz::test::wchar> {
  using Ch = kz::test::wchar;
  static int32_t date(const Ch* t, DateRecord* r, Ch d) { return KZ_StringDateW(t, r, d); }
  static int32_t time(const Ch* t, TimeRecord* r) { return KZ_StringTimeW(t, r); }
  static int32_t date_time(const Ch* t, DateTimeRecord* r, Ch d, Ch s) {
    return KZ_StringDateTimeW(t, r, d, s);
  }
  static int32_t file_time(const Ch* t, FILETIME* f, Ch d, Ch s) {
    return KZ_StringFileTimeW(t, f, d, s);
  }
};

template <class Ch>
class TextToDate : public ::testing::Test {};
TYPED_TEST_SUITE(TextToDate, kz::test::ElementTypes);

std::string show(const DateTimeRecord& r) {
  return std::to_string(r.year) + "-" + std::to_string(r.month) + "-" + std::to_string(r.day) +
         " " + std::to_string(r.hour) + ":" + std::to_string(r.minute) + ":" +
         std::to_string(r.second);
}

TYPED_TEST(TextToDate, ReadsDateFieldsTolerantly) {
  using Ch = TypeParam;
  struct Case {
    const char* input;
    char delimiter;
    int32_t result;
    DateRecord expected;
  };
  const Case cases[] = {
      {"2024-01-02", '-', 1, {2024, 1, 2}},
      {"2024-1-2", '-', 1, {2024, 1, 2}},
      {"2024", '-', 1, {2024, 0, 0}},
      {"2024/01/02", '-', 1, {2024, 0, 0}},  // the field stops at the slash
      {"2024/01/02", '/', 1, {2024, 1, 2}},
      {"2024-13-45", '-', 1, {2024, 13, 45}},
      {"2024-01-02-99", '-', 1, {2024, 1, 2}},
      {"-01-02", '-', 1, {0, 1, 2}},
      {"-", '-', 1, {0, 0, 0}},
      {" 2024- +1-x", '-', 1, {2024, 1, 0}},
      {"-1/70000/0", '/', 1, {65535, 4464, 0}},          // the low 16 bits of the value
      {"\"2024\"-\"01\"-\"02\"", '-', 1, {2024, 1, 2}},  // quoted fields lose their quotes
      {"", '-', 0, {0, 0, 0}},
  };
  for (const Case& c : cases) {
    DateRecord date{7, 7, 7};
    EXPECT_EQ(Readers<Ch>::date(text<Ch>(c.input).c_str(), &date, static_cast<Ch>(c.delimiter)),
              c.result)
        << c.input;
    EXPECT_EQ(date.year, c.expected.year) << c.input;
    EXPECT_EQ(date.month, c.expected.month) << c.input;
    EXPECT_EQ(date.day, c.expected.day) << c.input;
  }
}

TYPED_TEST(TextToDate, ReadsTimeFieldsAtColons) {
  using Ch = TypeParam;
  struct Case {
    const char* input;
    int32_t result;
    TimeRecord expected;
  };
  const Case cases[] = {
      {"12:34:56", 1, {12, 34, 56}},
      {"12:34:56.789", 1, {12, 34, 56}},
      {"1:2", 1, {1, 2, 0}},
      {"99:99:99:1", 1, {99, 99, 99}},
      {"", 0, {0, 0, 0}},
  };
  for (const Case& c : cases) {
    TimeRecord time{7, 7, 7};
    EXPECT_EQ(Readers<Ch>::time(text<Ch>(c.input).c_str(), &time), c.result) << c.input;
    EXPECT_EQ(time.hour, c.expected.hour) << c.input;
    EXPECT_EQ(time.minute, c.expected.minute) << c.input;
    EXPECT_EQ(time.second, c.expected.second) << c.input;
  }
}

TYPED_TEST(TextToDate, DateTimeHoldsAllSixValuesOrAllZeros) {
  using Ch = TypeParam;
  const std::string long_part(32, '1');  // one element beyond a part's scratch
  const std::string fits(31, '0');
  struct Case {
    std::string input;
    int32_t result;
    const char* expected;
  };
  const Case cases[] = {
      {"2024-01-02T03:04:05", 1, "2024-1-2 3:4:5"},
      {"2024-13-45T99:99:99", 1, "2024-13-45 99:99:99"},
      {"2024-01-02T03:04:05T06", 1, "2024-1-2 3:4:5"},
      {"2024-01-02T03", 1, "2024-1-2 3:0:0"},
      {"2024-01-02", 0, "0-0-0 0:0:0"},
      {"2024-01-02T", 0, "0-0-0 0:0:0"},
      {"T03:04:05", 0, "0-0-0 0:0:0"},
      {"", 0, "0-0-0 0:0:0"},
      {fits + "T" + fits, 1, "0-0-0 0:0:0"},
      {long_part + "T03:04:05", 0, "0-0-0 0:0:0"},
      {"2024-01-02T" + long_part, 0, "0-0-0 0:0:0"},
  };
  for (const Case& c : cases) {
    DateTimeRecord record{7, 7, 7, 7, 7, 7};
    EXPECT_EQ(Readers<Ch>::date_time(text<Ch>(c.input).c_str(), &record, '-', 'T'), c.result)
        << c.input;
    EXPECT_EQ(show(record), c.expected) << c.input;
  }
}

std::int64_t ticks(const FILETIME& t) {
  return static_cast<std::int64_t>((static_cast<std::uint64_t>(t.dwHighDateTime) << 32) |
                                   t.dwLowDateTime);
}

// The zone step is the same for texts of one zone offset, so differences
// between moments are known here whatever the zone; the zone tests check
// the absolute values.
TYPED_TEST(TextToDate, FileTimeReadsMillisecondsAsAWholeNumber) {
  using Ch = TypeParam;
  const auto read = [](const std::string& input) {
    FILETIME moment{0xDEADBEEF, 0xDEADBEEF};
    EXPECT_NE(Readers<Ch>::file_time(text<Ch>(input).c_str(), &moment, '-', 'T'), 0) << input;
    return ticks(moment);
  };
  const std::int64_t base = read("2024-01-02T12:00:00");
  struct Case {
    const char* input;
    std::int64_t milliseconds_after_base;
  };
  const Case cases[] = {
      {"2024-01-02T12:00:00.0", 0},
      {"2024-01-02T12:00:00.5", 5},
      {"2024-01-02T12:00:00.500", 500},
      {"2024-01-02T12:00:00.006", 6},
      {"2024-01-02T12:00:00.1.2", 0},
      {"2024-01-02T12:00:00.999", 999},
      {"2024-01-02T12:00:01", 1000},
      {"2024-01-02T12:00:00T99", 0},
      {"2024-01-02T12", 0},
      {"2024-01-02T11:59:59.x", -1000},
      {"2024-01-03Tab:cd:ef", 12 * 3600 * 1000},  // no number: the time counts as 0
  };
  for (const Case& c : cases)
    EXPECT_EQ(read(c.input) - base, c.milliseconds_after_base * 10'000) << c.input;
}

TYPED_TEST(TextToDate, FileTimeRefusesAndLeavesTheMoment) {
  using Ch = TypeParam;
  const char* refused[] = {"",
                           "2024-01-02",
                           "2024-01-02T",
                           "T12:00:00",
                           "2024-01-02T12:00:00.1000",
                           "2024-13-02T12:00:00",
                           "2024-02-30T12:00:00",
                           "2023-02-29T12:00:00",
                           "1600-12-31T12:00:00",
                           "2024-01-02T24:00:00",
                           "2024-01-02T12:60:00",
                           "2024-01-02 12:00:00"};
  for (const char* input : refused) {
    FILETIME moment{0xDEADBEEF, 0xDEADBEEF};
    EXPECT_EQ(Readers<Ch>::file_time(text<Ch>(input).c_str(), &moment, '-', 'T'), 0) << input;
    EXPECT_EQ(moment.dwLowDateTime, 0xDEADBEEF) << input;
    EXPECT_EQ(moment.dwHighDateTime, 0xDEADBEEF) << input;
  }
}

// A failed allocation in a split counts as a split that gave 0. Whatever
// fails, the date-time record never holds half a reading, and the leak
// checker sees every list released.
TYPED_TEST(TextToDate, AllocationFailuresLeaveWholeResultsAndNoLeaks) {
  using Ch = TypeParam;
  const auto input = text<Ch>("2024-01-02T03:04:05.678");
  kz::test::for_each_allocation_failure([&] {
    DateRecord date{7, 7, 7};
    const int32_t date_result = Readers<Ch>::date(input.c_str(), &date, '-');
    if (date_result == 0) {
      EXPECT_EQ(date.year + date.month + date.day, 0);
    }
    DateTimeRecord record{7, 7, 7, 7, 7, 7};
    const int32_t result = Readers<Ch>::date_time(input.c_str(), &record, '-', 'T');
    EXPECT_EQ(show(record), result ? "2024-1-2 3:4:5" : "0-0-0 0:0:0");
    FILETIME moment{1, 1};
    Readers<Ch>::file_time(input.c_str(), &moment, '-', 'T');
  });
}

}  // namespace
