// The pair test and the two conversions at their edges, the bounded copies,
// releasing string lists and the allocator's failure switch that the other
// tests rely on. What each byte and unit converts to (each half of a
// surrogate pair alone), and how a lead byte swallows the byte after it, is
// held against the platform in codepage_test.cpp; here are the exports' own
// rules: results, sizes and the zero fill.
#include <cstring>

#include "frame/text.h"
#include "support.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

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
    SCOPED_TRACE(::testing::Message() << utf8_text << " " << size_in);
    const auto wide_text = utf16(utf8_text);
    auto wide = sentinel_buffer<wchar>(8);
    auto narrow = sentinel_buffer<char>(8);
    EXPECT_EQ(KZ_SJIS2UNICODE(sjis, wide.data(), size_in), to_wide);
    EXPECT_EQ(KZ_UNICODE2SJIS(wide_text.c_str(), narrow.data(), size_in), to_narrow);
    const auto size = static_cast<std::size_t>(std::max(size_in, 0));
    EXPECT_TRUE(to_wide == 1 || size == 0 ? untouched_from(wide, size)
                                          : holds(wide, wide_text, size, size));
    EXPECT_TRUE(to_narrow == 1 || size == 0 ? untouched_from(narrow, size)
                                            : holds(narrow, sjis, size, size));
  }
}

// The bounded copies never write past their capacity: a destination too
// small is left empty and the copy reports failure.
KZ_TWIN_SUITE(BoundedCopy);

// Copies (count 0) take "abcd" through the traits the library copies with
// (strcpy_s, wcsncpy_s and their kin); the counted copy stops at count or
// the terminator. The append (count -1) adds "cd" to "ab", needs room for
// both, and refuses a destination without its terminator inside size. Null
// arguments and a size of 0 are refused.
TYPED_TEST(BoundedCopy, FitsExactlyOrLeavesTheDestinationEmpty) {
  using Ch = TypeParam;
  using T = kz::Text<Ch>;
  // size, count, result, expected (null: untouched), null dst, null src
  const std::tuple<std::size_t, int, int, const char*, bool, bool> cases[] = {
      {5, 0, 0, "abcd", false, false},        {4, 0, os::kERANGE, "", false, false},
      {3, 2, 0, "ab", false, false},          {2, 2, os::kERANGE, "", false, false},
      {8, 9, 0, "abcd", false, false},        {8, -2, 0, "", false, false},
      {5, -1, 0, "abcd", false, false},       {4, -1, os::kERANGE, "", false, false},
      {2, -1, os::kEINVAL, "", false, false}, {0, 0, os::kEINVAL, nullptr, false, false},
      {4, 0, os::kEINVAL, "", false, true},   {4, 0, os::kEINVAL, nullptr, true, false}};
  for (const auto& [size, count, result, expected, null_dst, null_src] : cases) {
    SCOPED_TRACE(::testing::Message() << "size " << size << " count " << count);
    auto buffer = sentinel_buffer<Ch>(8);
    if (count == -1) buffer[0] = 'a', buffer[1] = 'b', buffer[2] = 0;
    const auto text_in = text<Ch>(count == -1 ? "cd" : "abcd");
    Ch* dst = null_dst ? nullptr : buffer.data();
    const Ch* src = null_src ? nullptr : text_in.c_str();
    EXPECT_EQ(count == -1  ? T::append(dst, size, src)
              : count == 0 ? T::copy(dst, size, src)
                           : T::copy_n(dst, size, src, count < 0 ? 0 : count),
              result);
    EXPECT_TRUE(expected ? holds(buffer, text<Ch>(expected), 0,
                                 std::max<std::size_t>(size, count == -1 ? 3 : 0))
                         : untouched_from(buffer, 0));
  }
}

// The leak checker proves that every block went back; the strings hold no
// terminator, as a release must not read them, save one empty string. A
// second release finds an empty list and does nothing.
TEST(StrList, ReleaseFreesEveryStringAndTheArrayWithoutReadingThem) {
  for (auto release : {KZ_DeleteStrListW, KZ_DeleteStrListA}) {
    StrList list{3, kz::allocate_array<void*>(3)};
    for (int i = 0; i < 3; ++i) std::memset(list.strings[i] = kz::allocate(4), i == 1 ? 0 : 'x', 4);
    for (int pass = 0; pass < 2; ++pass) {
      release(&list);
      EXPECT_EQ(joined(list.count, list.strings != nullptr), "0-0-");
    }
  }
}

TEST(Allocator, InjectedFailureHitsOnlyTheArmedAllocation) {
  kz::alloc_faults::arm(2, false);
  void* blocks[] = {kz::allocate(8), kz::allocate(8), kz::allocate(8)};
  kz::alloc_faults::disarm();
  EXPECT_EQ(joined(blocks[0] != nullptr, blocks[1] != nullptr, blocks[2] != nullptr),
            joined(1, 0, 1));
  for (void* block : blocks) kz::release(block);
  kz::alloc_faults::arm(1, true);
  for (int twice = 0; twice < 2; ++twice) EXPECT_EQ(kz::allocate(1), nullptr);
  kz::alloc_faults::disarm();
  EXPECT_EQ(kz::allocate_array<int>(SIZE_MAX / 2), nullptr);  // overflow, not a huge block
}

}  // namespace
