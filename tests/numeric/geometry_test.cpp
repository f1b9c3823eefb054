// Point and rectangle text in both twins: what the readers make of each
// shape of text and the round trip from the writers. Allocation failures
// are held by the allocation table.
#include <random>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Geometry);

constexpr int32_t kU = 77;  // a field the reader left alone

// Reads a point (2 fields) or a rectangle (4) into a record of kU values.
template <class Ch>
std::string read(const Ch* text, int fields, Ch delimiter) {
  int32_t record[4] = {kU, kU, kU, kU};
  const int32_t result =
      fields == 2 ? Twin<Ch>::StringPoint(text, reinterpret_cast<PointRecord*>(record), delimiter)
                  : Twin<Ch>::StringRect(text, reinterpret_cast<RectRecord*>(record), delimiter);
  return joined(result, record[0], record[1], record[2], record[3]);
}

// A point wants exactly two fields, a rectangle at least four; a refused
// text leaves the record as it was; a field that is no number, or empty,
// reads as 0. A blank delimiter goes with the other
// blanks: one field. Shift-JIS 0x95 0x5C: the split ends a field at the
// trail byte.
TYPED_TEST(Geometry, ReadersCountTheFieldsAndWrittenRecordsReadBack) {
  using Ch = TypeParam;
  const std::tuple<const char*, int, std::string, char, Only> cases[] = {
      {"1 0 , 2 0", 2, joined(1, 10, 20, kU, kU), ',', kBoth},
      {"a,", 2, joined(1, 0, 0, kU, kU), ',', kBoth},
      {"\"10\",\"20\"", 2, joined(1, 10, 20, kU, kU), ',', kBoth},
      {"10", 2, joined(0, kU, kU, kU, kU), ',', kBoth},
      {"10, 20, 30", 2, joined(0, kU, kU, kU, kU), ',', kBoth},
      {"   ", 2, joined(0, kU, kU, kU, kU), ',', kBoth},
      {"10 20", 2, joined(0, kU, kU, kU, kU), ' ', kBoth},
      {"1\x95\\2", 2, joined(1, 1, 2, kU, kU), '\\', kNarrow},
      {"1, 2, 3, 4, 5", 4, joined(1, 1, 2, 3, 4), ',', kBoth},
      {"1, 2, 3", 4, joined(0, kU, kU, kU, kU), ',', kBoth}};
  for (const auto& [input, fields, expected, delimiter, only] : cases)
    EXPECT_EQ(runs<Ch>(only) ? read(text<Ch>(input).c_str(), fields, Ch(delimiter)) : expected,
              expected)
        << input;
  // Full-width digits, a Unicode space.
  EXPECT_EQ(read(utf16("\uFF11\uFF10,\u3000-20").c_str(), 2, wchar(',')),
            joined(1, 10, -20, kU, kU));
  // The writer's text is the C library's decimal text of each field, joined
  // by the delimiter and a blank, and reads back to the record; delimiters
  // other than a blank, a sign or a digit, one above ASCII (a half-width
  // katakana dot) among them.
  std::mt19937 random(3);
  const unsigned char delimiters[] = {',', ';', '/', '|', '\\', 'x', '\t', 0xA5};
  for (int round = 0; round < 2000; ++round) {
    int32_t f[4];
    for (auto& field : f)
      field = round < 2 ? (round == 0 ? INT32_MIN : INT32_MAX)
                        : static_cast<int32_t>(static_cast<uint32_t>(random()) >> (random() % 32));
    const Ch delimiter(delimiters[random() % sizeof delimiters]);
    const PointRecord point{f[0], f[1]};
    const RectRecord rect{f[0], f[1], f[2], f[3]};
    for (int fields : {2, 4}) {
      std::string expected = std::to_string(f[0]);
      for (int i = 1; i < fields; ++i)
        expected += std::string{char(delimiter), ' '} + std::to_string(f[i]);
      auto written = sentinel_buffer<Ch>(52);
      fields == 2 ? Twin<Ch>::PointString(&point, written.data(), delimiter)
                  : Twin<Ch>::RectString(&rect, written.data(), delimiter);
      ASSERT_EQ(str(written), text<Ch>(expected));
      ASSERT_TRUE(untouched_from(written, expected.size() + 1));
      ASSERT_EQ(read(written.data(), fields, delimiter),
                joined(1, f[0], f[1], fields == 2 ? kU : f[2], fields == 2 ? kU : f[3]));
    }
  }
}

}  // namespace
