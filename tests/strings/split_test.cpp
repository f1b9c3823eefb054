// Splitting a text into a string list, in both twins: the two shapes of text
// that the split knows and what the fixed step does with the others; the
// failures of allocation are in the reliability tables.
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Splitting);

// Plain fields and fields all in quotes split cleanly (delimiter 0: the CSV
// form). Other shapes follow the fixed step: the quotes of b are not made
// up for by the step of 1, so the third field begins two elements early;
// a quoted first field sets the step to 3, which overshoots the plain
// fields behind it, and a field behind the terminator is an empty entry.
// Narrow text keeps "表" (0x95 0x5C) whole at a comma but ends a field
// between its bytes at a backslash; a delimiter in the lead range is
// skipped by the count, found by the search, and the copy takes one byte
// more; a lead byte at the end is a byte of its own.
TYPED_TEST(Splitting, FieldsOfEachShapeOfText) {
  using Ch = TypeParam;
  // src, quotes, entries, delimiter (0: the CSV form)
  const std::tuple<const char*, int32_t, const char*, char, Only> cases[] = {
      {"abc", 1, "abc|", ',', kBoth},
      {"a,b,", 1, "a|b||", ',', kBoth},
      {",a", 1, "|a|", ',', kBoth},
      {"a,,b", 1, "a||b|", ',', kBoth},
      {"\"a\",\"b\",\"c\"", 1, "a|b|c|", ',', kBoth},
      {"\"a\",\"b\"", 0, "\"a\"|\"b\"|", ',', kBoth},
      {"\"x\",\"y;z\"", 1, "x|y;z|", 0, kBoth},
      {"\"", 1, "|", ',', kBoth},
      {"a,\"b\",c", 1, "a|b|,|", ',', kBoth},
      {"\"a\",b,c", 1, "a|b||", ',', kBoth},
      {"\"a\",,,,,,", 1, "a|||||||", ',', kBoth},
      {"\x95\\,\x83\\", 1, "\x95\\|\x83\\|", ',', kNarrow},
      {"\x95\\x", 1, "\x95|x|", '\\', kNarrow},
      {"a\x83\\b", 1, "a\x83|", '\x83', kNarrow},
      {"ab,\x81", 1, "ab|\x81|", ',', kNarrow}};
  for (const auto& [source, quotes, entries, delimiter, only] : cases) {
    if (!runs<Ch>(only)) continue;
    StrList list{-1, nullptr};
    const auto src = text<Ch>(source);
    ASSERT_EQ(delimiter ? Twin<Ch>::StringSplit(src.c_str(), Ch(delimiter), &list, quotes)
                        : Twin<Ch>::StringCSV(src.c_str(), &list, quotes),
              1)
        << source;
    EXPECT_EQ(take<Ch>(list), text<Ch>(entries)) << source;
  }
  StrList list{5, reinterpret_cast<void**>(&list)};  // whatever it held before
  EXPECT_EQ(Twin<Ch>::StringSplit(text<Ch>("").c_str(), Ch(','), &list, 1), 0);
  EXPECT_EQ(joined(list.count, list.strings != nullptr), joined(0, 0));
}

}  // namespace
