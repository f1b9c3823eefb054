// Dates and times written as text, from records, the clock and FILETIMEs.
#include <string>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class DateTimeText : public ::testing::Test {};
TYPED_TEST_SUITE(DateTimeText, ElementTypes);

// Runs a writer into a sentinel buffer, and checks the text, the count and
// the element behind the terminator.
template <class Ch, class Write>
void expect_written(Write write, const std::string& expected) {
  auto out = sentinel_buffer<Ch>(expected.size() + 2);
  EXPECT_EQ(write(out.data()), static_cast<int32_t>(expected.size())) << expected;
  EXPECT_EQ(str(out), text<Ch>(expected));
  EXPECT_TRUE(untouched_from(out, expected.size() + 1)) << expected;
}

TYPED_TEST(DateTimeText, WritesDatesAndTimesWithLeadingZerosAndNeverCuts) {
  using Ch = TypeParam;
  struct DateCase {
    DateRecord date;
    char delimiter;
    const char* expected;
  } dates[] = {
      {{2024, 1, 2}, '-', "2024-01-02"},    {{2024, 1, 2}, '.', "2024.01.02"},
      {{800, 12, 31}, '/', "0800/12/31"},   {{12345, 1, 2}, '-', "12345-01-02"},
      {{2024, 123, 0}, '-', "2024-123-00"}, {{65535, 65535, 65535}, '-', "65535-65535-65535"},
  };
  for (const auto& c : dates)
    expect_written<Ch>([&](Ch* out) { return Twin<Ch>::DateString(&c.date, out, Ch(c.delimiter)); },
                       c.expected);
  struct TimeCase {
    TimeRecord time;
    const char* expected;
  } times[] = {
      {{9, 5, 7}, "09:05:07"},
      {{23, 59, 59}, "23:59:59"},
      {{65535, 0, 100}, "65535:00:100"},
  };
  for (const auto& c : times)
    expect_written<Ch>([&](Ch* out) { return Twin<Ch>::TimeString(&c.time, out); }, c.expected);
}

TYPED_TEST(DateTimeText, WritesDateTimesWithMillisecondsOnlyUnderTheFlag) {
  using Ch = TypeParam;
  struct Case {
    SYSTEMTIME time;
    uint16_t day_of_week;  // ignored
    int32_t flag;
    char delimiter, separator;
    const char* expected;
  } cases[] = {
      {system_time(2024, 1, 2, 3, 4, 5, 6), 0, 1, '-', 'T', "2024-01-02T03:04:05.006"},
      {system_time(2024, 1, 2, 3, 4, 5, 6), 65535, 1, '-', 'T', "2024-01-02T03:04:05.006"},
      {system_time(2024, 1, 2, 3, 4, 5, 7), 6, -1, '/', ' ', "2024/01/02 03:04:05.007"},
      {system_time(2024, 1, 2, 3, 4, 5, 7), 2, 0, '-', 'T', "2024-01-02T03:04:05"},
      {system_time(2024, 1, 2, 3, 4, 5, 65535), 0, 0, '-', 'T', "2024-01-02T03:04:05"},
      {system_time(65535, 65535, 65535, 65535, 65535, 65535, 65535), 0, 1, '-', 'T',
       "65535-65535-65535T65535:65535:65535.65535"},
  };
  for (auto c : cases) {
    c.time.wDayOfWeek = c.day_of_week;
    expect_written<Ch>(
        [&](Ch* out) {
          return Twin<Ch>::SystemTimeString(&c.time, out, c.flag, Ch(c.delimiter), Ch(c.separator));
        },
        c.expected);
  }
}

TEST(DateTimeText, DelimitersOutsideAsciiComeThroughUnchanged) {
  const SYSTEMTIME t = system_time(2024, 1, 2, 3, 4, 5, 6);
  wchar wide[32];
  EXPECT_EQ(KZ_SystemTimeStringW(&t, wide, 0, 0x5E74, 0x3000), 19);
  EXPECT_EQ(wstring(wide), utf16("2024年01年02\u300003:04:05"));
  char narrow[32];
  EXPECT_EQ(KZ_SystemTimeStringA(&t, narrow, 0, '\xA5', '\xFF'), 19);
  EXPECT_EQ(std::string(narrow),
            "2024\xA5"
            "01\xA5"
            "02\xFF"
            "03:04:05");
}

TYPED_TEST(DateTimeText, FileTimeWithTheTopBitSetWritesNothing) {
  using Ch = TypeParam;
  for (uint32_t high : {0x80000000u, 0xFFFFFFFFu}) {
    const FILETIME moment{0, high};
    auto out = sentinel_buffer<Ch>(42);
    EXPECT_EQ(Twin<Ch>::FileTimeString(&moment, out.data(), 1, Ch('-'), Ch('T')), 0);
    EXPECT_TRUE(untouched_from(out, 0));
  }
}

}  // namespace
