// The digit test and the digit grouping, in both twins: where they agree,
// where the narrow twin refuses what the wide twin groups, and the size
// bound that lets a grouped text end exactly at size.
#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Grouping : public ::testing::Test {};
TYPED_TEST_SUITE(Grouping, ElementTypes);

TYPED_TEST(Grouping, OnlyDigitsAreNumeric) {
  using Ch = TypeParam;
  struct Case {
    const char* text;
    int32_t numeric;
    Only only = Only::kBoth;
  } cases[] = {
      {"", 1},
      {"0123456789", 1},
      {"-1", 0},
      {"1,000", 0},
      {"12 ", 0},
      // The neighbours of the digit range.
      {"/", 0},
      {":", 0},
      // Shift-JIS full-width 1 (0x82 0x50): neither byte is a digit.
      {"1\x82\x50", 0, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    EXPECT_EQ(Twin<Ch>::IsNumeric(text<Ch>(c.text).c_str()), c.numeric) << c.text;
  }
  if constexpr (sizeof(Ch) == 2) {
    // Full-width digits are no digits in the wide twin either.
    EXPECT_EQ(KZ_IsNumericW(utf16("\uFF11\uFF12").c_str()), 0);
  }
}

TYPED_TEST(Grouping, DelimitersGoInFromTheRight) {
  using Ch = TypeParam;
  struct Case {
    const char* source;
    int32_t group;
    const char* expected;  // null: -1
    Only only = Only::kBoth;
  } cases[] = {
      {"1234567", 3, "1,234,567"},
      {"123456", 3, "123,456"},
      {"123", 3, "123"},
      {"12", 3, "12"},
      {"", 3, ""},
      {"12345", 2, "1,23,45"},
      {"123", 1, "1,2,3"},
      {"123", 9, "123"},
      {"123", 0, nullptr},
      {"123", -1, nullptr},
      // The wide twin groups any text, a sign as one element; the narrow
      // twin refuses it.
      {"-123456", 3, "-,123,456", Only::kWide},
      {"abcdefg", 3, "a,bcd,efg", Only::kWide},
      {"-123456", 3, nullptr, Only::kNarrow},
      {"abcdefg", 3, nullptr, Only::kNarrow},
      {"12 ", 3, nullptr, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(32);
    const int32_t expected = c.expected ? static_cast<int32_t>(std::string(c.expected).size()) : -1;
    EXPECT_EQ(
        Twin<Ch>::StringSetDelimiter(text<Ch>(c.source).c_str(), dst.data(), 30, Ch(','), c.group),
        expected)
        << c.source << " group " << c.group;
    if (c.expected) {
      EXPECT_EQ(str(dst), text<Ch>(c.expected)) << c.source;
    } else if (sizeof(Ch) == 2) {
      EXPECT_EQ(str(dst), text<Ch>("")) << c.source;  // the wide twin empties first
    } else {
      EXPECT_TRUE(untouched_from(dst, 0)) << c.source;  // the narrow twin does not touch it
    }
  }
}

// size bounds where a source element may start: a grouped text of exactly
// size elements fits with its terminator behind size, and with a group of 1
// one of size + 1 elements fits, since the last delimiter and its digit are
// written behind one test.
TYPED_TEST(Grouping, SizesAroundTheBound) {
  using Ch = TypeParam;
  struct Case {
    const char* source;
    int32_t group;
    const char* grouped;
  } cases[] = {
      {"1234567", 3, "1,234,567"},
      {"123456", 3, "123,456"},
      {"12345", 2, "1,23,45"},
      {"123", 1, "1,2,3"},
      {"1", 1, "1"},
  };
  for (const auto& c : cases) {
    const auto grouped = text<Ch>(c.grouped);
    const auto length = static_cast<int32_t>(grouped.size());
    // With a group of 1, the last step writes two elements behind one test.
    const int32_t needed = c.group == 1 && length > 1 ? length - 1 : length;
    for (int32_t size : {needed - 1, needed, needed + 1, 0, 1}) {
      if (size < 0) continue;
      auto dst = sentinel_buffer<Ch>(16);
      const bool fits = size >= needed;
      EXPECT_EQ(Twin<Ch>::StringSetDelimiter(text<Ch>(c.source).c_str(), dst.data(), size, Ch(','),
                                             c.group),
                fits ? length : -1)
          << c.source << " size " << size;
      EXPECT_EQ(str(dst), fits ? grouped : text<Ch>("")) << c.source << " size " << size;
      // Nothing behind the grouped text's terminator, nor behind size + 1
      // (size + 2 for a group of 1).
      const auto limit = static_cast<std::size_t>(size + (c.group == 1 ? 2 : 1));
      EXPECT_TRUE(untouched_from(dst, fits ? grouped.size() + 1 : limit))
          << c.source << " size " << size;
    }
  }
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringSetDelimiter(text<Ch>("1").c_str(), dst.data(), -1, Ch(','), 3), -1);
  EXPECT_TRUE(untouched_from(dst, 0));
}

}  // namespace
