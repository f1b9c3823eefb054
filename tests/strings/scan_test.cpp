// Delimited copying, the copy of what follows a delimiter, and the code
// count and search, in both twins and around double-byte characters.
#include <algorithm>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Scanning);

constexpr bool kCopy = false;
constexpr bool kAfter = true;

// The copy's limit counts elements written before the terminator; a quote
// takes a position without giving an element, and a quote never closed runs
// on to the limit. A doubled quote gives one literal quote and leaves the
// state flipped once, so the comma behind it is copied too. The copy after
// passes over the element at which the scan stopped, delimiter or limit;
// its limit is its capacity too ("cde" needs 4), and without a delimiter
// below the limit nothing is read behind the terminator.
// Narrow scans step by byte ("表" is 0x95 0x5C, "ソ" 0x83 0x5C): a trail
// byte comes up as a position of its own and may end the copy inside a
// character; a lead byte at the end is no pair; a delimiter with the value
// of a lead byte is protected in lead position, but not right behind a
// consumed quote, which is compared without a pair test.
TYPED_TEST(Scanning, CopyStopsAtTheDelimiterOutsideQuotesAndAfterTakesTheRest) {
  using Ch = TypeParam;
  // after, src, limit, quotes, expected (null: dst untouched), delimiter
  const std::tuple<bool, const char*, int32_t, int32_t, const char*, char, Only> cases[] = {
      {kCopy, "ab,cd", 100, 0, "ab", ',', kBoth},
      {kCopy, "abc", 2, 0, "ab", ',', kBoth},
      {kCopy, "abc", -1, 0, "", ',', kBoth},
      {kCopy, "\"a,b\",c", 100, 1, "a,b", ',', kBoth},
      {kCopy, "\"a,b\",c", 100, 0, "\"a", ',', kBoth},
      {kCopy, "a\"\"b,c", 100, 1, "a\"b,c", ',', kBoth},
      {kCopy, "abc\"", 100, 1, "abc", ',', kBoth},
      {kCopy, "\"abc", 3, 1, "ab", ',', kBoth},
      {kCopy, "ab\"cd", 3, 1, "abc", ',', kBoth},
      {kAfter, "ab,cd", 100, 0, "cd", ',', kBoth},
      {kAfter, "abcdef", 3, 0, "ef", ',', kBoth},
      {kAfter, ",cde", 4, 0, "cde", ',', kBoth},
      {kAfter, ",cde", 3, 0, "", ',', kBoth},
      {kAfter, ",ab", 0, 0, nullptr, ',', kBoth},
      {kAfter, "abc", 100, 1, "", ',', kBoth},
      {kCopy, "a\x95\\b", 100, 1, "a\x95", '\\', kNarrow},
      {kCopy, "ab\x81", 100, 1, "ab\x81", ',', kNarrow},
      {kCopy, "x\x83\\y", 100, 1, "x\x83\\y", '\x83', kNarrow},
      {kCopy, "\"x\"\x83\x5C", 100, 1, "x", '\x83', kNarrow},
      {kAfter, "a\x95\\bc", 100, 0, "bc", '\\', kNarrow}};
  for (const auto& [after, source, limit, quotes, copied, delimiter, only] : cases) {
    if (!runs<Ch>(only)) continue;
    auto dst = sentinel_buffer<Ch>(12);
    const auto src = text<Ch>(source), expected = text<Ch>(copied ? copied : "");
    EXPECT_EQ(
        after ? Twin<Ch>::StringCopyExAfter(dst.data(), src.c_str(), Ch(delimiter), limit, quotes)
              : Twin<Ch>::StringCopyEx(dst.data(), src.c_str(), Ch(delimiter), limit, quotes),
        static_cast<int32_t>(expected.size()))
        << after << " " << source << " limit " << limit;
    // The copy after uses the limit as its capacity: below it a refused rest
    // may leave anything, at and behind it nothing.
    const std::size_t capacity =
        after && limit >= 0 && limit < 12 ? static_cast<std::size_t>(limit) : 0;
    EXPECT_TRUE(copied ? holds(dst, expected, 0, std::max(expected.size() + 1, capacity))
                       : untouched_from(dst, 0))
        << after << " " << source << " limit " << limit;
  }
}

// Quotes mean nothing to the count, and a code of 0 is never found. The
// narrow count skips lead positions ("表" then a backslash counts two) while
// the length is a plain search that finds a lead byte too.
TYPED_TEST(Scanning, CodeCountAndLength) {
  using Ch = TypeParam;
  const std::tuple<const char*, char, int32_t, int32_t, Only> cases[] = {
      {"abc", ',', 0, 3, kBoth},           {"a,b,,c", ',', 3, 1, kBoth},
      {"\"a,b\",c", ',', 2, 2, kBoth},     {"abc", '\0', 0, 3, kBoth},
      {"\x95\x5C\\", '\\', 2, 1, kNarrow}, {"a\x83\x5C", '\x83', 0, 1, kNarrow},
      {"a\x81", '\x81', 1, 1, kNarrow}};
  for (const auto& [source, byte, count, length, only] : cases) {
    if (!runs<Ch>(only)) continue;
    const auto src = text<Ch>(source);
    const Ch code = static_cast<Ch>(static_cast<unsigned char>(byte));
    EXPECT_EQ(Twin<Ch>::GetCodeCount(src.c_str(), code), count) << source;
    EXPECT_EQ(Twin<Ch>::GetCodeLength(src.c_str(), code), length) << source;
  }
}

}  // namespace
