// Splitting a text into a string list, in both twins: the two shapes of text
// that the split knows, what the fixed step does with the others, and the
// failure of each allocation.
#include <vector>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Splitting : public ::testing::Test {};
TYPED_TEST_SUITE(Splitting, ElementTypes);

// The list's entries as one text, each closed by '|'; the list is released.
template <class Ch>
std::basic_string<Ch> take(StrList& list) {
  std::basic_string<Ch> entries;
  for (int32_t i = 0; i < list.count; ++i) {
    EXPECT_NE(list.strings[i], nullptr);
    entries += static_cast<const Ch*>(list.strings[i]);
    entries += Ch('|');
  }
  Twin<Ch>::DeleteStrList(&list);
  return entries;
}

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C, "日本" 0x93 0xFA 0x96 0x7B.
TYPED_TEST(Splitting, FieldsOfEachShapeOfText) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    int32_t quotes;
    const char* entries;
    char delimiter = ',';  // 0: the CSV form
    Only only = Only::kBoth;
  } cases[] = {
      {"abc", 1, "abc|"},
      {"a,b,c", 1, "a|b|c|"},
      {"a,b,", 1, "a|b||"},
      {",a", 1, "|a|"},
      {"a,,b", 1, "a||b|"},
      {",", 1, "||"},
      {"\"a\",\"b\",\"c\"", 1, "a|b|c|"},
      {"\"ab\",\"cd\"", 1, "ab|cd|"},
      {"\"a\",\"b\"", 0, "\"a\"|\"b\"|"},
      {"a\"b,c", 0, "a\"b|c|"},
      {"\"x\",\"y;z\"", 1, "x|y;z|", 0},
      {"x;y,z", 0, "x;y|z|", 0},
      // Other shapes follow the fixed step.
      {"\"", 1, "|"},
      {"\"\"", 1, "\"|"},
      // The quotes of b are not made up for by the step of 1: the third
      // field begins two elements early and holds the comma.
      {"a,\"b\",c", 1, "a|b|,|"},
      {"a,\"b,c\",d", 1, "a|b,|c,|d|"},
      // A quoted first field sets the step to 3, which overshoots the plain
      // fields behind it: the last one lies behind the terminator and is
      // an empty entry, however far the step overshoots.
      {"\"a\",b,c", 1, "a|b||"},
      {"\"a,b\"", 1, "a,||"},
      {"\"a\",,,,,,", 1, "a|||||||"},
      // No trail byte is a comma: characters stay whole.
      {"\x95\x5C,\x83\x5C", 1, "\x95\x5C|\x83\x5C|", ',', Only::kNarrow},
      // A trail byte equal to the delimiter ends the field between the two
      // bytes, and the count agrees.
      {"\x95\x5Cx", 1, "\x95|x|", '\\', Only::kNarrow},
      {"\x93\xFA\x96\x7B{x", 1, "\x93\xFA\x96||x|", '{', Only::kNarrow},
      // A delimiter in the lead range: the count skips the lead byte, the
      // search stops at it, and the copy takes one byte more.
      {"a\x83\x5C"
       "b",
       1, "a\x83|", '\x83', Only::kNarrow},
      // A lead byte at the end is a byte of its own.
      {"ab,\x81", 1, "ab|\x81|", ',', Only::kNarrow},
  };
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
}

TYPED_TEST(Splitting, EmptyTextGivesAnEmptyList) {
  using Ch = TypeParam;
  StrList list{5, reinterpret_cast<void**>(&list)};  // whatever it held before
  EXPECT_EQ(Twin<Ch>::StringSplit(text<Ch>("").c_str(), Ch(','), &list, 1), 0);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.strings, nullptr);
}

TYPED_TEST(Splitting, FailedAllocationLeavesNothingToRelease) {
  using Ch = TypeParam;
  const auto src = text<Ch>("a,\"b\",cc,");
  for_each_allocation_failure([&] {
    StrList list{-1, nullptr};
    if (Twin<Ch>::StringSplit(src.c_str(), Ch(','), &list, 1) != 0) {
      EXPECT_EQ(take<Ch>(list), text<Ch>("a|b|,|cc|"));
    }
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.strings, nullptr);
  });
}

}  // namespace
