// Point and rectangle text in both twins: what the readers make of each
// shape of text, the round trip from the writers, and allocation failures.
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Geometry);

constexpr int32_t kU = 77;  // a field the reader left alone

// A point wants exactly two fields, a rectangle at least four; a refused
// text leaves the record as it was.
TYPED_TEST(Geometry, ReadersCountTheFieldsAfterDroppingBlanks) {
  using Ch = TypeParam;
  const struct {
    const char* text;
    bool rect;
    int32_t result, fields[4];
    char delimiter = ',';
    Only only = Only::kBoth;
  } cases[] = {
      {"1 0 , 2 0", false, 1, {10, 20}},
      {"a, b", false, 1, {0, 0}},
      {"10,", false, 1, {10, 0}},
      {"\"10\",\"20\"", false, 1, {10, 20}},
      {"10", false, 0, {kU, kU}},
      {"10, 20, 30", false, 0, {kU, kU}},
      {"   ", false, 0, {kU, kU}},
      // A blank delimiter goes with the other blanks: one field.
      {"10 20", false, 0, {kU, kU}, ' '},
      // Shift-JIS 0x95 0x5C: the split ends a field at the trail byte.
      {"1\x95\\2", false, 1, {1, 2}, '\\', Only::kNarrow},
      {"1, 2, 3, 4, 5", true, 1, {1, 2, 3, 4}},
      {"1, 2, 3", true, 0, {kU, kU, kU, kU}},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto source = text<Ch>(c.text);
    int32_t record[4] = {kU, kU, kU, kU};
    const Ch delimiter(c.delimiter);
    EXPECT_EQ(c.rect ? Twin<Ch>::StringRect(source.c_str(), reinterpret_cast<RectRecord*>(record),
                                            delimiter)
                     : Twin<Ch>::StringPoint(source.c_str(), reinterpret_cast<PointRecord*>(record),
                                             delimiter),
              c.result)
        << c.text;
    for (int i = 0; i < (c.rect ? 4 : 2); ++i) EXPECT_EQ(record[i], c.fields[i]) << c.text << i;
  }
  PointRecord point{};
  EXPECT_EQ(KZ_StringPointW(utf16("\uFF11\uFF10,\u3000-20").c_str(), &point, ','), 1);
  EXPECT_TRUE(point.x == 10 && point.y == -20);  // full-width digits, a Unicode space
}

// The writer's text is the C library's "%d%c %d..." and reads back to the
// record; the longest fill exactly 25 and 51 elements.
template <class Ch, class Record>
void expect_round_trip(const Record& record, unsigned char delimiter) {
  constexpr int count = sizeof(Record) / sizeof(int32_t);
  const auto* fields = reinterpret_cast<const int32_t*>(&record);
  std::string expected;
  char number[16];
  for (int i = 0; i < count; ++i) {
    std::snprintf(number, sizeof number, i == 0 ? "%d" : "%c %d", i == 0 ? fields[i] : delimiter,
                  fields[i]);
    expected += number;
  }
  auto written = sentinel_buffer<Ch>(count == 2 ? 26 : 52);
  Record back{};
  if constexpr (count == 2) {
    Twin<Ch>::PointString(&record, written.data(), Ch(delimiter));
    ASSERT_EQ(Twin<Ch>::StringPoint(written.data(), &back, Ch(delimiter)), 1);
  } else {
    Twin<Ch>::RectString(&record, written.data(), Ch(delimiter));
    ASSERT_EQ(Twin<Ch>::StringRect(written.data(), &back, Ch(delimiter)), 1);
  }
  ASSERT_EQ(str(written), text<Ch>(expected));
  ASSERT_TRUE(untouched_from(written, count == 2 ? 25 : 51));
  ASSERT_EQ(std::memcmp(&back, &record, sizeof record), 0) << expected;
}

// Delimiters other than a blank, a sign or a digit, one above ASCII (a
// half-width katakana dot) among them.
TYPED_TEST(Geometry, EveryWrittenRecordReadsBack) {
  using Ch = TypeParam;
  std::mt19937 random(3);
  const unsigned char delimiters[] = {',', ';', '/', '|', '\\', 'x', '\t', 0xA5};
  for (int round = 0; round < 2000; ++round) {
    int32_t f[4];
    for (auto& field : f)
      field = round < 2 ? (round == 0 ? INT32_MIN : INT32_MAX)
                        : static_cast<int32_t>(static_cast<uint32_t>(random()) >> (random() % 32));
    const unsigned char delimiter = delimiters[random() % sizeof delimiters];
    expect_round_trip<Ch>(PointRecord{f[0], f[1]}, delimiter);
    expect_round_trip<Ch>(RectRecord{f[0], f[1], f[2], f[3]}, delimiter);
  }
}

TYPED_TEST(Geometry, AllocationFailuresLeaveTheRecord) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    PointRecord point{kU, kU};
    const int32_t result = Twin<Ch>::StringPoint(text<Ch>("10, 20").c_str(), &point, Ch(','));
    EXPECT_TRUE(result == 1 ? point.x == 10 && point.y == 20
                            : result == 0 && point.x == kU && point.y == kU);
  });
}

}  // namespace
