// The pair test and the two conversions at their edges. What each byte and
// unit converts to (each half of a surrogate pair alone), and how a lead
// byte swallows the byte after it, is held against the platform in
// codepage_test.cpp; here are the exports' own rules: results, sizes and the
// zero fill.
#include "support.h"

namespace {

using namespace kz::test;

// A lead byte before the terminator is never half a pair; 0x7F is no trail
// byte, 0xA1 to 0xDF are single-byte characters, and with no memory of
// where a character begins a trail byte with the value of a lead byte,
// followed by a trail byte, answers 1 as well.
TEST(PairTest, AnswersByTheTwoBytesInFront) {
  const std::pair<const char*, int32_t> cases[] = {
      {"\x81", 0}, {"\x81\x5C", 1}, {"\x81\x7F", 0}, {"\xA1\x40", 0}, {"\x81\x81\x40", 1}};
  for (const auto& [bytes, pair] : cases)
    EXPECT_EQ(KZ_IsSJisMultiByteChar(bytes), pair) << std::hex << +(unsigned char)bytes[0];
}

// The result counts the terminator and one more: "abc" (4 elements with its
// terminator) gives 5, a failure 1, an empty source -1, and a size of 0
// asks for the size needed. A success or an empty source leaves dst
// zero-filled up to size; nothing is ever written at or behind size.
// "日本語" is three units and six bytes.
TEST(Conversion, ResultsAndSizesBothWays) {
  const std::tuple<const char*, const char*, int32_t, int32_t, int32_t> cases[] = {
      {"", "", 6, -1, -1},
      {"abc", "abc", 5, 5, 5},
      {"abc", "abc", 4, 5, 5},
      {"abc", "abc", 3, 1, 1},
      {"abc", "abc", 0, 5, 5},
      {"abc", "abc", -1, 1, 1},
      {"\x93\xFA\x96\x7B\x8C\xEA", "日本語", 7, 5, 8},
      {"\x93\xFA\x96\x7B\x8C\xEA", "日本語", 6, 5, 1}};
  for (const auto& [sjis, utf8_text, size_in, to_wide, to_narrow] : cases) {
    const auto wide_text = utf16(utf8_text);
    auto wide = sentinel_buffer<wchar>(8);
    auto narrow = sentinel_buffer<char>(8);
    EXPECT_EQ(KZ_SJIS2UNICODE(sjis, wide.data(), size_in), to_wide) << utf8_text << " " << size_in;
    EXPECT_EQ(KZ_UNICODE2SJIS(wide_text.c_str(), narrow.data(), size_in), to_narrow)
        << utf8_text << " " << size_in;
    const auto size = static_cast<std::size_t>(std::max(size_in, 0));
    EXPECT_TRUE(to_wide == 1 || size == 0 ? untouched_from(wide, size)
                                          : holds(wide, wide_text, size, size))
        << utf8_text << " " << size_in;
    EXPECT_TRUE(to_narrow == 1 || size == 0 ? untouched_from(narrow, size)
                                            : holds(narrow, sjis, size, size))
        << utf8_text << " " << size_in;
  }
}

}  // namespace
