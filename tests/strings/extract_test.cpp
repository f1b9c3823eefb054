// The length copy and the extraction between markers, in both twins.
#include <cstring>

#include "strings/api.h"

namespace {

using namespace kz::test;

template <class Ch>
class Extracting : public ::testing::Test {};
TYPED_TEST_SUITE(Extracting, ElementTypes);

template <class Ch>
bool all_zero(const std::vector<Ch>& buffer, std::size_t size) {
  for (std::size_t i = 0; i < size; ++i)
    if (buffer[i] != 0) return false;
  return true;
}

TYPED_TEST(Extracting, LengthCopyNeedsCountBelowSize) {
  using Ch = TypeParam;
  // Each src fits size in both twins: the narrow twin's wide scratch has
  // size units too.
  struct Case {
    const char* src;
    int32_t count, size;
    const char* expected;  // null: refused, dst untouched
  } cases[] = {
      {"abc", 3, 4, "abc"},   {"abc", 3, 5, "abc"},   {"abc", 2, 4, "ab"},
      {"a", 1, 2, "a"},       {"abc", 3, 3, nullptr}, {"abc", 3, 2, nullptr},
      {"abc", 0, 4, nullptr}, {"abc", 3, 0, nullptr},
  };
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    const int32_t got =
        Strings<Ch>::StringLengthCopy(text<Ch>(c.src).c_str(), dst.data(), c.count, c.size);
    if (c.expected == nullptr) {
      EXPECT_EQ(got, 0) << c.count << "/" << c.size;
      EXPECT_EQ(dst[0], Ch{0x7B}) << c.count << "/" << c.size;
      continue;
    }
    EXPECT_EQ(got, c.count);
    EXPECT_EQ(std::basic_string<Ch>(dst.data()), text<Ch>(c.expected));
    // dst is zero-filled up to size and not touched behind it.
    for (auto i = static_cast<std::size_t>(c.count); i < static_cast<std::size_t>(c.size); ++i)
      EXPECT_EQ(dst[i], Ch{0}) << i;
    EXPECT_EQ(dst[static_cast<std::size_t>(c.size)], Ch{0x7B});
  }
}

TYPED_TEST(Extracting, LengthCopyRefusesNullBuffers) {
  using Ch = TypeParam;
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Strings<Ch>::StringLengthCopy(static_cast<const Ch*>(nullptr), dst.data(), 1, 4), 0);
  EXPECT_EQ(dst[0], Ch{0x7B});
  EXPECT_EQ(Strings<Ch>::StringLengthCopy(text<Ch>("ab").c_str(), static_cast<Ch*>(nullptr), 1, 4),
            0);
}

TEST(LengthCopy, WideCopiesThroughTerminatorsAndZeroFillsOnANegativeCount) {
  const wchar src[] = {'a', 0, 'b', 'c', 0};
  auto dst = sentinel_buffer<wchar>(6);
  EXPECT_EQ(KZ_StringLengthCopyW(src, dst.data(), 4, 5), 4);
  EXPECT_EQ(wstring(dst.data(), 5), wstring(src, 5));
  EXPECT_EQ(dst[5], wchar{0x7B});

  dst = sentinel_buffer<wchar>(6);
  EXPECT_EQ(KZ_StringLengthCopyW(src, dst.data(), -1, 5), 0);
  EXPECT_TRUE(all_zero(dst, 5));
  EXPECT_EQ(dst[5], wchar{0x7B});
}

TEST(LengthCopy, NarrowCountsCharactersAndGivesCountForAShortText) {
  auto dst = sentinel_buffer<char>(8);
  // The zero-filled wide buffer gives the whole of a shorter text; the
  // result is still count.
  EXPECT_EQ(KZ_StringLengthCopyA("ab", dst.data(), 4, 6), 4);
  EXPECT_EQ(std::string(dst.data()), "ab");
  // A negative count leaves the narrow dst as it was.
  dst = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringLengthCopyA("ab", dst.data(), -1, 6), 0);
  EXPECT_EQ(dst[0], char{0x7B});
}

TEST(LengthCopy, NarrowCopiesDoubleByteCharactersWhole) {
  // "日本語": two characters are four bytes, so size must be at least 5.
  auto dst = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringLengthCopyA("\x93\xFA\x96\x7B\x8C\xEA", dst.data(), 2, 7), 2);
  EXPECT_EQ(std::string(dst.data()), "\x93\xFA\x96\x7B");
}

TEST(LengthCopy, NarrowSourceTooLongForSizeStaysInsideTheScratch) {
  // The wide form of src needs 7 units and size is 4: the conversion fails,
  // and only the first count units of what it left are used.
  auto dst = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringLengthCopyA("abcdef", dst.data(), 2, 4), 2);
  EXPECT_LE(std::strlen(dst.data()), 2u);
  EXPECT_EQ(dst[4], char{0x7B});
}

TEST(LengthCopy, NarrowScratchFailureLeavesDstAlone) {
  for_each_allocation_failure([] {
    auto dst = sentinel_buffer<char>(8);
    const int32_t got = KZ_StringLengthCopyA("abc", dst.data(), 3, 8);
    if (got == 0) {
      EXPECT_EQ(dst[0], char{0x7B});
    } else {
      EXPECT_EQ(got, 3);
      EXPECT_EQ(std::string(dst.data()), "abc");
    }
  });
}

TYPED_TEST(Extracting, GetQuotedTakesWhatStandsBetweenTheMarkers) {
  using Ch = TypeParam;
  struct Case {
    const char *src, *open, *close;
    int32_t size;
    const char* expected;
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
  };
  for (const auto& c : cases) {
    auto out = sentinel_buffer<Ch>(9);
    const auto expected = text<Ch>(c.expected);
    EXPECT_EQ(Strings<Ch>::StringGetQuoted(text<Ch>(c.src).c_str(), out.data(), c.size,
                                           text<Ch>(c.open).c_str(), text<Ch>(c.close).c_str()),
              static_cast<int32_t>(expected.size()))
        << c.src << " " << c.open << c.close << " size " << c.size;
    EXPECT_EQ(std::basic_string<Ch>(out.data()), expected) << c.src;
    for (std::size_t i = expected.size(); i < static_cast<std::size_t>(c.size); ++i)
      EXPECT_EQ(out[i], Ch{0}) << c.src << " at " << i;
    EXPECT_EQ(out[static_cast<std::size_t>(c.size)], Ch{0x7B}) << c.src;
  }
}

TYPED_TEST(Extracting, GetQuotedLeavesOutAloneOnlyForMissingArguments) {
  using Ch = TypeParam;
  const auto src = text<Ch>("(a)");
  const auto open = text<Ch>("(");
  const auto close = text<Ch>(")");
  auto out = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Strings<Ch>::StringGetQuoted(src.c_str(), out.data(), 0, open.c_str(), close.c_str()),
            0);
  EXPECT_EQ(Strings<Ch>::StringGetQuoted(static_cast<const Ch*>(nullptr), out.data(), 4,
                                         open.c_str(), close.c_str()),
            0);
  EXPECT_EQ(Strings<Ch>::StringGetQuoted(src.c_str(), out.data(), 4, open.c_str(),
                                         static_cast<const Ch*>(nullptr)),
            0);
  EXPECT_EQ(out[0], Ch{0x7B});
}

TEST(GetQuoted, WideExtractOfSizeElementsOrMoreIsNotCopied) {
  const auto src = text<wchar>("(abc)");
  const auto open = text<wchar>("(");
  const auto close = text<wchar>(")");
  for (int32_t size : {5, 4, 3, 1}) {
    auto out = sentinel_buffer<wchar>(6);
    const bool fits = size >= 4;
    EXPECT_EQ(KZ_StringGetQuotedW(src.c_str(), out.data(), size, open.c_str(), close.c_str()),
              fits ? 3 : 0);
    EXPECT_EQ(wstring(out.data()), fits ? text<wchar>("abc") : wstring());
    EXPECT_EQ(out[static_cast<std::size_t>(size)], wchar{0x7B}) << size;
  }
}

TEST(GetQuoted, NarrowCountsCharacters) {
  // "｢日本｣" with the single-byte brackets 0xA2 and 0xA3.
  auto out = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringGetQuotedA("\xA2\x93\xFA\x96\x7B\xA3", out.data(), 8, "\xA2", "\xA3"), 2);
  EXPECT_EQ(std::string(out.data()), "\x93\xFA\x96\x7B");
  // "表" has the trail byte 0x5C, which is no backslash as a character.
  out = sentinel_buffer<char>(8);
  EXPECT_EQ(KZ_StringGetQuotedA("(\x95\x5C)\\", out.data(), 8, "(", "\\"), 2);
  EXPECT_EQ(std::string(out.data()), "\x95\x5C)");
}

TEST(GetQuoted, NarrowScratchFailureGivesZeroAndZeroFilledOut) {
  for_each_allocation_failure([] {
    auto out = sentinel_buffer<char>(8);
    const int32_t got = KZ_StringGetQuotedA("a(bc)", out.data(), 8, "(", ")");
    if (got == 0) {
      for (int i = 0; i < 8; ++i) EXPECT_EQ(out[i], 0);
    } else {
      EXPECT_EQ(got, 2);
      EXPECT_EQ(std::string(out.data()), "bc");
    }
  });
}

TEST(GetQuoted, NarrowTextTooLongForSizeStaysInsideTheScratch) {
  // The wide form of the text needs 9 units and size is 4.
  auto out = sentinel_buffer<char>(8);
  const int32_t got = KZ_StringGetQuotedA("(a)cdefg", out.data(), 4, "(", ")");
  EXPECT_LE(got, 1);
  EXPECT_EQ(out[4], char{0x7B});
}

}  // namespace
