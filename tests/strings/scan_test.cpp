// Delimited copying, the copy of what follows a delimiter, and the code
// count and search, in both twins and around double-byte characters.
#include "strings/api.h"

namespace {

using namespace kz::test;

template <class Ch>
class Scanning : public ::testing::Test {};
TYPED_TEST_SUITE(Scanning, ElementTypes);

constexpr int32_t kOff = 0;
constexpr int32_t kOn = 1;

TYPED_TEST(Scanning, CopyStopsAtTheDelimiterOutsideQuotes) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    int32_t limit, quotes;
    const char* expected;
  } cases[] = {
      {"ab,cd", 100, kOff, "ab"},
      {",cd", 100, kOff, ""},
      {"abc", 100, kOff, "abc"},
      {"abc", 2, kOff, "ab"},
      {"abc", 0, kOff, ""},
      {"abc", -1, kOff, ""},
      {"", 100, kOn, ""},
      {"\"a,b\",c", 100, kOn, "a,b"},
      {"\"a,b\",c", 100, kOff, "\"a"},
      // A doubled quote gives one literal quote and leaves the state flipped
      // once, so the comma behind it is copied as well.
      {"a\"\"b,c", 100, kOn, "a\"b,c"},
      {"\"\"", 100, kOn, "\""},
      {"abc\"", 100, kOn, "abc"},
      // A quote that is never closed runs on to the limit; the quote takes a
      // position without giving an element.
      {"\"abc", 3, kOn, "ab"},
      // A quote at position limit - 1 still lets the element at limit through.
      {"ab\"cd", 3, kOn, "abc"},
  };
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    const auto src = text<Ch>(c.src);
    const auto expected = text<Ch>(c.expected);
    const int32_t got =
        Strings<Ch>::StringCopyEx(dst.data(), src.c_str(), Ch(','), c.limit, c.quotes);
    EXPECT_EQ(got, static_cast<int32_t>(expected.size())) << c.src << " limit " << c.limit;
    EXPECT_EQ(std::basic_string<Ch>(dst.data()), expected) << c.src << " limit " << c.limit;
    EXPECT_EQ(dst[expected.size() + 1], Ch{0x7B}) << "wrote behind the terminator: " << c.src;
  }
}

TYPED_TEST(Scanning, CopyWritesAtMostLimitElementsAndTheTerminator) {
  using Ch = TypeParam;
  const auto src = text<Ch>("abcdef");
  for (int32_t limit : {0, 1, 2, 5}) {
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Strings<Ch>::StringCopyEx(dst.data(), src.c_str(), Ch(','), limit, kOn), limit);
    EXPECT_EQ(dst[static_cast<std::size_t>(limit)], Ch{0});
    EXPECT_EQ(dst[static_cast<std::size_t>(limit) + 1], Ch{0x7B}) << limit;
  }
}

TYPED_TEST(Scanning, CopyAfterTakesWhatFollowsTheStop) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    int32_t limit, quotes;
    const char* expected;
  } cases[] = {
      {"ab,cd", 100, kOff, "cd"},
      {"abc,", 100, kOff, ""},
      {",", 100, kOff, ""},
      // The limit ends the scan and the element there is passed over as if
      // it were the delimiter.
      {"abcdef", 3, kOff, "ef"},
      {"\"a,b\",c", 100, kOn, "c"},
      {"\"a,b\",c", 100, kOff, "b\",c"},
      {",cde", 4, kOff, "cde"},
  };
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    const auto src = text<Ch>(c.src);
    const auto expected = text<Ch>(c.expected);
    const int32_t got =
        Strings<Ch>::StringCopyExAfter(dst.data(), src.c_str(), Ch(','), c.limit, c.quotes);
    EXPECT_EQ(got, static_cast<int32_t>(expected.size())) << c.src;
    EXPECT_EQ(std::basic_string<Ch>(dst.data()), expected) << c.src;
    EXPECT_EQ(dst[expected.size() + 1], Ch{0x7B}) << c.src;
  }
}

TYPED_TEST(Scanning, CopyAfterKeepsWithinLimitAsCapacity) {
  using Ch = TypeParam;
  // The rest "cde" needs 4 elements with its terminator.
  const auto src = text<Ch>(",cde");
  struct Case {
    int32_t limit;
    const char* expected;
  } cases[] = {{5, "cde"}, {4, "cde"}, {3, ""}, {1, ""}};
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    const auto expected = text<Ch>(c.expected);
    EXPECT_EQ(Strings<Ch>::StringCopyExAfter(dst.data(), src.c_str(), Ch(','), c.limit, kOff),
              static_cast<int32_t>(expected.size()))
        << c.limit;
    EXPECT_EQ(std::basic_string<Ch>(dst.data()), expected) << c.limit;
    for (std::size_t i = static_cast<std::size_t>(c.limit); i < dst.size(); ++i)
      EXPECT_EQ(dst[i], Ch{0x7B}) << "limit " << c.limit << " at " << i;
  }
}

TYPED_TEST(Scanning, CopyAfterThatReachesTheTerminatorGivesTheEmptyText) {
  using Ch = TypeParam;
  // No delimiter below the limit: nothing stands behind the terminator, so
  // nothing is read there.
  for (const char* src : {"abc", "", "\"a,b"}) {
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Strings<Ch>::StringCopyExAfter(dst.data(), text<Ch>(src).c_str(), Ch(','), 100, kOn),
              0)
        << src;
    EXPECT_EQ(dst[0], Ch{0});
    EXPECT_EQ(dst[1], Ch{0x7B});
  }
}

TYPED_TEST(Scanning, CopyAfterWithoutCapacityLeavesDstAlone) {
  using Ch = TypeParam;
  for (int32_t limit : {0, -1}) {
    auto dst = sentinel_buffer<Ch>(4);
    EXPECT_EQ(
        Strings<Ch>::StringCopyExAfter(dst.data(), text<Ch>(",ab").c_str(), Ch(','), limit, kOff),
        0);
    EXPECT_EQ(dst[0], Ch{0x7B}) << limit;
  }
}

TYPED_TEST(Scanning, CodeCountAndLength) {
  using Ch = TypeParam;
  struct Case {
    const char* src;
    char code;
    int32_t count, length;
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
  };
  for (const auto& c : cases) {
    const auto src = text<Ch>(c.src);
    const Ch code = static_cast<Ch>(static_cast<unsigned char>(c.code));
    EXPECT_EQ(Strings<Ch>::GetCodeCount(src.c_str(), code), c.count) << c.src;
    EXPECT_EQ(Strings<Ch>::GetCodeLength(src.c_str(), code), c.length) << c.src;
  }
}

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C, "日" 0x93 0xFA, "本" 0x96 0x7B.

TEST(NarrowScanning, CopyEndsInsideACharacterWhoseTrailByteIsTheDelimiter) {
  struct Case {
    const char* src;
    char delimiter;
    const char* expected;
  } cases[] = {
      // Byte-step: the trail byte comes up as a position of its own.
      {"a\x95\x5C"
       "b",
       '\\', "a\x95"},
      {"\x83\x5C\\x", '\\', "\x83"},
      {"\x93\xFA\x96\x7B{x", '{', "\x93\xFA\x96"},
      // No trail byte is a comma: the character passes whole.
      {"a\x95\x5C,b", ',', "a\x95\x5C"},
      // A lead byte at the end is no pair and is compared and copied.
      {"ab\x81", ',', "ab\x81"},
      // A delimiter with the value of a lead byte is protected in lead
      // position...
      {"x\x83\x5C"
       "y",
       '\x83',
       "x\x83\x5C"
       "y"},
      // ...but not right behind a consumed quote, which is compared without
      // a pair test.
      {"\"x\"\x83\x5C", '\x83', "x"},
  };
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<char>(12);
    const int32_t got = KZ_StringCopyExA(dst.data(), c.src, c.delimiter, 100, kOn);
    EXPECT_EQ(std::string(dst.data()), c.expected) << c.src;
    EXPECT_EQ(got, static_cast<int32_t>(std::string(c.expected).size())) << c.src;
  }
}

TEST(NarrowScanning, CopyAfterResumesBehindTheTrailByte) {
  auto dst = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringCopyExAfterA(dst.data(),
                                  "a\x95\x5C"
                                  "bc",
                                  '\\', 100, kOff),
            2);
  EXPECT_EQ(std::string(dst.data()), "bc");
  EXPECT_EQ(KZ_StringCopyExAfterA(dst.data(), "\x93\xFA\x96\x7B{x", '{', 100, kOff), 2);
  EXPECT_EQ(std::string(dst.data()), "{x");
  EXPECT_EQ(KZ_StringCopyExAfterA(dst.data(), "\x95\x5C,d", ',', 100, kOff), 1);
  EXPECT_EQ(std::string(dst.data()), "d");
  // A lead byte at the end, no delimiter: the scan reaches the terminator.
  EXPECT_EQ(KZ_StringCopyExAfterA(dst.data(), "ab\x81", ',', 100, kOff), 0);
  EXPECT_EQ(dst[0], 0);
}

TEST(NarrowScanning, CountSkipsLeadPositionsWhileLengthIsAPlainSearch) {
  struct Case {
    const char* src;
    char code;
    int32_t count, length;
  } cases[] = {
      {"\x95\x5C\\", '\\', 2, 1},        // the trail byte and the backslash
      {"\x93\xFA\x96\x7B{", '{', 2, 3},  // "日本{": 0xFA 0x96 is a pair as well
      {"a\x83\x5C", '\x83', 0, 1},       // a lead byte is not counted, but found
      {"a\x81", '\x81', 1, 1},           // a lead byte at the end is no pair
      {"\x95\x5C,", ',', 1, 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(KZ_GetCodeCountA(c.src, c.code), c.count) << c.src;
    EXPECT_EQ(KZ_GetCodeLengthA(c.src, c.code), c.length) << c.src;
  }
}

}  // namespace
