// The length copy, the extraction between markers, double quotes and the
// masked password text, in both twins.
#include <cstring>
#include <vector>

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
  std::vector<std::tuple<std::string, int32_t, int32_t, int32_t, std::string>> cases = {
      {"abc", 3, 4, 3, "abc"},
      {"abc", 2, 5, 2, "ab"},
      {"abc", 3, 3, 0, "~"},
      {"abc", 0, 4, 0, "~"}};
  if (sizeof(Ch) == 1)
    cases.insert(cases.end(), {{"ab", -1, 6, 0, "~"},
                               {"ab", 4, 6, 4, "ab"},
                               {"\x93\xFA\x96\x7B\x8C\xEA", 2, 7, 2, "\x93\xFA\x96\x7B"}});
  if (sizeof(Ch) != 1)
    cases.insert(cases.end(), {{"ab", -1, 5, 0, ""},
                               {std::string("a\0bc", 5), 4, 5, 4, std::string("a\0bc", 4)}});
  for (const auto& [source, count, size, result, expected] : cases) {
    SCOPED_TRACE(::testing::Message() << source << " " << count << "/" << size);
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Twin<Ch>::StringLengthCopy(text<Ch>(source).c_str(), dst.data(), count, size),
              result);
    EXPECT_TRUE(expected != "~" ? holds(dst, text<Ch>(expected), size, size)
                                : untouched_from(dst, 0));
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
  std::vector<std::tuple<const char*, const char*, const char*, int32_t, const char*, int32_t>>
      cases = {{"((a))", "(", ")", 8, "(a", -1},     {"a()c", "(", ")", 8, "", -1},
               {"a(bc", "(", ")", 8, "", -1},        {"abc)", "(", ")", 8, "", -1},
               {"a(b)", "", ")", 8, "", -1},         {"a<<b)c", "<<", ")", 8, "", -1},
               {"a<<b>>c", "<<", ">>", 8, "<b", -1}, {"(a)", "(", ")", 0, nullptr, 0},
               {nullptr, "(", ")", 4, nullptr, 0},   {"(a)", "(", nullptr, 4, nullptr, 0}};
  if (sizeof(Ch) == 1)
    cases.insert(cases.end(),
                 {{"\xA2\x93\xFA\x96\x7B\xA3", "\xA2", "\xA3", 8, "\x93\xFA\x96\x7B", 2},
                  {"(\x95\\)\\", "(", "\\", 8, "\x95\\)", 2}});
  if (sizeof(Ch) != 1)
    cases.insert(cases.end(), {{"(abc)", "(", ")", 4, "abc", -1}, {"(abc)", "(", ")", 3, "", -1}});
  for (const auto& [source, open, closing, size, expected, result] : cases) {
    SCOPED_TRACE(::testing::Message() << (source ? source : "-") << " " << size);
    auto out = sentinel_buffer<Ch>(9);
    const auto src = text<Ch>(source ? source : ""), close = text<Ch>(closing ? closing : "");
    EXPECT_EQ(Twin<Ch>::StringGetQuoted(source ? src.c_str() : nullptr, out.data(), size,
                                        text<Ch>(open).c_str(), closing ? close.c_str() : nullptr),
              result < 0 ? static_cast<int32_t>(std::strlen(expected)) : result);
    EXPECT_TRUE(expected ? holds(out, text<Ch>(expected), size, size) : untouched_from(out, 0));
  }
}

KZ_TWIN_SUITE(DoubleQuotes);

constexpr bool kSet = true;
constexpr bool kDel = false;

// A text with a quote anywhere counts as quoted: set adds nothing, del
// takes its first and last element whatever they are (intended), in narrow
// text one byte of "表" (0x95 0x5C). Set needs room for both quotes ("abc"
// needs 6), del for the source ("\"ab\"" needs 5) though its result needs
// less; a size below leaves the empty text, a size of 0 writes nothing.
// Set then del in place gives the text back.
TYPED_TEST(DoubleQuotes, SetAndDelGoByAnyQuoteInTheText) {
  using Ch = TypeParam;
  // set, src, expected (null: dst untouched), size
  std::vector<std::tuple<bool, const char*, const char*, int32_t>> cases = {
      {kSet, "\"abc\"", "\"abc\"", 8}, {kDel, "\"abc\"", "abc", 8},
      {kDel, "abc", "abc", 8},         {kDel, "\"", "", 8},
      {kDel, "a\"b", "\"", 8},         {kSet, "abc", "\"abc\"", 7},
      {kSet, "abc", "\"abc\"", 6},     {kSet, "abc", "", 5},
      {kSet, "abc", nullptr, 0},       {kDel, "\"ab\"", "ab", 5},
      {kDel, "\"ab\"", "", 4}};
  if (sizeof(Ch) == 1)
    cases.insert(cases.end(), {{kSet, "a\x81", "\"a\x81\"", 8}, {kDel, "\x95\\\"x", "\\\"", 8}});
  for (const auto& [set, src, expected, size] : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    const auto source = text<Ch>(src);
    set ? Twin<Ch>::SetDoublequote(source.c_str(), dst.data(), size)
        : Twin<Ch>::DelDoublequote(source.c_str(), dst.data(), size);
    EXPECT_TRUE(expected ? holds(dst, text<Ch>(expected), 0, static_cast<std::size_t>(size))
                         : untouched_from(dst, 0))
        << set << " " << src << " size " << size;
  }
  for (const char* src : {"", "a b,c"}) {
    auto buffer = sentinel_buffer<Ch>(12);
    Twin<Ch>::SetDoublequote(text<Ch>(src).c_str(), buffer.data(), 12);
    Twin<Ch>::DelDoublequote(buffer.data(), buffer.data(), 12);
    EXPECT_EQ(str(buffer), text<Ch>(src));
  }
}

KZ_TWIN_SUITE(Password);

constexpr int32_t kMask = 1;
constexpr int32_t kUnmask = 0;

// Each unit XOR the key is four base-36 digits: 0x41 is 65, "001t"; a unit
// equal to the key "0000"; 0xFFFE "1eke". Unmasking is tolerant: either
// case, a short last group read as a shorter number, a group without a
// number read as 0, reading stopped at the first other element, a sign
// (-1 is 0xFFFF) and leading white space taken ("1z" is 71); a group that
// gives the unit 0 ends the text. The narrow twin masks the wide form:
// "日本" is U+65E5 U+672C. "ab" masks to 8 elements and needs a size of 9;
// two units unmasked need 3. The narrow twin's scratch holds its input only
// from size on.
TYPED_TEST(Password, MasksToFourBase36DigitsPerUnitAndUnmasksTolerantly) {
  using Ch = TypeParam;
  // key, mask, src, expected, size, result (-2: the length of expected)
  const std::tuple<uint16_t, int32_t, const char*, const char*, int32_t, int32_t, Only> cases[] = {
      {0, kMask, "A", "001t", 64, -2, kBoth},
      {0x41, kMask, "A", "0000", 64, -2, kBoth},
      {0xFFFF, kMask, "\x01", "1eke", 64, -2, kBoth},
      {0, kUnmask, "001T003e", "Az", 64, -2, kBoth},
      {0, kUnmask, "001t1", "A\x01", 64, -2, kBoth},
      {0x41, kUnmask, "*01t", "A", 64, -2, kBoth},
      {0x40, kUnmask, "01*t", "A", 64, -2, kBoth},
      {0xFFBE, kUnmask, "-001", "A", 64, -2, kBoth},
      {0x40, kUnmask, "  1z", "\x07", 64, -2, kBoth},
      {0, kUnmask, "001t0000001t", "A", 64, -2, kBoth},
      {0, kMask, "\x93\xFA\x96\x7B", "0k4l0kdo", 64, 8, kNarrow},
      {0, kUnmask, "0k4l0kdo", "\x93\xFA\x96\x7B", 64, 2, kNarrow},
      {7, kMask, "ab", "002u002t", 9, -2, kBoth},
      {7, kMask, "ab", "", 8, -1, kBoth},
      {7, kMask, "ab", "", 0, -1, kBoth},
      {7, kMask, "", "", 1, 0, kBoth},
      {7, kMask, "ab", "", 1, -1, kWide},
      {7, kUnmask, "001t001t", "FF", 3, -2, kWide},
      {7, kUnmask, "001t001t", "", 2, -1, kWide}};
  for (const auto& [key, mask, src, expected, size, wanted, only] : cases) {
    if (!runs<Ch>(only)) continue;
    SCOPED_TRACE(::testing::Message() << src << " size " << size);
    const auto result = wanted == -2 ? static_cast<int32_t>(std::strlen(expected)) : wanted;
    auto dst = sentinel_buffer<Ch>(static_cast<std::size_t>(size) + 1);
    EXPECT_EQ(Twin<Ch>::StringPassword(key, text<Ch>(src).c_str(), dst.data(), size, mask), result);
    // On failure the wide twin leaves the empty text, the narrow one dst as it was.
    EXPECT_TRUE(result < 0 && (sizeof(Ch) == 1 || size == 0)
                    ? untouched_from(dst, 0)
                    : holds(dst, text<Ch>(expected), 0, static_cast<std::size_t>(size)));
  }
}

}  // namespace
