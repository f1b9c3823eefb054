// Adding and removing double quotes, in both twins.
#include "strings/api.h"

namespace {

using namespace kz::test;

template <class Ch>
class DoubleQuotes : public ::testing::Test {};
TYPED_TEST_SUITE(DoubleQuotes, ElementTypes);

TYPED_TEST(DoubleQuotes, SetAndDelGoByAnyQuoteInTheText) {
  using Ch = TypeParam;
  struct Case {
    bool set;
    const char *src, *expected;
  } cases[] = {
      {true, "abc", "\"abc\""},
      {true, "", "\"\""},
      {true, "\"abc\"", "\"abc\""},
      {true, "a\"bc", "a\"bc"},  // counts as quoted already: nothing is added
      {false, "\"abc\"", "abc"},
      {false, "abc", "abc"},
      {false, "\"\"", ""},
      {false, "\"", ""},
      // The first and last element go, whatever they are. Intended.
      {false, "a\"b", "\""},
      {false, "\"abc", "ab"},
      {false, "", ""},
  };
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<Ch>(8);
    const auto src = text<Ch>(c.src);
    if (c.set)
      Strings<Ch>::SetDoublequote(src.c_str(), dst.data(), 8);
    else
      Strings<Ch>::DelDoublequote(src.c_str(), dst.data(), 8);
    EXPECT_EQ(std::basic_string<Ch>(dst.data()), text<Ch>(c.expected))
        << (c.set ? "set " : "del ") << c.src;
  }
}

TYPED_TEST(DoubleQuotes, SetThenDelGivesBackATextWithoutQuotes) {
  using Ch = TypeParam;
  for (const char* src : {"", "a", "a b,c", "xyz  "}) {
    auto buffer = sentinel_buffer<Ch>(12);
    Strings<Ch>::SetDoublequote(text<Ch>(src).c_str(), buffer.data(), 12);
    // In place: src and dst are the same buffer.
    Strings<Ch>::DelDoublequote(buffer.data(), buffer.data(), 12);
    EXPECT_EQ(std::basic_string<Ch>(buffer.data()), text<Ch>(src));
  }
}

TYPED_TEST(DoubleQuotes, SetNeedsRoomForBothQuotes) {
  using Ch = TypeParam;
  // "abc" with its quotes and terminator needs 6 elements.
  for (int32_t size : {7, 6, 5, 4, 1, 0}) {
    auto dst = sentinel_buffer<Ch>(8);
    Strings<Ch>::SetDoublequote(text<Ch>("abc").c_str(), dst.data(), size);
    if (size > 0) {
      EXPECT_EQ(std::basic_string<Ch>(dst.data()), size >= 6 ? text<Ch>("\"abc\"") : text<Ch>(""))
          << size;
    }
    for (std::size_t i = static_cast<std::size_t>(size); i < dst.size(); ++i)
      EXPECT_EQ(dst[i], Ch{0x7B}) << "size " << size << " at " << i;
  }
}

TYPED_TEST(DoubleQuotes, DelNeedsRoomForTheSource) {
  using Ch = TypeParam;
  // "\"ab\"" needs 5 elements, though its result needs 3.
  for (int32_t size : {6, 5, 4, 0}) {
    auto dst = sentinel_buffer<Ch>(8);
    Strings<Ch>::DelDoublequote(text<Ch>("\"ab\"").c_str(), dst.data(), size);
    if (size > 0) {
      EXPECT_EQ(std::basic_string<Ch>(dst.data()), size >= 5 ? text<Ch>("ab") : text<Ch>(""))
          << size;
    }
    for (std::size_t i = static_cast<std::size_t>(size); i < dst.size(); ++i)
      EXPECT_EQ(dst[i], Ch{0x7B}) << "size " << size << " at " << i;
  }
}

TYPED_TEST(DoubleQuotes, NoWorkingCopyLeavesTheEmptyText) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    auto dst = sentinel_buffer<Ch>(8);
    Strings<Ch>::SetDoublequote(text<Ch>("ab").c_str(), dst.data(), 8);
    const auto got = std::basic_string<Ch>(dst.data());
    EXPECT_TRUE(got.empty() || got == text<Ch>("\"ab\""));
  });
}

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C.
TEST(NarrowDoubleQuotes, WorkOnBytes) {
  auto dst = sentinel_buffer<char>(8);
  KZ_SetDoublequoteA("\x95\x5C", dst.data(), 8);
  EXPECT_EQ(std::string(dst.data()), "\"\x95\x5C\"");
  KZ_SetDoublequoteA("a\x81", dst.data(), 8);  // a lead byte at the end
  EXPECT_EQ(std::string(dst.data()), "\"a\x81\"");
  // A quote in the middle costs a double-byte character at an end one byte.
  KZ_DelDoublequoteA("\x95\x5C\"x", dst.data(), 8);
  EXPECT_EQ(std::string(dst.data()), "\x5C\"");
  KZ_DelDoublequoteA("\"\x83\x5C\"", dst.data(), 8);
  EXPECT_EQ(std::string(dst.data()), "\x83\x5C");
  KZ_DelDoublequoteA("\"a\x81", dst.data(), 8);  // a lead byte at the end goes like any byte
  EXPECT_EQ(std::string(dst.data()), "a");
}

}  // namespace
