// Splitting a text into a string list, in both twins: the two shapes of text
// that the split knows, what the fixed step does with the others, and the
// failure of each allocation.
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
  struct Case {
    const char* src;
    int32_t quotes;
    const char* entries;
    char delimiter = ',';
    Only only = kBoth;
  } cases[] = {{"abc", 1, "abc|"},
               {"a,b,", 1, "a|b||"},
               {",a", 1, "|a|"},
               {"a,,b", 1, "a||b|"},
               {"\"a\",\"b\",\"c\"", 1, "a|b|c|"},
               {"\"a\",\"b\"", 0, "\"a\"|\"b\"|"},
               {"\"x\",\"y;z\"", 1, "x|y;z|", 0},
               {"\"", 1, "|"},
               {"a,\"b\",c", 1, "a|b|,|"},
               {"\"a\",b,c", 1, "a|b||"},
               {"\"a\",,,,,,", 1, "a|||||||"},
               {"\x95\\,\x83\\", 1, "\x95\\|\x83\\|", ',', kNarrow},
               {"\x95\\x", 1, "\x95|x|", '\\', kNarrow},
               {"a\x83\\b", 1, "a\x83|", '\x83', kNarrow},
               {"ab,\x81", 1, "ab|\x81|", ',', kNarrow}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    StrList list{-1, nullptr};
    const auto src = text<Ch>(c.src);
    ASSERT_EQ(c.delimiter ? Twin<Ch>::StringSplit(src.c_str(), Ch(c.delimiter), &list, c.quotes)
                          : Twin<Ch>::StringCSV(src.c_str(), &list, c.quotes),
              1)
        << c.src;
    EXPECT_EQ(take<Ch>(list), text<Ch>(c.entries)) << c.src;
  }
  StrList list{5, reinterpret_cast<void**>(&list)};  // whatever it held before
  EXPECT_EQ(Twin<Ch>::StringSplit(text<Ch>("").c_str(), Ch(','), &list, 1), 0);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.strings, nullptr);
}

TYPED_TEST(Splitting, FailedAllocationLeavesNothingToRelease) {
  using Ch = TypeParam;
  const auto src = text<Ch>("a,\"b\",cc,");
  expect_whole_or(joined(0, 0, 0), [&] {
    StrList list{-1, nullptr};
    const int32_t result = Twin<Ch>::StringSplit(src.c_str(), Ch(','), &list, 1);
    const auto shown = joined(result, list.count, list.strings != nullptr);
    if (result) {
      EXPECT_EQ(take<Ch>(list), text<Ch>("a|b|,|cc|"));
    }
    return shown;
  });
}

}  // namespace
