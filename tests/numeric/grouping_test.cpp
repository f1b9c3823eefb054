// The digit test and the digit grouping in both twins: where the narrow
// twin refuses what the wide twin groups, and the size bound that lets a
// grouped text end exactly at size.
#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Grouping : public ::testing::Test {};
TYPED_TEST_SUITE(Grouping, ElementTypes);

TYPED_TEST(Grouping, OnlyDigitsAreNumeric) {
  using Ch = TypeParam;
  // "/" and ":" stand beside the digits; 0x82 0x50 is a Shift-JIS "1".
  for (const char* text : {"-1", "1,000", "12 ", "/", ":", "1\x82\x50"})
    EXPECT_EQ(Twin<Ch>::IsNumeric(kz::test::text<Ch>(text).c_str()), 0) << text;
  for (const char* text : {"", "0123456789"})
    EXPECT_EQ(Twin<Ch>::IsNumeric(kz::test::text<Ch>(text).c_str()), 1) << text;
  EXPECT_EQ(KZ_IsNumericW(utf16("\uFF11").c_str()), 0);
}

TYPED_TEST(Grouping, DelimitersGoInFromTheRight) {
  using Ch = TypeParam;
  const struct {
    const char* source;
    int32_t group;
    const char* grouped;  // null: -1
    Only only = Only::kBoth;
  } cases[] = {
      {"123", 0, nullptr},
      {"", 3, ""},
      {"123", 9, "123"},
      // The wide twin groups any text, a sign as one element; the narrow
      // twin refuses it and leaves the destination alone.
      {"-123456", 3, "-,123,456", Only::kWide},
      {"abcdefg", 3, "a,bcd,efg", Only::kWide},
      {"-123456", 3, nullptr, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(16);
    const auto grouped = text<Ch>(c.grouped ? c.grouped : "");
    EXPECT_EQ(
        Twin<Ch>::StringSetDelimiter(text<Ch>(c.source).c_str(), dst.data(), 14, Ch(','), c.group),
        c.grouped ? static_cast<int32_t>(grouped.size()) : -1)
        << c.source;
    if (c.grouped || sizeof(Ch) == 2) {
      EXPECT_EQ(str(dst), grouped) << c.source;
    } else {
      EXPECT_TRUE(untouched_from(dst, 0)) << c.source;
    }
  }
}

// size bounds where a source element may start: a grouped text of size
// elements fits with its terminator behind size, and with a group of 1 one
// of size + 1, since the last delimiter and its digit follow one test.
TYPED_TEST(Grouping, SizesAroundTheBound) {
  using Ch = TypeParam;
  const struct {
    const char *source, *grouped;
    int32_t group;
  } cases[] = {
      {"1234567", "1,234,567", 3},
      {"123456", "123,456", 3},
      {"12345", "1,23,45", 2},
      {"123", "1,2,3", 1},
      {"1", "1", 1},
  };
  for (const auto& c : cases) {
    const auto grouped = text<Ch>(c.grouped);
    const auto length = static_cast<int32_t>(grouped.size());
    const int32_t needed = c.group == 1 && length > 1 ? length - 1 : length;
    for (int32_t size : {needed - 1, needed, needed + 1, 0, 1}) {
      auto dst = sentinel_buffer<Ch>(16);
      const bool fits = size >= needed;
      EXPECT_EQ(Twin<Ch>::StringSetDelimiter(text<Ch>(c.source).c_str(), dst.data(), size, Ch(','),
                                             c.group),
                fits ? length : -1)
          << c.source << " size " << size;
      EXPECT_EQ(str(dst), fits ? grouped : text<Ch>("")) << c.source << " size " << size;
      const auto bound = static_cast<std::size_t>(size + (c.group == 1 ? 2 : 1));
      EXPECT_TRUE(untouched_from(dst, fits ? grouped.size() + 1 : bound)) << c.source << size;
    }
  }
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringSetDelimiter(text<Ch>("1").c_str(), dst.data(), -1, Ch(','), 3), -1);
  EXPECT_TRUE(untouched_from(dst, 0));
}

}  // namespace
