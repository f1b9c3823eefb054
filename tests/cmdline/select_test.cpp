// Multi-file selections, in both twins: both forms of the buffer, the size
// that ends the walk, the count range of 260 elements, and every allocation
// failing.
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Selections);

// A selection buffer from texts: each one terminated, and one terminator
// more behind the last.
template <class Ch>
std::basic_string<Ch> selection(const std::vector<std::string>& parts) {
  std::basic_string<Ch> out;
  for (const std::string& part : parts) out += text<Ch>(part) + Ch(0);
  return out + Ch(0);
}

// size is compared with the position where a name begins ("C:\d" NUL
// "a.txt" NUL "b.txt" has a.txt at 5 and b.txt at 11). The count looks at
// positions 0 to 259 only, and the walk never stores more names than it
// counted: a directory of 250 elements puts abc's terminator at 254 and
// efgh's at 259. No name taken still leaves the empty array.
TYPED_TEST(Selections, NameTheFilesWithinSizeAndCountRangeOrGiveBackEverything) {
  using Ch = TypeParam;
  const std::string d250(250, 'd');
  const std::tuple<std::vector<std::string>, int32_t, int32_t, std::string> cases[] = {
      {{"C:\\d\\a.txt"}, 1000, 1, "C:\\d\\a.txt|"},
      {{"C:\\d", "a.txt"}, 1000, 1, "C:\\d|"},            // a count of 1 is the single form
      {{"C:\\", "a", "b"}, 1000, 2, "C:\\\\a|C:\\\\b|"},  // one backslash at the join
      {{"C:\\d", "a.txt", "b.txt"}, 5, 2, ""},
      {{"C:\\d", "a.txt", "b.txt"}, 6, 2, "C:\\d\\a.txt|"},
      {{"C:\\d", "a.txt", "b.txt"}, 12, 2, "C:\\d\\a.txt|C:\\d\\b.txt|"},
      {{std::string(259, 'd'), "a", "b"}, 1000, 0, ""},  // no name ends inside the range
      {{d250, "abc", "efgh", "x", "y"}, 1000, 2, d250 + "\\abc|" + d250 + "\\efgh|"},
      {{d250, "abc", "efghi"}, 1000, 1, d250 + "|"},                    // efghi ends at 260
      {{std::string(260, 'p')}, 1000, 1, std::string(260, 'p') + "|"},  // no terminator in range
  };
  for (const auto& [parts, size, count, paths] : cases) {
    const auto buffer = selection<Ch>(parts);
    EXPECT_EQ(Twin<Ch>::GetComnSelectFileCount(buffer.c_str()), count);
    StrList list{};
    const int32_t taken = Twin<Ch>::GetComnSelectFiles(buffer.c_str(), size, &list);
    EXPECT_EQ(taken, list.count);
    EXPECT_TRUE(count == 0 || list.strings != nullptr);
    EXPECT_EQ(take<Ch>(list), text<Ch>(paths)) << paths.size() << " " << size;
  }
  // A null or empty selection: -1, and the list as it was.
  const Ch empty[] = {0, 0};
  void* marker[1];
  for (const Ch* buffer : {static_cast<const Ch*>(nullptr), empty}) {
    StrList list{5, marker};
    const int32_t taken = Twin<Ch>::GetComnSelectFiles(buffer, 100, &list);
    EXPECT_EQ(
        joined(Twin<Ch>::GetComnSelectFileCount(buffer), taken, list.count, list.strings == marker),
        joined(-1, -1, 5, 1));
  }
  // The single form under every allocation failure (the allocation table
  // holds the other): the whole list, or -1 or 0 and an empty list.
  const auto single = selection<Ch>({"C:\\d\\a.txt"});
  for_each_allocation_failure([&] {
    StrList list{};
    const int32_t result = Twin<Ch>::GetComnSelectFiles(single.c_str(), 1000, &list);
    EXPECT_TRUE(result == 1 || (result >= -1 && result <= 0 && list.count == 0 && !list.strings));
    EXPECT_EQ(take<Ch>(list), text<Ch>(result == 1 ? "C:\\d\\a.txt|" : ""));
  });
}

}  // namespace
