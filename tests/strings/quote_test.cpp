// Adding and removing double quotes, in both twins.
#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class DoubleQuotes : public ::testing::Test {};
TYPED_TEST_SUITE(DoubleQuotes, ElementTypes);

constexpr bool kSet = true;
constexpr bool kDel = false;

template <class Ch>
void quote(bool set, const Ch* src, Ch* dst, int32_t size) {
  if (set)
    Twin<Ch>::SetDoublequote(src, dst, size);
  else
    Twin<Ch>::DelDoublequote(src, dst, size);
}

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C.
TYPED_TEST(DoubleQuotes, SetAndDelGoByAnyQuoteInTheText) {
  using Ch = TypeParam;
  struct Case {
    bool set;
    const char *src, *expected;
    int32_t size = 8;
    Only only = Only::kBoth;
  } cases[] = {
      {kSet, "abc", "\"abc\""},
      {kSet, "", "\"\""},
      {kSet, "\"abc\"", "\"abc\""},
      {kSet, "a\"bc", "a\"bc"},  // counts as quoted already: nothing is added
      {kDel, "\"abc\"", "abc"},
      {kDel, "abc", "abc"},
      {kDel, "\"\"", ""},
      {kDel, "\"", ""},
      // The first and last element go, whatever they are. Intended.
      {kDel, "a\"b", "\""},
      {kDel, "\"abc", "ab"},
      {kDel, "", ""},
      // "abc" with its quotes and terminator needs 6 elements; a size below
      // leaves the empty text.
      {kSet, "abc", "\"abc\"", 7},
      {kSet, "abc", "\"abc\"", 6},
      {kSet, "abc", "", 5},
      {kSet, "abc", "", 4},
      {kSet, "abc", "", 1},
      {kSet, "abc", nullptr, 0},
      // Del needs room for the source (5), though its result needs 3.
      {kDel, "\"ab\"", "ab", 6},
      {kDel, "\"ab\"", "ab", 5},
      {kDel, "\"ab\"", "", 4},
      {kDel, "\"ab\"", nullptr, 0},
      // Narrow quotes work on bytes.
      {kSet, "\x95\x5C", "\"\x95\x5C\"", 8, Only::kNarrow},
      {kSet, "a\x81", "\"a\x81\"", 8, Only::kNarrow},  // a lead byte at the end
      // A quote in the middle costs a double-byte character at an end one byte.
      {kDel, "\x95\x5C\"x", "\x5C\"", 8, Only::kNarrow},
      {kDel, "\"\x83\x5C\"", "\x83\x5C", 8, Only::kNarrow},
      {kDel, "\"a\x81", "a", 8, Only::kNarrow},  // a lead byte at the end goes like any byte
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    quote(c.set, text<Ch>(c.src).c_str(), dst.data(), c.size);
    const auto where = ::testing::Message()
                       << (c.set ? "set " : "del ") << c.src << " size " << c.size;
    if (c.expected) {
      EXPECT_EQ(str(dst), text<Ch>(c.expected)) << where;
    }
    EXPECT_TRUE(untouched_from(dst, static_cast<std::size_t>(c.size))) << where;
  }
}

TYPED_TEST(DoubleQuotes, SetThenDelInPlaceGivesBackATextWithoutQuotes) {
  using Ch = TypeParam;
  for (const char* src : {"", "a", "a b,c", "xyz  "}) {
    auto buffer = sentinel_buffer<Ch>(12);
    Twin<Ch>::SetDoublequote(text<Ch>(src).c_str(), buffer.data(), 12);
    Twin<Ch>::DelDoublequote(buffer.data(), buffer.data(), 12);
    EXPECT_EQ(str(buffer), text<Ch>(src));
  }
}

TYPED_TEST(DoubleQuotes, NoWorkingCopyLeavesTheEmptyText) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    for (bool set : {kSet, kDel}) {
      auto dst = sentinel_buffer<Ch>(8);
      quote(set, text<Ch>(set ? "ab" : "\"ab\"").c_str(), dst.data(), 8);
      EXPECT_TRUE(str(dst).empty() || str(dst) == text<Ch>(set ? "\"ab\"" : "ab"));
    }
  });
}

}  // namespace
