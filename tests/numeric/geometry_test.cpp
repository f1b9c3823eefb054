// Point and rectangle text in both twins: what the readers make of each
// shape of text, the round trip from the writers, and allocation failures.
#include <cstdio>
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

TYPED_TEST(Geometry, PointReaderWantsExactlyTwoFields) {
  using Ch = TypeParam;
  struct Case {
    const char* text;
    int32_t result, x, y;
    char delimiter = ',';
    Only only = Only::kBoth;
  } cases[] = {
      {"10, 20", 1, 10, 20},
      {"10,20", 1, 10, 20},
      {"1 0 , 2 0", 1, 10, 20},
      {"-10, -20", 1, -10, -20},
      {"a, b", 1, 0, 0},
      {"10,", 1, 10, 0},
      {"12x, 34y", 1, 12, 34},
      {"\"10\",\"20\"", 1, 10, 20},
      {"2147483648, -2147483649", 1, INT32_MAX, INT32_MIN},
      {"10; 20", 1, 10, 20, ';'},
      {"10", 0, kUntouched, kUntouched},
      {"10, 20, 30", 0, kUntouched, kUntouched},
      {"10, 20,", 0, kUntouched, kUntouched},
      {"", 0, kUntouched, kUntouched},
      {"   ", 0, kUntouched, kUntouched},
      // A blank delimiter goes with the other blanks: one field.
      {"10 20", 0, kUntouched, kUntouched, ' '},
      // Shift-JIS 0x95 0x5C: the split ends a field at a trail byte equal
      // to the delimiter, and the lead byte stays behind in the first one.
      {"1\x95\\2", 1, 1, 2, '\\', Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    PointRecord point{kUntouched, kUntouched};
    EXPECT_EQ(Twin<Ch>::StringPoint(text<Ch>(c.text).c_str(), &point, Ch(c.delimiter)), c.result)
        << c.text;
    EXPECT_EQ(point.x, c.x) << c.text;
    EXPECT_EQ(point.y, c.y) << c.text;
  }
  if constexpr (sizeof(Ch) == 2) {
    // The wide parse reads full-width digits; an ideographic space is no
    // blank to the reader but white space to the parse.
    PointRecord point{};
    EXPECT_EQ(KZ_StringPointW(utf16("\uFF11\uFF10,\u3000-20").c_str(), &point, ','), 1);
    EXPECT_EQ(point.x, 10);
    EXPECT_EQ(point.y, -20);
  }
}

TYPED_TEST(Geometry, RectangleReaderWantsAtLeastFourFields) {
  using Ch = TypeParam;
  struct Case {
    const char* text;
    int32_t result;
    RectRecord rect;
  } cases[] = {
      {"1, 2, 3, 4", 1, {1, 2, 3, 4}},
      {"1, 2, 3, 4, 5", 1, {1, 2, 3, 4}},
      {"1, 2, 3, 4,", 1, {1, 2, 3, 4}},
      {"1, , 3, 4", 1, {1, 0, 3, 4}},
      {"\"1\",\"2\",\"3\",\"4\"", 1, {1, 2, 3, 4}},
      {"1, 2, 3", 0, {kUntouched, kUntouched, kUntouched, kUntouched}},
      {"", 0, {kUntouched, kUntouched, kUntouched, kUntouched}},
  };
  for (const auto& c : cases) {
    RectRecord rect{kUntouched, kUntouched, kUntouched, kUntouched};
    EXPECT_EQ(Twin<Ch>::StringRect(text<Ch>(c.text).c_str(), &rect, Ch(',')), c.result) << c.text;
    EXPECT_EQ(rect.left, c.rect.left) << c.text;
    EXPECT_EQ(rect.top, c.rect.top) << c.text;
    EXPECT_EQ(rect.right, c.rect.right) << c.text;
    EXPECT_EQ(rect.bottom, c.rect.bottom) << c.text;
  }
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
    ASSERT_EQ(point_back.x, point.x);
    ASSERT_EQ(point_back.y, point.y);

    const RectRecord rect{fields[0], fields[1], fields[2], fields[3]};
    auto rect_text = sentinel_buffer<Ch>(52);
    Twin<Ch>::RectString(&rect, rect_text.data(), Ch(delimiter));
    ASSERT_EQ(str(rect_text), expected_text<Ch>(fields, 4, delimiter));
    ASSERT_TRUE(untouched_from(rect_text, 51));
    RectRecord rect_back{};
    ASSERT_EQ(Twin<Ch>::StringRect(rect_text.data(), &rect_back, Ch(delimiter)), 1);
    ASSERT_EQ(rect_back.left, rect.left);
    ASSERT_EQ(rect_back.top, rect.top);
    ASSERT_EQ(rect_back.right, rect.right);
    ASSERT_EQ(rect_back.bottom, rect.bottom);
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
    if (result == 1) {
      EXPECT_TRUE(point.x == 10 && point.y == 20);
    } else {
      EXPECT_TRUE(result == 0 && point.x == kUntouched && point.y == kUntouched);
    }
    RectRecord rect{kUntouched, kUntouched, kUntouched, kUntouched};
    if (Twin<Ch>::StringRect(text<Ch>("1,2,3,4").c_str(), &rect, Ch(',')) == 0) {
      EXPECT_EQ(rect.left, kUntouched);
    }
  });
  PointRecord point{kUntouched, kUntouched};
  kz::alloc_faults::arm(1, true);
  EXPECT_EQ(Twin<Ch>::StringPoint(text<Ch>("10, 20").c_str(), &point, Ch(',')), 0);
  kz::alloc_faults::disarm();
  EXPECT_EQ(point.x, kUntouched);
}

}  // namespace
