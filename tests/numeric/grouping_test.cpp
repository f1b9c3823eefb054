// The digit test and the digit grouping in both twins: where the narrow
// twin refuses what the wide twin groups, and the size bound that lets a
// grouped text end exactly at size.
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Grouping);

TYPED_TEST(Grouping, OnlyDigitsAreNumericAndSizesGoAroundTheBound) {
  using Ch = TypeParam;
  // "/" and ":" stand beside the digits; 0x82 0x50 is a Shift-JIS "1".
  for (const char* s : {"", "0123456789", "-1", "/", ":", "1\x82\x50"})
    EXPECT_EQ(Twin<Ch>::IsNumeric(text<Ch>(s).c_str()), s[0] == 0 || s[0] == '0' ? 1 : 0) << s;
  EXPECT_EQ(KZ_IsNumericW(utf16("\uFF11").c_str()), 0);
  // Each grouped text is checked at the sizes around where it fits: a text
  // of n elements fits with its terminator behind size n, and with a group
  // of 1 at size n - 1, since the last delimiter and its digit follow one
  // test. The wide twin groups any text, a sign as one element; the narrow
  // twin refuses it and leaves the destination alone.
  // The grouped text null: refused.
  const std::tuple<const char*, const char*, int32_t, Only> cases[] = {
      {"1234567", "1,234,567", 3, kBoth},
      {"123456", "123,456", 3, kBoth},
      {"12345", "1,23,45", 2, kBoth},
      {"123", "1,2,3", 1, kBoth},
      {"", "", 3, kBoth},
      {"123", nullptr, 0, kBoth},
      {"-123456", "-,123,456", 3, kWide},
      {"-123456", nullptr, 3, kNarrow}};
  for (const auto& [source, expected, group, only] : cases) {
    if (!runs<Ch>(only)) continue;
    const auto grouped = text<Ch>(expected ? expected : "");
    const auto length = static_cast<int32_t>(grouped.size());
    const int32_t needed = group == 1 ? length - 1 : length;
    for (int32_t size : {needed - 1, needed, needed + 1, 0, -1}) {
      auto dst = sentinel_buffer<Ch>(16);
      const bool fits = expected && size >= needed;
      EXPECT_EQ(
          Twin<Ch>::StringSetDelimiter(text<Ch>(source).c_str(), dst.data(), size, Ch(','), group),
          fits ? length : -1)
          << source << " size " << size;
      const std::size_t bound = size < 0 || (!expected && sizeof(Ch) == 1) ? 0
                                : fits                                     ? grouped.size() + 1
                                       : static_cast<std::size_t>(size + (group == 1 ? 2 : 1));
      EXPECT_EQ(bound > 0 ? str(dst) : text<Ch>(""), fits ? grouped : text<Ch>(""))
          << source << size;
      EXPECT_TRUE(untouched_from(dst, bound)) << source << " size " << size;
    }
  }
}

}  // namespace
