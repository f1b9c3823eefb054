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
  // src, count, size, result, expected ("~": dst untouched)
  const std::tuple<std::string, int32_t, int32_t, int32_t, std::string, Only> cases[] = {
      {"abc", 3, 4, 3, "abc", kBoth},
      {"abc", 2, 5, 2, "ab", kBoth},
      {"abc", 3, 3, 0, "~", kBoth},
      {"abc", 0, 4, 0, "~", kBoth},
      {"ab", -1, 5, 0, "", kWide},
      {"ab", -1, 6, 0, "~", kNarrow},
      {"ab", 4, 6, 4, "ab", kNarrow},
      {"\x93\xFA\x96\x7B\x8C\xEA", 2, 7, 2, "\x93\xFA\x96\x7B", kNarrow},
      {std::string("a\0bc", 5), 4, 5, 4, std::string("a\0bc", 4), kWide}};
  for (const auto& [source, count, size, result, expected, only] : cases) {
    if (!runs<Ch>(only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Twin<Ch>::StringLengthCopy(text<Ch>(source).c_str(), dst.data(), count, size), result)
        << source << " " << count << "/" << size;
    EXPECT_TRUE(expected != "~" ? holds(dst, text<Ch>(expected), size, size)
                                : untouched_from(dst, 0))
        << source << " " << count << "/" << size;
  }
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::StringLengthCopy(static_cast<const Ch*>(nullptr), dst.data(), 1, 4) +
                Twin<Ch>::StringLengthCopy(text<Ch>("ab").c_str(), static_cast<Ch*>(nullptr), 1, 4),
            0);
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
  // src, open, close, size, expected (null: out untouched), result (-1: the length of expected)
  const std::tuple<const char*, const char*, const char*, int32_t, const char*, int32_t, Only>
      cases[] = {{"((a))", "(", ")", 8, "(a", -1, kBoth},
                 {"a()c", "(", ")", 8, "", -1, kBoth},
                 {"a(bc", "(", ")", 8, "", -1, kBoth},
                 {"abc)", "(", ")", 8, "", -1, kBoth},
                 {"a(b)", "", ")", 8, "", -1, kBoth},
                 {"a<<b)c", "<<", ")", 8, "", -1, kBoth},
                 {"a<<b>>c", "<<", ">>", 8, "<b", -1, kBoth},
                 {"(abc)", "(", ")", 4, "abc", -1, kWide},
                 {"(abc)", "(", ")", 3, "", -1, kWide},
                 {"\xA2\x93\xFA\x96\x7B\xA3", "\xA2", "\xA3", 8, "\x93\xFA\x96\x7B", 2, kNarrow},
                 {"(\x95\\)\\", "(", "\\", 8, "\x95\\)", 2, kNarrow},
                 {"(a)", "(", ")", 0, nullptr, 0, kBoth},
                 {nullptr, "(", ")", 4, nullptr, 0, kBoth},
                 {"(a)", "(", nullptr, 4, nullptr, 0, kBoth}};
  for (const auto& [source, open, closing, size, expected, result, only] : cases) {
    if (!runs<Ch>(only)) continue;
    auto out = sentinel_buffer<Ch>(9);
    const auto src = text<Ch>(source ? source : ""), close = text<Ch>(closing ? closing : "");
    EXPECT_EQ(Twin<Ch>::StringGetQuoted(source ? src.c_str() : nullptr, out.data(), size,
                                        text<Ch>(open).c_str(), closing ? close.c_str() : nullptr),
              result < 0 ? static_cast<int32_t>(std::strlen(expected)) : result)
        << (source ? source : "-") << " " << size;
    EXPECT_TRUE(expected ? holds(out, text<Ch>(expected), size, size) : untouched_from(out, 0))
        << (source ? source : "-") << " " << size;
  }
}

}  // namespace
