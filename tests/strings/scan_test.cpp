// Delimited copying, the copy of what follows a delimiter, the code count
// and search, splitting into string lists, and the trims and the zero
// suppression, in both twins and around double-byte characters.
#include <algorithm>
#include <cstring>
#include <vector>

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
  std::vector<std::tuple<bool, const char*, int32_t, int32_t, const char*, char>> cases = {
      {kCopy, "ab,cd", 100, 0, "ab", ','},      {kCopy, "abc", 2, 0, "ab", ','},
      {kCopy, "abc", -1, 0, "", ','},           {kCopy, "\"a,b\",c", 100, 1, "a,b", ','},
      {kCopy, "\"a,b\",c", 100, 0, "\"a", ','}, {kCopy, "a\"\"b,c", 100, 1, "a\"b,c", ','},
      {kCopy, "abc\"", 100, 1, "abc", ','},     {kCopy, "\"abc", 3, 1, "ab", ','},
      {kCopy, "ab\"cd", 3, 1, "abc", ','},      {kAfter, "ab,cd", 100, 0, "cd", ','},
      {kAfter, "abcdef", 3, 0, "ef", ','},      {kAfter, ",cde", 4, 0, "cde", ','},
      {kAfter, ",cde", 3, 0, "", ','},          {kAfter, ",ab", 0, 0, nullptr, ','},
      {kAfter, "abc", 100, 1, "", ','}};
  if (sizeof(Ch) == 1)
    cases.insert(cases.end(), {{kCopy, "a\x95\\b", 100, 1, "a\x95", '\\'},
                               {kCopy, "ab\x81", 100, 1, "ab\x81", ','},
                               {kCopy, "x\x83\\y", 100, 1, "x\x83\\y", '\x83'},
                               {kCopy, "\"x\"\x83\x5C", 100, 1, "x", '\x83'},
                               {kAfter, "a\x95\\bc", 100, 0, "bc", '\\'}});
  for (const auto& [after, source, limit, quotes, copied, delimiter] : cases) {
    SCOPED_TRACE(::testing::Message() << after << " " << source << " limit " << limit);
    auto dst = sentinel_buffer<Ch>(12);
    const auto src = text<Ch>(source), expected = text<Ch>(copied ? copied : "");
    EXPECT_EQ(
        after ? Twin<Ch>::StringCopyExAfter(dst.data(), src.c_str(), Ch(delimiter), limit, quotes)
              : Twin<Ch>::StringCopyEx(dst.data(), src.c_str(), Ch(delimiter), limit, quotes),
        static_cast<int32_t>(expected.size()));
    // The copy after uses the limit as its capacity: below it a refused rest
    // may leave anything, at and behind it nothing.
    const std::size_t capacity =
        after && limit >= 0 && limit < 12 ? static_cast<std::size_t>(limit) : 0;
    EXPECT_TRUE(copied ? holds(dst, expected, 0, std::max(expected.size() + 1, capacity))
                       : untouched_from(dst, 0));
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

// Splitting: the two shapes of text that the split knows and what the fixed
// step does with the others; the failures of allocation are in the
// reliability tables.
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
  // src, quotes, entries, delimiter (0: the CSV form)
  const std::tuple<const char*, int32_t, const char*, char, Only> cases[] = {
      {"abc", 1, "abc|", ',', kBoth},
      {"a,b,", 1, "a|b||", ',', kBoth},
      {",a", 1, "|a|", ',', kBoth},
      {"a,,b", 1, "a||b|", ',', kBoth},
      {"\"a\",\"b\",\"c\"", 1, "a|b|c|", ',', kBoth},
      {"\"a\",\"b\"", 0, "\"a\"|\"b\"|", ',', kBoth},
      {"\"x\",\"y;z\"", 1, "x|y;z|", 0, kBoth},
      {"\"", 1, "|", ',', kBoth},
      {"a,\"b\",c", 1, "a|b|,|", ',', kBoth},
      {"\"a\",b,c", 1, "a|b||", ',', kBoth},
      {"\"a\",,,,,,", 1, "a|||||||", ',', kBoth},
      {"\x95\\,\x83\\", 1, "\x95\\|\x83\\|", ',', kNarrow},
      {"\x95\\x", 1, "\x95|x|", '\\', kNarrow},
      {"a\x83\\b", 1, "a\x83|", '\x83', kNarrow},
      {"ab,\x81", 1, "ab|\x81|", ',', kNarrow}};
  for (const auto& [source, quotes, entries, delimiter, only] : cases) {
    if (!runs<Ch>(only)) continue;
    StrList list{-1, nullptr};
    const auto src = text<Ch>(source);
    ASSERT_EQ(delimiter ? Twin<Ch>::StringSplit(src.c_str(), Ch(delimiter), &list, quotes)
                        : Twin<Ch>::StringCSV(src.c_str(), &list, quotes),
              1)
        << source;
    EXPECT_EQ(take<Ch>(list), text<Ch>(entries)) << source;
  }
  StrList list{5, reinterpret_cast<void**>(&list)};  // whatever it held before
  EXPECT_EQ(Twin<Ch>::StringSplit(text<Ch>("").c_str(), Ch(','), &list, 1), 0);
  EXPECT_EQ(joined(list.count, list.strings != nullptr), joined(0, 0));
}

KZ_TWIN_SUITE(Trimming);

enum Op { kLeft, kRight, kTrim, kZeros };

template <class Ch>
int32_t run(Op op, Ch* dst, const Ch* src, int32_t size, Ch trim) {
  return op == kLeft    ? Twin<Ch>::StringTrimLeft(dst, src, size, trim)
         : op == kRight ? Twin<Ch>::StringTrimRight(dst, src, size, trim)
         : op == kTrim  ? Twin<Ch>::StringTrim(dst, src, size, trim)
                        : Twin<Ch>::StringZeroSuppress(dst, src, size);
}

// A text of trim elements alone stays whole on the left and keeps one
// element on the right (both intended); zeros alone give the empty text,
// and no sign is looked at. In narrow text ("ソ" is 0x83 0x5C, "表" 0x95
// 0x5C) a lead byte equal to trim is protected by the pair test, but one at
// the end is no pair; 0x81 0x81 is a pair as well; a trail byte equal to
// trim does not shorten its character. The right trim also works in place.
TYPED_TEST(Trimming, DropTrimElementsAndLeadingZeros) {
  using Ch = TypeParam;
  std::vector<std::tuple<Op, const char*, const char*, char>> cases = {
      {kLeft, "  ab ", "ab ", ' '},  {kRight, "  ab ", "  ab", ' '}, {kTrim, "  ab ", "ab", ' '},
      {kLeft, "   ", "   ", ' '},    {kTrim, "   ", " ", ' '},       {kRight, "", "", ' '},
      {kZeros, "00120", "120", ' '}, {kZeros, "000", "", ' '},       {kZeros, "-007", "-007", ' '}};
  if (sizeof(Ch) == 1)
    cases.insert(cases.end(), {{kLeft, "\x83\x5C", "\x83\x5C", '\x83'},
                               {kLeft, "\x81", "\x81", '\x81'},
                               {kRight, "a\x81", "a", '\x81'},
                               {kRight, "a\x81\x81", "a\x81\x81", '\x81'},
                               {kRight, "a\x83\x5C\\\\", "a\x83\x5C", '\\'},
                               {kTrim, "\\\x95\x5C\\", "\x95\x5C", '\\'}});
  for (const auto& [op, src, expected, trim] : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(run(op, dst.data(), text<Ch>(src).c_str(), 8, Ch(trim)),
              static_cast<int32_t>(std::strlen(expected)))
        << op << " '" << src << "'";
    EXPECT_TRUE(holds(dst, text<Ch>(expected), 0, 8)) << op << " '" << src << "'";
  }
  auto buffer = text<Ch>("ab   ");  // in place
  EXPECT_EQ(Twin<Ch>::StringTrimRight(buffer.data(), buffer.c_str(), 6, Ch(' ')), 2);
  EXPECT_EQ(std::basic_string<Ch>(buffer.c_str()), text<Ch>("ab"));
}

}  // namespace
