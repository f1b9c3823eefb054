// The length copy and the extraction between markers, in both twins.
#include <cstring>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Extracting : public ::testing::Test {};
TYPED_TEST_SUITE(Extracting, ElementTypes);

// The text written, zero-filled up to size and nothing at or behind it.
template <class Ch>
void expect_zero_filled(const std::vector<Ch>& dst, const std::string& expected, int32_t size) {
  const auto wanted = text<Ch>(expected);
  EXPECT_EQ(str(dst), wanted);
  for (auto i = wanted.size(); i < static_cast<std::size_t>(size); ++i)
    EXPECT_EQ(dst[i], Ch{0}) << i;
  EXPECT_TRUE(untouched_from(dst, static_cast<std::size_t>(size < 0 ? 0 : size)));
}

TYPED_TEST(Extracting, LengthCopyNeedsCountBelowSize) {
  using Ch = TypeParam;
  // Each src fits size in both twins: the narrow twin's wide scratch has
  // size units too.
  struct Case {
    const char* src;
    int32_t count, size, result;
    const char* expected;  // null: dst untouched
    Only only = Only::kBoth;
  } cases[] = {
      {"abc", 3, 4, 3, "abc"},
      {"abc", 3, 5, 3, "abc"},
      {"abc", 2, 4, 2, "ab"},
      {"a", 1, 2, 1, "a"},
      {"abc", 3, 3, 0, nullptr},
      {"abc", 3, 2, 0, nullptr},
      {"abc", 0, 4, 0, nullptr},
      {"abc", 3, 0, 0, nullptr},
      // A negative count zero-fills the wide dst and leaves the narrow one.
      {"ab", -1, 5, 0, "", Only::kWide},
      {"ab", -1, 6, 0, nullptr, Only::kNarrow},
      // The narrow twin counts characters. Its zero-filled wide scratch
      // gives the whole of a shorter text; the result is still count.
      {"ab", 4, 6, 4, "ab", Only::kNarrow},
      {"\x93\xFA\x96\x7B\x8C\xEA", 2, 7, 2, "\x93\xFA\x96\x7B", Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Twin<Ch>::StringLengthCopy(text<Ch>(c.src).c_str(), dst.data(), c.count, c.size),
              c.result)
        << c.src << " " << c.count << "/" << c.size;
    if (c.expected) {
      expect_zero_filled(dst, c.expected, c.size);
    } else {
      EXPECT_TRUE(untouched_from(dst, 0)) << c.count << "/" << c.size;
    }
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

TYPED_TEST(Extracting, GetQuotedTakesWhatStandsBetweenTheMarkers) {
  using Ch = TypeParam;
  struct Case {
    const char *src, *open, *close;
    int32_t size;
    const char* expected;
    int32_t result = -1;  // -1: the length of expected
    Only only = Only::kBoth;
  } cases[] = {
      {"a(b)c", "(", ")", 8, "b"},
      {"x\"yz\"w\"", "\"", "\"", 8, "yz"},
      {"((a))", "(", ")", 8, "(a"},  // no nesting: the first close behind open
      {"a()c", "(", ")", 8, ""},
      {"a(bc", "(", ")", 8, ""},
      {"abc)", "(", ")", 8, ""},
      {"a(b)", "", ")", 8, ""},
      {"a(b)", "(", "", 8, ""},
      // Markers of more than one element: both searches compare at the width
      // of open, and the extract begins one element behind open.
      {"a<<b>>c", "<<", ">>", 8, "<b"},
      {"a<<b)c", "<<", ")", 8, ""},
      // A wide extract of size elements or more is not copied.
      {"(abc)", "(", ")", 5, "abc", -1, Only::kWide},
      {"(abc)", "(", ")", 4, "abc", -1, Only::kWide},
      {"(abc)", "(", ")", 3, "", -1, Only::kWide},
      {"(abc)", "(", ")", 1, "", -1, Only::kWide},
      // The narrow twin counts characters: "｢日本｣" with the single-byte
      // brackets 0xA2 and 0xA3, and "表" whose trail byte 0x5C is no
      // backslash as a character.
      {"\xA2\x93\xFA\x96\x7B\xA3", "\xA2", "\xA3", 8, "\x93\xFA\x96\x7B", 2, Only::kNarrow},
      {"(\x95\x5C)\\", "(", "\\", 8, "\x95\x5C)", 2, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto out = sentinel_buffer<Ch>(9);
    EXPECT_EQ(Twin<Ch>::StringGetQuoted(text<Ch>(c.src).c_str(), out.data(), c.size,
                                        text<Ch>(c.open).c_str(), text<Ch>(c.close).c_str()),
              c.result < 0 ? static_cast<int32_t>(std::strlen(c.expected)) : c.result)
        << c.src << " " << c.open << c.close << " size " << c.size;
    expect_zero_filled(out, c.expected, c.size);
  }
}

TYPED_TEST(Extracting, GetQuotedLeavesOutAloneOnlyForMissingArguments) {
  using Ch = TypeParam;
  const auto src = text<Ch>("(a)"), open = text<Ch>("("), close = text<Ch>(")");
  auto out = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringGetQuoted(src.c_str(), out.data(), 0, open.c_str(), close.c_str()), 0);
  EXPECT_EQ(Twin<Ch>::StringGetQuoted(static_cast<const Ch*>(nullptr), out.data(), 4, open.c_str(),
                                      close.c_str()),
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
    EXPECT_TRUE(copied == 0 ? dst[0] == 0x7B : copied == 3 && str(dst) == "abc");
    dst = sentinel_buffer<char>(9);
    const int32_t extracted = KZ_StringGetQuotedA("a(bc)", dst.data(), 8, "(", ")");
    if (extracted == 0) {
      expect_zero_filled(dst, "", 8);
    } else {
      EXPECT_EQ(extracted, 2);
      EXPECT_EQ(str(dst), "bc");
    }
  });
}

}  // namespace
