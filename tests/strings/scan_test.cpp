// Delimited copying, the copy of what follows a delimiter, and the code
// count and search, in both twins and around double-byte characters.
#include <algorithm>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Scanning : public ::testing::Test {};
TYPED_TEST_SUITE(Scanning, ElementTypes);

constexpr int32_t kOff = 0;
constexpr int32_t kOn = 1;
constexpr bool kCopy = false;
constexpr bool kAfter = true;

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C, "日" 0x93 0xFA, "本" 0x96 0x7B.
TYPED_TEST(Scanning, CopyStopsAtTheDelimiterOutsideQuotesAndAfterTakesTheRest) {
  using Ch = TypeParam;
  struct Case {
    bool after;
    const char* src;
    int32_t limit, quotes;
    const char* expected;  // null: dst untouched
    char delimiter = ',';
    Only only = Only::kBoth;
  } cases[] = {
      {kCopy, "ab,cd", 100, kOff, "ab"},
      {kCopy, ",cd", 100, kOff, ""},
      {kCopy, "abc", 100, kOff, "abc"},
      // The limit counts elements written before the terminator.
      {kCopy, "abc", 2, kOff, "ab"},
      {kCopy, "abcdef", 5, kOn, "abcde"},
      {kCopy, "abc", 1, kOn, "a"},
      {kCopy, "abc", 0, kOff, ""},
      {kCopy, "abc", -1, kOff, ""},
      {kCopy, "", 100, kOn, ""},
      {kCopy, "\"a,b\",c", 100, kOn, "a,b"},
      {kCopy, "\"a,b\",c", 100, kOff, "\"a"},
      // A doubled quote gives one literal quote and leaves the state flipped
      // once, so the comma behind it is copied as well.
      {kCopy, "a\"\"b,c", 100, kOn, "a\"b,c"},
      {kCopy, "\"\"", 100, kOn, "\""},
      {kCopy, "abc\"", 100, kOn, "abc"},
      // A quote that is never closed runs on to the limit; the quote takes a
      // position without giving an element.
      {kCopy, "\"abc", 3, kOn, "ab"},
      // A quote at position limit - 1 still lets the element at limit through.
      {kCopy, "ab\"cd", 3, kOn, "abc"},
      {kAfter, "ab,cd", 100, kOff, "cd"},
      {kAfter, "abc,", 100, kOff, ""},
      {kAfter, ",", 100, kOff, ""},
      // The limit ends the scan and the element there is passed over as if
      // it were the delimiter.
      {kAfter, "abcdef", 3, kOff, "ef"},
      {kAfter, "\"a,b\",c", 100, kOn, "c"},
      {kAfter, "\"a,b\",c", 100, kOff, "b\",c"},
      // The limit is the capacity too: the rest "cde" needs 4 elements.
      {kAfter, ",cde", 5, kOff, "cde"},
      {kAfter, ",cde", 4, kOff, "cde"},
      {kAfter, ",cde", 3, kOff, ""},
      {kAfter, ",cde", 1, kOff, ""},
      {kAfter, ",ab", 0, kOff, nullptr},
      {kAfter, ",ab", -1, kOff, nullptr},
      // No delimiter below the limit: nothing stands behind the terminator,
      // so nothing is read there.
      {kAfter, "abc", 100, kOn, ""},
      {kAfter, "", 100, kOn, ""},
      {kAfter, "\"a,b", 100, kOn, ""},
      // Narrow scans step by byte: a trail byte comes up as a position of
      // its own and may end the copy inside a character.
      {kCopy,
       "a\x95\x5C"
       "b",
       100, kOn, "a\x95", '\\', Only::kNarrow},
      {kCopy, "\x83\x5C\\x", 100, kOn, "\x83", '\\', Only::kNarrow},
      {kCopy, "\x93\xFA\x96\x7B{x", 100, kOn, "\x93\xFA\x96", '{', Only::kNarrow},
      // No trail byte is a comma: the character passes whole.
      {kCopy, "a\x95\x5C,b", 100, kOn, "a\x95\x5C", ',', Only::kNarrow},
      // A lead byte at the end is no pair and is compared and copied.
      {kCopy, "ab\x81", 100, kOn, "ab\x81", ',', Only::kNarrow},
      // A delimiter with the value of a lead byte is protected in lead
      // position, but not right behind a consumed quote, which is compared
      // without a pair test.
      {kCopy,
       "x\x83\x5C"
       "y",
       100, kOn,
       "x\x83\x5C"
       "y",
       '\x83', Only::kNarrow},
      {kCopy, "\"x\"\x83\x5C", 100, kOn, "x", '\x83', Only::kNarrow},
      {kAfter,
       "a\x95\x5C"
       "bc",
       100, kOff, "bc", '\\', Only::kNarrow},
      {kAfter, "\x93\xFA\x96\x7B{x", 100, kOff, "{x", '{', Only::kNarrow},
      {kAfter, "\x95\x5C,d", 100, kOff, "d", ',', Only::kNarrow},
      {kAfter, "ab\x81", 100, kOff, "", ',', Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(12);
    const auto src = text<Ch>(c.src);
    const auto expected = text<Ch>(c.expected ? c.expected : "");
    const int32_t got = c.after ? Twin<Ch>::StringCopyExAfter(dst.data(), src.c_str(),
                                                              Ch(c.delimiter), c.limit, c.quotes)
                                : Twin<Ch>::StringCopyEx(dst.data(), src.c_str(), Ch(c.delimiter),
                                                         c.limit, c.quotes);
    const auto where = ::testing::Message()
                       << (c.after ? "after " : "copy ") << c.src << " limit " << c.limit;
    EXPECT_EQ(got, static_cast<int32_t>(expected.size())) << where;
    if (c.expected) {
      EXPECT_EQ(str(dst), expected) << where;
    }
    // The copy after uses the limit as its capacity: below it a refused rest
    // may leave anything, at and behind it nothing.
    const std::size_t capacity =
        c.after && c.limit >= 0 && c.limit < 12 ? static_cast<std::size_t>(c.limit) : 0;
    EXPECT_TRUE(untouched_from(dst, c.expected ? std::max(expected.size() + 1, capacity) : 0))
        << where;
  }
}

TYPED_TEST(Scanning, CodeCountAndLength) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    char code;
    int32_t count, length;
    Only only = Only::kBoth;
  } cases[] = {
      {"", ',', 0, 0},
      {"abc", ',', 0, 3},
      {"ab,c", ',', 1, 2},
      {"a,b,,c", ',', 3, 1},
      {",", ',', 1, 0},
      // Quotes mean nothing to the count: the comma inside counts too.
      {"\"a,b\",c", ',', 2, 2},
      // A code of 0 is never found.
      {"abc", '\0', 0, 3},
      // The narrow count skips lead positions while the length is a plain
      // search.
      {"\x95\x5C\\", '\\', 2, 1, Only::kNarrow},        // the trail byte and the backslash
      {"\x93\xFA\x96\x7B{", '{', 2, 3, Only::kNarrow},  // 0xFA 0x96 is a pair as well
      {"a\x83\x5C", '\x83', 0, 1, Only::kNarrow},       // a lead byte is not counted, but found
      {"a\x81", '\x81', 1, 1, Only::kNarrow},           // a lead byte at the end is no pair
      {"\x95\x5C,", ',', 1, 2, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto src = text<Ch>(c.src);
    const Ch code = static_cast<Ch>(static_cast<unsigned char>(c.code));
    EXPECT_EQ(Twin<Ch>::GetCodeCount(src.c_str(), code), c.count) << c.src;
    EXPECT_EQ(Twin<Ch>::GetCodeLength(src.c_str(), code), c.length) << c.src;
  }
}

}  // namespace
