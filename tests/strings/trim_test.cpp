// The trims and the zero suppression, in both twins, and their narrow scans
// around double-byte characters.
#include "strings/api.h"

namespace {

using namespace kz::test;

template <class Ch>
class Trimming : public ::testing::Test {};
TYPED_TEST_SUITE(Trimming, ElementTypes);

enum class Op { kLeft, kRight, kBoth, kZeros };

template <class Ch>
int32_t run(Op op, Ch* dst, const Ch* src, int32_t size, Ch trim) {
  switch (op) {
    case Op::kLeft:
      return Strings<Ch>::StringTrimLeft(dst, src, size, trim);
    case Op::kRight:
      return Strings<Ch>::StringTrimRight(dst, src, size, trim);
    case Op::kBoth:
      return Strings<Ch>::StringTrim(dst, src, size, trim);
    case Op::kZeros:
      break;
  }
  return Strings<Ch>::StringZeroSuppress(dst, src, size);
}

struct Case {
  Op op;
  const char* src;
  const char* expected;
};

const Case kCases[] = {
    {Op::kLeft, "  ab ", "ab "},
    {Op::kRight, "  ab ", "  ab"},
    {Op::kBoth, "  ab ", "ab"},
    // A text of trim elements alone stays whole on the left and keeps one
    // element on the right. Both intended.
    {Op::kLeft, "   ", "   "},
    {Op::kRight, "   ", " "},
    {Op::kBoth, "   ", " "},
    {Op::kLeft, "", ""},
    {Op::kRight, "", ""},
    {Op::kBoth, "", ""},
    {Op::kLeft, "ab", "ab"},
    {Op::kRight, "a b", "a b"},
    {Op::kZeros, "00120", "120"},
    {Op::kZeros, "000", ""},
    {Op::kZeros, "0", ""},
    {Op::kZeros, "", ""},
    {Op::kZeros, "-007", "-007"},
    {Op::kZeros, " 07", " 07"},
};

TYPED_TEST(Trimming, DropTrimElementsAndLeadingZeros) {
  using Ch = TypeParam;
  for (const auto& c : kCases) {
    auto dst = sentinel_buffer<Ch>(8);
    const auto expected = text<Ch>(c.expected);
    EXPECT_EQ(run(c.op, dst.data(), text<Ch>(c.src).c_str(), 8, Ch(' ')),
              static_cast<int32_t>(expected.size()))
        << static_cast<int>(c.op) << " '" << c.src << "'";
    EXPECT_EQ(std::basic_string<Ch>(dst.data()), expected)
        << static_cast<int>(c.op) << " '" << c.src << "'";
  }
}

TYPED_TEST(Trimming, SizesAroundTheResult) {
  using Ch = TypeParam;
  // Each result "ab" needs 3 elements with its terminator.
  const Case cases[] = {
      {Op::kLeft, "  ab", "ab"},
      {Op::kRight, "ab  ", "ab"},
      {Op::kBoth, "ab", "ab"},
      {Op::kZeros, "00ab", "ab"},
  };
  for (const auto& c : cases) {
    const auto src = text<Ch>(c.src);
    for (int32_t size : {4, 3, 2, 1, 0}) {
      auto dst = sentinel_buffer<Ch>(6);
      const bool fits = size >= 3;
      EXPECT_EQ(run(c.op, dst.data(), src.c_str(), size, Ch(' ')), fits ? 2 : 0)
          << static_cast<int>(c.op) << " size " << size;
      if (size > 0) {
        EXPECT_EQ(std::basic_string<Ch>(dst.data()), fits ? text<Ch>("ab") : text<Ch>(""));
      }
      for (std::size_t i = static_cast<std::size_t>(size); i < dst.size(); ++i)
        EXPECT_EQ(dst[i], Ch{0x7B}) << static_cast<int>(c.op) << " size " << size << " at " << i;
    }
  }
}

TYPED_TEST(Trimming, RightTrimInPlace) {
  using Ch = TypeParam;
  auto buffer = text<Ch>("ab   ");
  EXPECT_EQ(Strings<Ch>::StringTrimRight(buffer.data(), buffer.c_str(), 6, Ch(' ')), 2);
  EXPECT_EQ(std::basic_string<Ch>(buffer.c_str()), text<Ch>("ab"));
}

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C.
TEST(NarrowTrimming, ScansEndAtADoubleByteCharacter) {
  struct NarrowCase {
    Op op;
    const char* src;
    char trim;
    const char* expected;
  } cases[] = {
      {Op::kLeft, " \x95\x5C ", ' ', "\x95\x5C "},
      {Op::kLeft, "\x95\x5C", '\\', "\x95\x5C"},
      // A lead byte equal to trim is protected by the pair test...
      {Op::kLeft, "\x83\x5C", '\x83', "\x83\x5C"},
      // ...but a lead byte at the end is no pair: a text of trim alone.
      {Op::kLeft, "\x81", '\x81', "\x81"},
      {Op::kRight, "a\x81", '\x81', "a"},
      // 0x81 0x81 is a pair as well (0x81 is a trail byte too): both stay.
      {Op::kRight, "a\x81\x81", '\x81', "a\x81\x81"},
      // A trail byte equal to trim does not shorten the character.
      {Op::kRight, "\x95\x5C", '\\', "\x95\x5C"},
      {Op::kRight, "\x95\x5C\\", '\\', "\x95\x5C"},
      {Op::kRight, "a\x83\x5C\\\\", '\\', "a\x83\x5C"},
      {Op::kBoth, "\\\x95\x5C\\", '\\', "\x95\x5C"},
      {Op::kZeros, "00\x95\x5C", '0', "\x95\x5C"},
      {Op::kZeros, "0\x81", '0', "\x81"},
  };
  for (const auto& c : cases) {
    auto dst = sentinel_buffer<char>(8);
    const std::string expected = c.expected;
    EXPECT_EQ(run(c.op, dst.data(), c.src, 8, c.trim), static_cast<int32_t>(expected.size()))
        << static_cast<int>(c.op) << " " << c.src;
    EXPECT_EQ(std::string(dst.data()), expected) << static_cast<int>(c.op) << " " << c.src;
  }
}

}  // namespace
