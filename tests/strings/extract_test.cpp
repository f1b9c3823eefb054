// The length copy and the extraction between markers, in both twins.
#include <cstring>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Extracting);

// The copy needs count below size and gives a zero-filled dst; the wide
// twin copies through terminators. A negative count zero-fills the wide dst
// and leaves the narrow one. The narrow twin counts characters, and its
// zero-filled wide scratch gives the whole of a shorter text while the
// result is still count. Each src fits size in both twins: the narrow
// twin's wide scratch has size units too. Missing arguments leave dst.
TYPED_TEST(Extracting, LengthCopyNeedsCountBelowSize) {
  using Ch = TypeParam;
  const struct {
    std::string src;
    int32_t count, size, result;
    std::string expected;  // "~": dst untouched
    Only only = kBoth;
  } cases[] = {{"abc", 3, 4, 3, "abc"},
               {"abc", 2, 5, 2, "ab"},
               {"abc", 3, 3, 0, "~"},
               {"abc", 0, 4, 0, "~"},
               {"ab", -1, 5, 0, "", kWide},
               {"ab", -1, 6, 0, "~", kNarrow},
               {"ab", 4, 6, 4, "ab", kNarrow},
               {"\x93\xFA\x96\x7B\x8C\xEA", 2, 7, 2, "\x93\xFA\x96\x7B", kNarrow},
               {std::string("a\0bc", 5), 4, 5, 4, std::string("a\0bc", 4), kWide}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    const auto src = text<Ch>(c.src);
    EXPECT_EQ(Twin<Ch>::StringLengthCopy(src.c_str(), dst.data(), c.count, c.size), c.result)
        << c.src << " " << c.count << "/" << c.size;
    EXPECT_TRUE(c.expected != "~" ? holds(dst, text<Ch>(c.expected), c.size, c.size)
                                  : untouched_from(dst, 0))
        << c.src << " " << c.count << "/" << c.size;
  }
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringLengthCopy(static_cast<const Ch*>(nullptr), dst.data(), 1, 4), 0);
  EXPECT_EQ(Twin<Ch>::StringLengthCopy(text<Ch>("ab").c_str(), static_cast<Ch*>(nullptr), 1, 4), 0);
  EXPECT_TRUE(untouched_from(dst, 0));
}

// No nesting: the extract ends at the first close behind open. An empty
// marker, or markers of two widths, are never found; markers of more than
// one element are compared at the width of open, and the extract begins one
// element behind open. A wide extract of size elements or more is not
// copied. The narrow twin counts characters: "｢日本｣" with the single-byte
// brackets 0xA2 and 0xA3, and "表" whose trail byte 0x5C is no backslash
// as a character. Only missing arguments or no size leave out alone.
TYPED_TEST(Extracting, GetQuotedTakesWhatStandsBetweenTheMarkers) {
  using Ch = TypeParam;
  const struct {
    const char *src, *open, *close;
    int32_t size;
    const char* expected;  // null: out untouched
    int32_t result = -1;   // -1: the length of expected
    Only only = kBoth;
  } cases[] = {{"((a))", "(", ")", 8, "(a"},
               {"a()c", "(", ")", 8, ""},
               {"a(bc", "(", ")", 8, ""},
               {"abc)", "(", ")", 8, ""},
               {"a(b)", "", ")", 8, ""},
               {"a<<b)c", "<<", ")", 8, ""},
               {"a<<b>>c", "<<", ">>", 8, "<b"},
               {"(abc)", "(", ")", 4, "abc", -1, kWide},
               {"(abc)", "(", ")", 3, "", -1, kWide},
               {"\xA2\x93\xFA\x96\x7B\xA3", "\xA2", "\xA3", 8, "\x93\xFA\x96\x7B", 2, kNarrow},
               {"(\x95\\)\\", "(", "\\", 8, "\x95\\)", 2, kNarrow},
               {"(a)", "(", ")", 0, nullptr, 0},
               {nullptr, "(", ")", 4, nullptr, 0},
               {"(a)", "(", nullptr, 4, nullptr, 0}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto out = sentinel_buffer<Ch>(9);
    const auto src = text<Ch>(c.src ? c.src : ""), close = text<Ch>(c.close ? c.close : "");
    EXPECT_EQ(
        Twin<Ch>::StringGetQuoted(c.src ? src.c_str() : nullptr, out.data(), c.size,
                                  text<Ch>(c.open).c_str(), c.close ? close.c_str() : nullptr),
        c.result < 0 ? static_cast<int32_t>(std::strlen(c.expected)) : c.result)
        << &c - cases;
    EXPECT_TRUE(c.expected ? holds(out, text<Ch>(c.expected), c.size, c.size)
                           : untouched_from(out, 0))
        << &c - cases;
  }
}

// The narrow twins convert into a wide scratch of size units. A text whose
// wide form does not fit fails that conversion, and whatever it left is
// read within the scratch.
TEST(NarrowScratch, TextTooLongForSizeStaysInsideTheScratch) {
  auto dst = sentinel_buffer<char>(9);
  EXPECT_EQ(KZ_StringLengthCopyA("abcdef", dst.data(), 2, 4), 2);  // needs 7 units
  EXPECT_LE(std::strlen(dst.data()), 2u);
  EXPECT_TRUE(untouched_from(dst, 4));
  dst = sentinel_buffer<char>(9);
  EXPECT_LE(KZ_StringGetQuotedA("(a)cdefg", dst.data(), 4, "(", ")"), 1);  // needs 9 units
  EXPECT_TRUE(untouched_from(dst, 4));
  dst = sentinel_buffer<char>(9);
  EXPECT_LE(KZ_StringPasswordA(0, "001t001t", dst.data(), 8, 0), 2);  // needs 9 units
  EXPECT_TRUE(untouched_from(dst, 8));
}

// Without its scratch the length copy leaves dst alone, the extract gives
// 0 and a zero-filled out.
TEST(NarrowScratch, AllocationFailureLeavesAWholeResult) {
  expect_whole_or("0 " + shown(sentinel_buffer<char>(9)), [] {
    auto dst = sentinel_buffer<char>(9);
    const int32_t copied = KZ_StringLengthCopyA("abc", dst.data(), 3, 8);
    EXPECT_TRUE(copied ? holds(dst, "abc", 8, 8) : untouched_from(dst, 0));
    return std::to_string(copied) + " " + shown(dst);
  });
  expect_whole_or("0 ", [] {
    auto dst = sentinel_buffer<char>(9);
    const int32_t extracted = KZ_StringGetQuotedA("a(bc)", dst.data(), 8, "(", ")");
    EXPECT_TRUE(holds(dst, extracted ? "bc" : "", 8, 8));
    return std::to_string(extracted) + " " + shown(dst);
  });
}

}  // namespace
