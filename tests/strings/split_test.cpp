// Splitting a text into a string list, in both twins: the two shapes of text
// that the split knows, what the fixed step does with the others, and the
// failure of each allocation.
#include <vector>

#include "strings/api.h"

namespace {

using namespace kz::test;

template <class Ch>
class Splitting : public ::testing::Test {};
TYPED_TEST_SUITE(Splitting, ElementTypes);

// The list's entries as strings; the list is released.
template <class Ch>
std::vector<std::basic_string<Ch>> take(StrList& list) {
  std::vector<std::basic_string<Ch>> entries;
  for (int32_t i = 0; i < list.count; ++i) {
    EXPECT_NE(list.strings[i], nullptr);
    entries.emplace_back(static_cast<const Ch*>(list.strings[i]));
  }
  Strings<Ch>::DeleteStrList(&list);
  return entries;
}

template <class Ch>
std::vector<std::basic_string<Ch>> texts(std::initializer_list<const char*> items) {
  std::vector<std::basic_string<Ch>> out;
  for (const char* item : items) out.push_back(text<Ch>(item));
  return out;
}

TYPED_TEST(Splitting, FieldsOfPlainAndFullyQuotedTexts) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    int32_t quotes;
    std::initializer_list<const char*> entries;
  } cases[] = {
      {"abc", 1, {"abc"}},
      {"a,b,c", 1, {"a", "b", "c"}},
      {"a,b,", 1, {"a", "b", ""}},
      {",a", 1, {"", "a"}},
      {"a,,b", 1, {"a", "", "b"}},
      {",", 1, {"", ""}},
      {"\"a\",\"b\",\"c\"", 1, {"a", "b", "c"}},
      {"\"ab\",\"cd\"", 1, {"ab", "cd"}},
      {"\"a\",\"b\"", 0, {"\"a\"", "\"b\""}},
      {"a\"b,c", 0, {"a\"b", "c"}},
  };
  for (const auto& c : cases) {
    StrList list{-1, nullptr};
    ASSERT_EQ(Strings<Ch>::StringSplit(text<Ch>(c.src).c_str(), Ch(','), &list, c.quotes), 1)
        << c.src;
    EXPECT_EQ(take<Ch>(list), texts<Ch>(c.entries)) << c.src;
  }
}

TYPED_TEST(Splitting, OtherShapesFollowTheFixedStep) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    std::initializer_list<const char*> entries;
  } cases[] = {
      {"\"", {""}},
      {"\"\"", {"\""}},
      // The quotes of b are not made up for by the step of 1: the third
      // field begins two elements early and holds the comma.
      {"a,\"b\",c", {"a", "b", ","}},
      {"a,\"b,c\",d", {"a", "b,", "c,", "d"}},
      // A quoted first field sets the step to 3, which overshoots the plain
      // fields behind it: the last one lies behind the terminator and is
      // an empty entry.
      {"\"a\",b,c", {"a", "b", ""}},
      {"\"a,b\"", {"a,", ""}},
  };
  for (const auto& c : cases) {
    StrList list{-1, nullptr};
    ASSERT_EQ(Strings<Ch>::StringSplit(text<Ch>(c.src).c_str(), Ch(','), &list, 1), 1) << c.src;
    EXPECT_EQ(take<Ch>(list), texts<Ch>(c.entries)) << c.src;
  }
}

TYPED_TEST(Splitting, EveryEntryExistsHoweverFarTheStepOvershoots) {
  using Ch = TypeParam;
  StrList list{-1, nullptr};
  ASSERT_EQ(Strings<Ch>::StringSplit(text<Ch>("\"a\",,,,,,").c_str(), Ch(','), &list, 1), 1);
  EXPECT_EQ(list.count, 7);
  const auto entries = take<Ch>(list);
  EXPECT_EQ(entries.front(), text<Ch>("a"));
}

TYPED_TEST(Splitting, EmptyTextGivesAnEmptyList) {
  using Ch = TypeParam;
  StrList list{5, reinterpret_cast<void**>(&list)};  // whatever it held before
  EXPECT_EQ(Strings<Ch>::StringSplit(text<Ch>("").c_str(), Ch(','), &list, 1), 0);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.strings, nullptr);
}

TYPED_TEST(Splitting, CsvSplitsAtCommas) {
  using Ch = TypeParam;
  StrList list{0, nullptr};
  ASSERT_EQ(Strings<Ch>::StringCSV(text<Ch>("\"x\",\"y;z\"").c_str(), &list, 1), 1);
  EXPECT_EQ(take<Ch>(list), texts<Ch>({"x", "y;z"}));
  ASSERT_EQ(Strings<Ch>::StringCSV(text<Ch>("x;y,z").c_str(), &list, 0), 1);
  EXPECT_EQ(take<Ch>(list), texts<Ch>({"x;y", "z"}));
}

TYPED_TEST(Splitting, FailedAllocationLeavesNothingToRelease) {
  using Ch = TypeParam;
  const auto src = text<Ch>("a,\"b\",cc,");
  for_each_allocation_failure([&] {
    StrList list{-1, nullptr};
    const int32_t result = Strings<Ch>::StringSplit(src.c_str(), Ch(','), &list, 1);
    if (result == 0) {
      EXPECT_EQ(list.count, 0);
      EXPECT_EQ(list.strings, nullptr);
    } else {
      EXPECT_EQ(take<Ch>(list).size(), 4u);
    }
  });
}

TEST(NarrowSplitting, FieldsAroundDoubleByteCharacters) {
  struct Case {
    const char* src;
    char delimiter;
    std::initializer_list<const char*> entries;
  } cases[] = {
      // No trail byte is a comma: characters stay whole.
      {"\x95\x5C,\x83\x5C", ',', {"\x95\x5C", "\x83\x5C"}},
      // A trail byte equal to the delimiter ends the field between the two
      // bytes, and the count agrees.
      {"\x95\x5Cx", '\\', {"\x95", "x"}},
      {"\x93\xFA\x96\x7B{x", '{', {"\x93\xFA\x96", "", "x"}},
      // A delimiter in the lead range: the count skips the lead byte, the
      // search stops at it, and the copy takes one byte more.
      {"a\x83\x5C"
       "b",
       '\x83',
       {"a\x83"}},
      // A lead byte at the end is a byte of its own.
      {"ab,\x81", ',', {"ab", "\x81"}},
  };
  for (const auto& c : cases) {
    StrList list{0, nullptr};
    ASSERT_EQ(KZ_StringSplitA(c.src, c.delimiter, &list, 1), 1) << c.src;
    EXPECT_EQ(take<char>(list), texts<char>(c.entries)) << c.src;
  }
}

}  // namespace
