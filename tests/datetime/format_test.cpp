// Dates and times written as text, from records and FILETIMEs.
#include <string>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(DateTimeText);

// Runs a writer into a sentinel buffer, and checks the text, the count and
// the element behind the terminator.
template <class Ch, class Write>
void expect_written(Write write, const std::string& expected) {
  auto out = sentinel_buffer<Ch>(expected.size() + 2);
  EXPECT_EQ(write(out.data()), static_cast<int32_t>(expected.size())) << expected;
  EXPECT_TRUE(holds(out, text<Ch>(expected), 0, expected.size() + 1)) << expected;
}

// Fields have leading zeros up to a minimum width and are never cut; the
// day of week is never read, the milliseconds only under a flag other than
// 0; any delimiter comes through unchanged.
TYPED_TEST(DateTimeText, WritesFieldsWithLeadingZerosAndNeverCuts) {
  using Ch = TypeParam;
  const DateRecord date{800, 1, 2}, wide_date{65535, 65535, 65535};
  expect_written<Ch>([&](Ch* out) { return Twin<Ch>::DateString(&date, out, Ch('/')); },
                     "0800/01/02");
  expect_written<Ch>([&](Ch* out) { return Twin<Ch>::DateString(&wide_date, out, Ch('-')); },
                     "65535-65535-65535");
  const TimeRecord time{9, 5, 7}, wide_time{65535, 0, 100};
  expect_written<Ch>([&](Ch* out) { return Twin<Ch>::TimeString(&time, out); }, "09:05:07");
  expect_written<Ch>([&](Ch* out) { return Twin<Ch>::TimeString(&wide_time, out); },
                     "65535:00:100");
  struct Case {
    SYSTEMTIME time;
    int32_t flag;
    const char* expected;
  } cases[] = {
      {system_time(2024, 1, 2, 3, 4, 5, 6), 1, "2024-01-02T03:04:05.006"},
      {system_time(2024, 1, 2, 3, 4, 5, 7), -1, "2024-01-02T03:04:05.007"},
      {system_time(2024, 1, 2, 3, 4, 5, 65535), 0, "2024-01-02T03:04:05"},
      {system_time(65535, 65535, 65535, 65535, 65535, 65535, 65535), 1,
       "65535-65535-65535T65535:65535:65535.65535"},
  };
  for (auto c : cases) {
    c.time.wDayOfWeek = 65535;
    expect_written<Ch>(
        [&](Ch* out) { return Twin<Ch>::SystemTimeString(&c.time, out, c.flag, Ch('-'), Ch('T')); },
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
