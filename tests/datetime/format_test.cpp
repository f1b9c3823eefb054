// Dates and times written as text from records, held against the readers:
// a FILETIME's text and the clock's are checked by the zone and clock tests.
#include <random>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(DateTimeText);

// The length of a field written in decimal with leading zeros up to `least`.
std::size_t width(int value, std::size_t least) {
  return std::max(std::to_string(value).size(), least);
}

// Each field is written with leading zeros up to its width (the year 4, the
// milliseconds 3, the others 2) and never cut, so every record reads back
// from a text exactly as long as its fields and delimiters. The day of week
// is never read, the milliseconds only under a flag other than 0, and any
// delimiter comes through unchanged, double-byte ones in wide text too.
TYPED_TEST(DateTimeText, EveryRecordReadsBackFromATextOfItsFieldsWidths) {
  using Ch = TypeParam;
  const Ch delimiters[] = {'/', Ch(sizeof(Ch) == 1 ? 0xA5 : 0x5E74)};
  const Ch separators[] = {'T', Ch(sizeof(Ch) == 1 ? 0xFF : 0x3000)};
  std::mt19937 random(800);
  for (int round = 0; round < 3000; ++round) {
    const auto field = [&](unsigned n) { return uint16_t(random() % (round % 4 ? n : 65536)); };
    SYSTEMTIME t = system_time(field(10000), field(13), field(32), field(24), field(60), field(60),
                               field(1000));
    t.wDayOfWeek = 65535;
    const int32_t flag = round % 3 - 1;
    const Ch delimiter = delimiters[round % 2], separator = separators[round / 2 % 2];
    const std::size_t date_length = width(t.wYear, 4) + width(t.wMonth, 2) + width(t.wDay, 2) + 2;
    const std::size_t time_length =
        width(t.wHour, 2) + width(t.wMinute, 2) + width(t.wSecond, 2) + 2;
    const std::size_t ms_length = flag ? 1 + width(t.wMilliseconds, 3) : 0;
    const std::size_t length = date_length + 1 + time_length + ms_length;
    auto out = sentinel_buffer<Ch>(length + 2);
    ASSERT_EQ(Twin<Ch>::SystemTimeString(&t, out.data(), flag, delimiter, separator),
              static_cast<int32_t>(length));
    ASSERT_EQ(str(out).size(), length);
    ASSERT_TRUE(untouched_from(out, length + 1));
    DateTimeRecord back{};
    TimeRecord ms{};  // the milliseconds, read as the hour of a time
    ASSERT_EQ(Twin<Ch>::StringDateTime(out.data(), &back, delimiter, separator), 1);
    if (flag) Twin<Ch>::StringTime(out.data() + date_length + time_length + 2, &ms);
    EXPECT_EQ(joined(back.year, back.month, back.day, back.hour, back.minute, back.second, ms.hour),
              joined(t.wYear, t.wMonth, t.wDay, t.wHour, t.wMinute, t.wSecond,
                     flag ? t.wMilliseconds : 0));
    // The date and the time alone are the same fields as in the whole.
    const DateRecord date{t.wYear, t.wMonth, t.wDay};
    const TimeRecord time{t.wHour, t.wMinute, t.wSecond};
    auto date_out = sentinel_buffer<Ch>(24), time_out = sentinel_buffer<Ch>(24);
    ASSERT_EQ(joined(Twin<Ch>::DateString(&date, date_out.data(), delimiter),
                     Twin<Ch>::TimeString(&time, time_out.data())),
              joined(date_length, time_length));
    EXPECT_EQ(str(date_out) + separator + str(time_out), str(out).substr(0, length - ms_length));
  }
}

}  // namespace
