// The digit test and the digit grouping in both twins: where the narrow
// twin refuses what the wide twin groups, and the size bound that lets a
// grouped text end exactly at size.
#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Grouping);

TYPED_TEST(Grouping, OnlyDigitsAreNumeric) {
  using Ch = TypeParam;
  // "/" and ":" stand beside the digits; 0x82 0x50 is a Shift-JIS "1".
  for (const char* s : {"", "0123456789", "-1", "/", ":", "1\x82\x50"})
    EXPECT_EQ(Twin<Ch>::IsNumeric(text<Ch>(s).c_str()), s[0] == 0 || s[0] == '0' ? 1 : 0) << s;
  EXPECT_EQ(KZ_IsNumericW(utf16("\uFF11").c_str()), 0);
}

// Each grouped text is checked at the sizes around where it fits: a text
// of n elements fits with its terminator behind size n, and with a group
// of 1 at size n - 1, since the last delimiter and its digit follow one
// test. The wide twin groups any text, a sign as one element; the narrow
// twin refuses it and leaves the destination alone.
TYPED_TEST(Grouping, SizesAroundTheBound) {
  using Ch = TypeParam;
  const struct {
    const char *source, *grouped;  // grouped null: refused
    int32_t group;
    Only only = Only::kBoth;
  } cases[] = {{"1234567", "1,234,567", 3},
               {"123456", "123,456", 3},
               {"12345", "1,23,45", 2},
               {"123", "1,2,3", 1},
               {"", "", 3},
               {"123", nullptr, 0},
               {"-123456", "-,123,456", 3, Only::kWide},
               {"-123456", nullptr, 3, Only::kNarrow}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto grouped = text<Ch>(c.grouped ? c.grouped : "");
    const auto length = static_cast<int32_t>(grouped.size());
    const int32_t needed = c.group == 1 ? length - 1 : length;
    for (int32_t size : {needed - 1, needed, needed + 1, 0, -1}) {
      auto dst = sentinel_buffer<Ch>(16);
      const bool fits = c.grouped && size >= needed;
      EXPECT_EQ(Twin<Ch>::StringSetDelimiter(text<Ch>(c.source).c_str(), dst.data(), size, Ch(','),
                                             c.group),
                fits ? length : -1)
          << c.source << " size " << size;
      const std::size_t bound = size < 0 || (!c.grouped && sizeof(Ch) == 1) ? 0
                                : fits                                      ? grouped.size() + 1
                                       : static_cast<std::size_t>(size + (c.group == 1 ? 2 : 1));
      if (bound > 0) {
        EXPECT_EQ(str(dst), fits ? grouped : text<Ch>("")) << c.source << size;
      }
      EXPECT_TRUE(untouched_from(dst, bound)) << c.source << " size " << size;
    }
  }
}

}  // namespace
