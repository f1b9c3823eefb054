// The pair test and the two conversions at their edges. The exhaustive
// comparison with Windows' code page lives in codepage_test.cpp.
#include <algorithm>

#include "support.h"

namespace {

using namespace kz::test;

TEST(PairTest, AnswersByTheTwoBytesInFront) {
  struct Case {
    const char* bytes;
    int32_t pair;
  } cases[] = {
      {"\x81", 0},          // a lead byte before the terminator is never half a pair
      {"\x81\x5C", 1},      // trail byte 0x5C, the backslash
      {"\x81\x7F", 0},      // 0x7F is no trail byte
      {"\x81\x40", 1},      {"\x9F\xFC", 1}, {"\xE0\x40", 1}, {"\xFC\xFC", 1},
      {"\x81\xFD", 0},      // 0xFD to 0xFF are neither lead nor trail
      {"\xA0\x40", 0},      {"\xA1\x40", 0}, // 0xA1 to 0xDF are single-byte characters
      {"\xFD\x40", 0},      {"\x20\x81", 0}, {"A\x81", 0}, {"a\x40", 0},
      {"\x81\x3F", 0},      // no byte below 0x40 is ever part of a pair
  };
  for (const auto& c : cases)
    EXPECT_EQ(KZ_IsSJisMultiByteChar(c.bytes), c.pair) << std::hex << +(unsigned char)c.bytes[0];
}

TEST(PairTest, HasNoMemoryOfWhereACharacterBegins) {
  // A trail byte with the value of a lead byte, followed by a trail byte,
  // answers 1 as well.
  const char text[] = "\x81\x81\x40";
  EXPECT_EQ(KZ_IsSJisMultiByteChar(text), 1);
  EXPECT_EQ(KZ_IsSJisMultiByteChar(text + 1), 1);
}

TEST(Conversion, EmptySourceGivesMinusOneAndAllZeros) {
  auto wide = sentinel_buffer<wchar>(6);
  EXPECT_EQ(KZ_SJIS2UNICODE("", wide.data(), 6), -1);
  for (wchar unit : wide) EXPECT_EQ(unit, 0);
  auto narrow = sentinel_buffer<char>(6);
  const wchar empty[] = {0};
  EXPECT_EQ(KZ_UNICODE2SJIS(empty, narrow.data(), 6), -1);
  for (char byte : narrow) EXPECT_EQ(byte, 0);
}

TEST(Conversion, ResultCountsTheTerminatorAndOneMore) {
  auto wide = sentinel_buffer<wchar>(8);
  EXPECT_EQ(KZ_SJIS2UNICODE("abc", wide.data(), 8), 5);
  EXPECT_EQ(wstring(wide.data()), text<wchar>("abc"));
  for (std::size_t i = 3; i < wide.size(); ++i) EXPECT_EQ(wide[i], 0) << i;

  auto narrow = sentinel_buffer<char>(8);
  const auto abc = text<wchar>("abc");
  EXPECT_EQ(KZ_UNICODE2SJIS(abc.c_str(), narrow.data(), 8), 5);
  EXPECT_EQ(std::string(narrow.data()), "abc");
  for (std::size_t i = 3; i < narrow.size(); ++i) EXPECT_EQ(narrow[i], 0) << i;
}

TEST(Conversion, SizesAroundTheNeededOne) {
  // "abc" needs 4 elements with its terminator.
  const auto abc = text<wchar>("abc");
  struct Case {
    int32_t size, result;
  } cases[] = {{5, 5}, {4, 5}, {3, 1}, {1, 1}, {0, 5}, {-1, 1}};
  for (const auto& c : cases) {
    auto wide = sentinel_buffer<wchar>(6);
    auto narrow = sentinel_buffer<char>(6);
    EXPECT_EQ(KZ_SJIS2UNICODE("abc", wide.data(), c.size), c.result) << c.size;
    EXPECT_EQ(KZ_UNICODE2SJIS(abc.c_str(), narrow.data(), c.size), c.result) << c.size;
    // Nothing is written at or behind size; nothing at all for a size of 0.
    for (int32_t i = std::max(c.size, 0); i < 6; ++i) {
      EXPECT_EQ(wide[i], wchar{0x7B}) << c.size << " at " << i;
      EXPECT_EQ(narrow[i], char{0x7B}) << c.size << " at " << i;
    }
  }
}

TEST(Conversion, DoubleByteTextBothWays) {
  // "日本語" in code page 932, and its wide form.
  const char sjis[] = "\x93\xFA\x96\x7B\x8C\xEA";
  const auto wide_text = utf16("日本語");
  auto wide = sentinel_buffer<wchar>(8);
  EXPECT_EQ(KZ_SJIS2UNICODE(sjis, wide.data(), 8), 5);
  EXPECT_EQ(wstring(wide.data()), wide_text);
  auto narrow = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_UNICODE2SJIS(wide_text.c_str(), narrow.data(), 8), 8);
  EXPECT_EQ(std::string(narrow.data()), sjis);
  // Six bytes and a terminator need 7: one less fails.
  EXPECT_EQ(KZ_UNICODE2SJIS(wide_text.c_str(), narrow.data(), 6), 1);
}

TEST(Conversion, CharacterWithoutNarrowFormTakesTheDefaultCharacter) {
  const auto wide_text = utf16("a😀b");  // a surrogate pair has no code page 932 form
  auto narrow = sentinel_buffer<char>(8);
  const int32_t result = KZ_UNICODE2SJIS(wide_text.c_str(), narrow.data(), 8);
  EXPECT_GT(result, 3);  // no failure
  EXPECT_EQ(narrow[0], 'a');
  EXPECT_EQ(std::string(narrow.data()).find('?'), 1u);
}

TEST(Conversion, LeadByteTakesTheByteAfterItWhateverItIs) {
  // What Windows gives for sequences that are no character: the lead byte
  // swallows the byte after it (even a blank) unless the text ends there.
  struct Case {
    const char* narrow;
    std::u16string wide;
  } cases[] = {
      {"\x81\x20"
       "b",
       u"\u30FB"
       "b"},  // no trail byte: one middle dot for both
      {"\x81\x7F"
       "b",
       u"\u30FB"
       "b"},
      {"\x85\x40", u"\u30FB"},  // a pair with no character
      {"a\x81", u"a\u30FB"},    // a lead byte at the end stands alone
      {"\x81\x5C", u"\u2015"},  // trail byte 0x5C
      {"\xA0\xFD\xFF", u"\uF8F0\uF8F1\uF8F3"},
      {"\xF0\x40", u"\uE000"},  // user-defined area
  };
  for (const auto& c : cases) {
    auto wide = sentinel_buffer<wchar>(8);
    EXPECT_EQ(KZ_SJIS2UNICODE(c.narrow, wide.data(), 8), static_cast<int32_t>(c.wide.size()) + 2)
        << c.narrow;
    for (std::size_t i = 0; i < c.wide.size(); ++i)
      EXPECT_EQ(static_cast<char16_t>(wide[i]), c.wide[i]) << c.narrow << " at " << i;
    EXPECT_EQ(wide[c.wide.size()], 0);
  }
}

TEST(Conversion, EachHalfOfASurrogatePairTakesTheDefaultCharacter) {
  // Units are converted one by one, so a pair gives two default characters
  // and a lone half one.
  const wchar pair[] = {'a', 0xD83D, 0xDE00, 'b', 0};
  const wchar lone[] = {0xDC00, 'b', 0};
  auto narrow = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_UNICODE2SJIS(pair, narrow.data(), 8), 6);
  EXPECT_EQ(std::string(narrow.data()), "a??b");
  EXPECT_EQ(KZ_UNICODE2SJIS(lone, narrow.data(), 8), 4);
  EXPECT_EQ(std::string(narrow.data()), "?b");
}

}  // namespace
