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

template <class Ch>
class Geometry : public ::testing::Test {};
TYPED_TEST_SUITE(Geometry, ElementTypes);

constexpr int32_t kUntouched = 77;

// A point wants exactly two fields, a rectangle at least four; a refused
// text leaves the record as it was.
TYPED_TEST(Geometry, ReadersCountTheFieldsAfterDroppingBlanks) {
  using Ch = TypeParam;
  constexpr int32_t kU = kUntouched;
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
    const int32_t result =
        c.rect ? Twin<Ch>::StringRect(source.c_str(), reinterpret_cast<RectRecord*>(record),
                                      Ch(c.delimiter))
               : Twin<Ch>::StringPoint(source.c_str(), reinterpret_cast<PointRecord*>(record),
                                       Ch(c.delimiter));
    EXPECT_EQ(result, c.result) << c.text;
    for (int i = 0; i < (c.rect ? 4 : 2); ++i) EXPECT_EQ(record[i], c.fields[i]) << c.text << i;
  }
  PointRecord point{};
  EXPECT_EQ(KZ_StringPointW(utf16("\uFF11\uFF10,\u3000-20").c_str(), &point, ','), 1);
  EXPECT_TRUE(point.x == 10 && point.y == -20);  // full-width digits, a Unicode space
}

// The C library's "%d%c %d" and so on.
template <class Ch>
std::basic_string<Ch> expected_text(const int32_t* fields, int count, char delimiter) {
  std::string out;
  char number[16];
  for (int i = 0; i < count; ++i) {
    std::snprintf(number, sizeof number, i == 0 ? "%d" : "%c %d", i == 0 ? fields[i] : delimiter,
                  fields[i]);
    out += number;
  }
  return text<Ch>(out);
}

// Records written with a delimiter other than a blank, a sign or a digit
// read back the same; the longest texts fill exactly 25 and 51 elements.
TYPED_TEST(Geometry, EveryWrittenRecordReadsBack) {
  using Ch = TypeParam;
  std::mt19937 random(3);
  const char delimiters[] = {',', ';', '/', '|', '\\', 'x', '\t'};
  for (int round = 0; round < 2000; ++round) {
    int32_t fields[4];
    for (auto& field : fields)
      field = static_cast<int32_t>(static_cast<uint32_t>(random()) >> (random() % 32));
    if (round < 2)
      for (auto& field : fields) field = round == 0 ? INT32_MIN : INT32_MAX;
    const char delimiter = delimiters[random() % sizeof delimiters];

    const PointRecord point{fields[0], fields[1]};
    auto point_text = sentinel_buffer<Ch>(26);
    Twin<Ch>::PointString(&point, point_text.data(), Ch(delimiter));
    ASSERT_EQ(str(point_text), expected_text<Ch>(fields, 2, delimiter));
    ASSERT_TRUE(untouched_from(point_text, 25));
    PointRecord point_back{};
    ASSERT_EQ(Twin<Ch>::StringPoint(point_text.data(), &point_back, Ch(delimiter)), 1);
    ASSERT_EQ(std::memcmp(&point_back, &point, sizeof point), 0);

    const RectRecord rect{fields[0], fields[1], fields[2], fields[3]};
    auto rect_text = sentinel_buffer<Ch>(52);
    Twin<Ch>::RectString(&rect, rect_text.data(), Ch(delimiter));
    ASSERT_EQ(str(rect_text), expected_text<Ch>(fields, 4, delimiter));
    ASSERT_TRUE(untouched_from(rect_text, 51));
    RectRecord rect_back{};
    ASSERT_EQ(Twin<Ch>::StringRect(rect_text.data(), &rect_back, Ch(delimiter)), 1);
    ASSERT_EQ(std::memcmp(&rect_back, &rect, sizeof rect), 0);
  }
}

TYPED_TEST(Geometry, WritersTakeANarrowDelimiterAboveAscii) {
  using Ch = TypeParam;
  const PointRecord point{1, 2};
  auto dst = sentinel_buffer<Ch>(26);
  Twin<Ch>::PointString(&point, dst.data(), static_cast<Ch>(0xA5));  // half-width katakana dot
  EXPECT_EQ(str(dst), text<Ch>("1\xA5 2"));
}

TYPED_TEST(Geometry, AllocationFailuresLeaveTheRecord) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    PointRecord point{kUntouched, kUntouched};
    const int32_t result = Twin<Ch>::StringPoint(text<Ch>("10, 20").c_str(), &point, Ch(','));
    EXPECT_TRUE(result == 1 ? point.x == 10 && point.y == 20
                            : result == 0 && point.x == kUntouched && point.y == kUntouched);
  });
}

}  // namespace
