// Date and time text read back into records and moments; allocation
// failures are held by the allocation table.

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(TextToDate);

// Dates read at the delimiter, times at colons: a missing field is 0, a
// surplus one ignored, each field the low 16 bits of a leading integer
// after white space and a sign, and quoted fields lose their quotes. A
// date-time holds all six values or all zeros; a part of 31 elements is
// read (one of 32 overflows its scratch, which the guard-page table holds
// for the date part). Every case starts from a record of sevens, so a field
// left unwritten shows.
TYPED_TEST(TextToDate, ReadsFieldsTolerantlyAndMillisecondsAsAWholeNumber) {
  using Ch = TypeParam;
  const std::string fits(31, '0'), refused = joined(0, 0, 0, 0, 0, 0, 0);
  const std::tuple<std::string, char, std::string> cases[] = {
      // delimiter 0: read as a time; 'T': as a date-time, the date at '-'
      {"2024", '-', joined(1, 2024, 0, 0)},
      {"2024-13-45-99", '-', joined(1, 2024, 13, 45)},
      {" 2024- +1-x", '-', joined(1, 2024, 1, 0)},
      {"-1/70000/0", '/', joined(1, 65535, 4464, 0)},
      {"\"2024\"-\"01\"-\"02\"", '-', joined(1, 2024, 1, 2)},
      {"", '-', joined(0, 0, 0, 0)},
      {"12:34:56.789", 0, joined(1, 12, 34, 56)},
      {"2024-01-02T03", 'T', joined(1, 2024, 1, 2, 3, 0, 0)},
      {fits + "T" + fits, 'T', joined(1, 0, 0, 0, 0, 0, 0)},
      {"2024-01-02", 'T', refused},
      {"T03:04:05", 'T', refused},
      {"2024-01-02T" + std::string(32, '1'), 'T', refused}};
  for (const auto& [input, delimiter, expected] : cases) {
    DateRecord d{7, 7, 7};
    TimeRecord t{7, 7, 7};
    DateTimeRecord r{7, 7, 7, 7, 7, 7};
    const auto s = text<Ch>(input);
    const int32_t result = delimiter == 'T'
                               ? Twin<Ch>::StringDateTime(s.c_str(), &r, Ch('-'), Ch('T'))
                           : delimiter ? Twin<Ch>::StringDate(s.c_str(), &d, Ch(delimiter))
                                       : Twin<Ch>::StringTime(s.c_str(), &t);
    EXPECT_EQ(delimiter == 'T' ? joined(result, r.year, r.month, r.day, r.hour, r.minute, r.second)
              : delimiter      ? joined(result, d.year, d.month, d.day)
                               : joined(result, t.hour, t.minute, t.second),
              expected);
  }
  // The zone step is the same for texts of one zone offset, so differences
  // between moments are known here whatever the zone; the zone tests check
  // the absolute values. A refused text leaves the moment as it was.
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
  const std::pair<const char*, int64_t> moments[] = {
      {"2024-01-02T12:00:00.5", base + 5 * ms},
      {"2024-01-02T12:00:00.1.2", base},
      {"2024-01-02T12", base},
      {"2024-01-02T11:59:59.x", base - 1000 * ms},
      {"2024-01-03Tab:cd:ef", base + 12 * 3600 * 1000 * ms},  // no number: the time counts as 0
      {"2024-01-02", kRefused},
      {"2024-01-02T12:00:00.1000", kRefused},
      {"2024-02-30T12:00:00", kRefused},
      {"2024-01-02T24:00:00", kRefused}};
  for (const auto& [input, expected] : moments) EXPECT_EQ(read(input), expected) << input;
}

}  // namespace
