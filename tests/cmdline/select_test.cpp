// Multi-file selections, in both twins: both forms of the buffer, the size
// that ends the walk, the count range of 260 elements, and every allocation
// failing.
#include <string>
#include <vector>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Selections : public ::testing::Test {};
TYPED_TEST_SUITE(Selections, ElementTypes);

// A selection buffer from texts: each one terminated, and one terminator
// more behind the last.
template <class Ch>
std::basic_string<Ch> selection(std::initializer_list<std::string> parts) {
  std::basic_string<Ch> out;
  for (const std::string& part : parts) {
    out += text<Ch>(part);
    out.push_back(0);
  }
  out.push_back(0);
  return out;
}

template <class Ch>
std::string joined(StrList& list) {
  std::string out;
  for (int32_t i = 0; i < list.count; ++i) {
    for (const Ch* p = static_cast<const Ch*>(list.strings[i]); *p != 0; ++p)
      out.push_back(static_cast<char>(*p));
    out += '|';
  }
  Twin<Ch>::DeleteStrList(&list);
  return out;
}

TYPED_TEST(Selections, NameEveryFileOfBothForms) {
  using Ch = TypeParam;
  struct Case {
    std::initializer_list<std::string> parts;
    int32_t count;
    const char* paths;
  } cases[] = {
      {{"C:\\d\\a.txt"}, 1, "C:\\d\\a.txt|"},
      {{"C:\\d", "a.txt", "b.txt"}, 2, "C:\\d\\a.txt|C:\\d\\b.txt|"},
      {{"C:\\d", "a.txt", "b.txt", "c.txt"}, 3, "C:\\d\\a.txt|C:\\d\\b.txt|C:\\d\\c.txt|"},
      // A count of 1 is the single form, which takes the first text.
      {{"C:\\d", "a.txt"}, 1, "C:\\d|"},
      // One backslash at the join, whatever the directory ends with.
      {{"C:\\", "a", "b"}, 2, "C:\\\\a|C:\\\\b|"},
  };
  for (const Case& c : cases) {
    const auto buffer = selection<Ch>(c.parts);
    EXPECT_EQ(Twin<Ch>::GetComnSelectFileCount(buffer.c_str()), c.count);
    StrList list{};
    EXPECT_EQ(Twin<Ch>::GetComnSelectFiles(buffer.c_str(), 1000, &list), c.count);
    EXPECT_EQ(joined<Ch>(list), c.paths);
  }
}

TYPED_TEST(Selections, RefuseANullOrEmptySelectionAndLeaveTheListAlone) {
  using Ch = TypeParam;
  const Ch empty[] = {0, 0};
  void* marker[1];
  for (const Ch* buffer : {static_cast<const Ch*>(nullptr), empty}) {
    EXPECT_EQ(Twin<Ch>::GetComnSelectFileCount(buffer), -1);
    StrList list{5, marker};
    EXPECT_EQ(Twin<Ch>::GetComnSelectFiles(buffer, 100, &list), -1);
    EXPECT_EQ(list.count, 5);
    EXPECT_EQ(list.strings, marker);
  }
}

// size is compared with the position where a name begins: "C:\d" NUL
// "a.txt" NUL "b.txt" has a.txt at 5 and b.txt at 11.
TYPED_TEST(Selections, TakeOnlyTheNamesThatBeginBeforeSize) {
  using Ch = TypeParam;
  const auto buffer = selection<Ch>({"C:\\d", "a.txt", "b.txt"});
  struct Case {
    int32_t size;
    const char* paths;
  } cases[] = {
      {-1, ""},
      {5, ""},
      {6, "C:\\d\\a.txt|"},
      {11, "C:\\d\\a.txt|"},
      {12, "C:\\d\\a.txt|C:\\d\\b.txt|"},
  };
  for (const Case& c : cases) {
    StrList list{};
    const int32_t taken = Twin<Ch>::GetComnSelectFiles(buffer.c_str(), c.size, &list);
    EXPECT_EQ(taken, list.count) << c.size;
    // No name taken still leaves the empty array, which the release frees.
    EXPECT_NE(list.strings, nullptr) << c.size;
    EXPECT_EQ(joined<Ch>(list), c.paths) << c.size;
  }
}

// The count looks at positions 0 to 259 only, and the walk never stores
// more names than it counted, whatever size allows. A directory of 250
// elements puts abc's terminator at 254 and efgh's at 259.
TYPED_TEST(Selections, CountOnlyNamesEndingInsideTheRangeAndStoreNoMore) {
  using Ch = TypeParam;
  const std::string directory(250, 'd');
  struct Case {
    std::initializer_list<std::string> parts;
    int32_t count;
  } cases[] = {
      {{std::string(259, 'd'), "a", "b"}, 0},  // no name ends inside the range
      {{directory, "abc", "efgh"}, 2},
      {{directory, "abc", "efghi"}, 1},  // efghi ends at 260; 1 is the single form
      {{directory, "abc", "efgh", "x", "y"}, 2},
      {{std::string(260, 'p')}, 1},  // the range holds no terminator at all
  };
  for (const Case& c : cases) {
    const auto buffer = selection<Ch>(c.parts);
    EXPECT_EQ(Twin<Ch>::GetComnSelectFileCount(buffer.c_str()), c.count);
    StrList list{};
    EXPECT_EQ(
        Twin<Ch>::GetComnSelectFiles(buffer.c_str(), static_cast<int32_t>(buffer.size()), &list),
        c.count);
    if (c.count == 1) {
      EXPECT_EQ(std::basic_string<Ch>(static_cast<const Ch*>(list.strings[0])),
                text<Ch>(*c.parts.begin()));
    }
    Twin<Ch>::DeleteStrList(&list);
  }
}

TYPED_TEST(Selections, GiveBackEverythingWhenAnAllocationFails) {
  using Ch = TypeParam;
  for (const auto& buffer :
       {selection<Ch>({"C:\\d\\a.txt"}), selection<Ch>({"C:\\d", "a.txt", "b.txt", "c.txt"})}) {
    for_each_allocation_failure([&] {
      StrList list{};
      const int32_t result = Twin<Ch>::GetComnSelectFiles(buffer.c_str(), 1000, &list);
      if (result > 0) {
        Twin<Ch>::DeleteStrList(&list);
        return;
      }
      // The array: -1; a string: 0. Either way the list is empty.
      EXPECT_TRUE(result == -1 || result == 0);
      EXPECT_EQ(list.count, 0);
      EXPECT_EQ(list.strings, nullptr);
    });
  }
}

}  // namespace
