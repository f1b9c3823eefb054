// The length copy and the extraction between markers, in both twins.
#include <cstring>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Extracting);

// The copy needs count below size and gives a zero-filled dst. A negative
// count zero-fills the wide dst and leaves the narrow one. The narrow twin
// counts characters, and its zero-filled wide scratch gives the whole of a
// shorter text while the result is still count. Each src fits size in both
// twins: the narrow twin's wide scratch has size units too.
TYPED_TEST(Extracting, LengthCopyNeedsCountBelowSize) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    int32_t count, size, result;
    const char* expected;  // null: dst untouched
    Only only;
  } cases[] = {
      {"abc", 3, 4, 3, "abc", kBoth},
      {"abc", 2, 5, 2, "ab", kBoth},
      {"abc", 3, 3, 0, nullptr, kBoth},
      {"abc", 0, 4, 0, nullptr, kBoth},
      {"ab", -1, 5, 0, "", kWide},
      {"ab", -1, 6, 0, nullptr, kNarrow},
      {"ab", 4, 6, 4, "ab", kNarrow},
      {"\x93\xFA\x96\x7B\x8C\xEA", 2, 7, 2, "\x93\xFA\x96\x7B", kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Twin<Ch>::StringLengthCopy(text<Ch>(c.src).c_str(), dst.data(), c.count, c.size),
              c.result)
        << c.src << " " << c.count << "/" << c.size;
    EXPECT_TRUE(c.expected ? holds(dst, text<Ch>(c.expected), c.size, c.size)
                           : untouched_from(dst, 0))
        << c.src << " " << c.count << "/" << c.size;
  }
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringLengthCopy(static_cast<const Ch*>(nullptr), dst.data(), 1, 4), 0);
  EXPECT_TRUE(untouched_from(dst, 0));
  EXPECT_EQ(Twin<Ch>::StringLengthCopy(text<Ch>("ab").c_str(), static_cast<Ch*>(nullptr), 1, 4), 0);
}

TEST(LengthCopy, WideCopiesThroughTerminators) {
  const wchar src[] = {'a', 0, 'b', 'c', 0};
  auto dst = sentinel_buffer<wchar>(6);
  EXPECT_EQ(KZ_StringLengthCopyW(src, dst.data(), 4, 5), 4);
  EXPECT_EQ(wstring(dst.data(), 5), wstring(src, 5));
  EXPECT_TRUE(untouched_from(dst, 5));
}

// No nesting: the extract ends at the first close behind open. An empty
// marker, or markers of two widths, are never found; markers of more than
// one element are compared at the width of open, and the extract begins one
// element behind open. A wide extract of size elements or more is not
// copied. The narrow twin counts characters: "｢日本｣" with the single-byte
// brackets 0xA2 and 0xA3, and "表" whose trail byte 0x5C is no backslash
// as a character.
TYPED_TEST(Extracting, GetQuotedTakesWhatStandsBetweenTheMarkers) {
  using Ch = TypeParam;
  struct Case {
    const char *src, *open, *close;
    int32_t size;
    const char* expected;
    int32_t result = -1;  // -1: the length of expected
    Only only = kBoth;
  } cases[] = {
      {"((a))", "(", ")", 8, "(a"},
      {"a()c", "(", ")", 8, ""},
      {"a(bc", "(", ")", 8, ""},
      {"abc)", "(", ")", 8, ""},
      {"a(b)", "", ")", 8, ""},
      {"a<<b)c", "<<", ")", 8, ""},
      {"a<<b>>c", "<<", ">>", 8, "<b"},
      {"(abc)", "(", ")", 5, "abc", -1, kWide},
      {"(abc)", "(", ")", 4, "abc", -1, kWide},
      {"(abc)", "(", ")", 3, "", -1, kWide},
      {"\xA2\x93\xFA\x96\x7B\xA3", "\xA2", "\xA3", 8, "\x93\xFA\x96\x7B", 2, kNarrow},
      {"(\x95\\)\\", "(", "\\", 8, "\x95\\)", 2, kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto out = sentinel_buffer<Ch>(9);
    EXPECT_EQ(Twin<Ch>::StringGetQuoted(text<Ch>(c.src).c_str(), out.data(), c.size,
                                        text<Ch>(c.open).c_str(), text<Ch>(c.close).c_str()),
              c.result < 0 ? static_cast<int32_t>(std::strlen(c.expected)) : c.result)
        << c.src << " " << c.open << c.close << " size " << c.size;
    EXPECT_TRUE(holds(out, text<Ch>(c.expected), c.size, c.size)) << c.src << " size " << c.size;
  }
  // Only missing arguments or no size leave out alone.
  const auto src = text<Ch>("(a)"), open = text<Ch>("(");
  auto out = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringGetQuoted(src.c_str(), out.data(), 0, open.c_str(), open.c_str()), 0);
  EXPECT_EQ(Twin<Ch>::StringGetQuoted(static_cast<const Ch*>(nullptr), out.data(), 4, open.c_str(),
                                      open.c_str()),
            0);
  EXPECT_EQ(Twin<Ch>::StringGetQuoted(src.c_str(), out.data(), 4, open.c_str(),
                                      static_cast<const Ch*>(nullptr)),
            0);
  EXPECT_TRUE(untouched_from(out, 0));
}

// The narrow twins convert into a wide scratch of size units. A text whose
// wide form does not fit fails that conversion, and whatever it left is
// read within the scratch.
TEST(NarrowScratch, TextTooLongForSizeStaysInsideTheScratch) {
  auto dst = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringLengthCopyA("abcdef", dst.data(), 2, 4), 2);  // needs 7 units
  EXPECT_LE(std::strlen(dst.data()), 2u);
  EXPECT_TRUE(untouched_from(dst, 4));
  dst = sentinel_buffer<char>(8);
  EXPECT_LE(KZ_StringGetQuotedA("(a)cdefg", dst.data(), 4, "(", ")"), 1);  // needs 9 units
  EXPECT_TRUE(untouched_from(dst, 4));
  dst = sentinel_buffer<char>(9);
  EXPECT_LE(KZ_StringPasswordA(0, "001t001t", dst.data(), 8, 0), 2);  // needs 9 units
  EXPECT_TRUE(untouched_from(dst, 8));
}

// Without its scratch the length copy leaves dst alone, the extract gives
// 0 and a zero-filled out.
TEST(NarrowScratch, AllocationFailureLeavesAWholeResult) {
  for_each_allocation_failure([] {
    auto dst = sentinel_buffer<char>(9);
    const int32_t copied = KZ_StringLengthCopyA("abc", dst.data(), 3, 8);
    EXPECT_TRUE(copied == 0 || copied == 3) << copied;
    EXPECT_TRUE(copied == 0 ? untouched_from(dst, 0) : holds(dst, "abc", 8, 8));
    dst = sentinel_buffer<char>(9);
    const int32_t extracted = KZ_StringGetQuotedA("a(bc)", dst.data(), 8, "(", ")");
    EXPECT_TRUE(extracted == 0 || extracted == 2) << extracted;
    EXPECT_TRUE(holds(dst, extracted == 0 ? "" : "bc", 8, 8));
  });
}

}  // namespace
