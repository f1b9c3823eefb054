// The trims and the zero suppression, in both twins, and their narrow scans
// around double-byte characters.
#include "support.h"
#include "twins.h"

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
      return Twin<Ch>::StringTrimLeft(dst, src, size, trim);
    case Op::kRight:
      return Twin<Ch>::StringTrimRight(dst, src, size, trim);
    case Op::kBoth:
      return Twin<Ch>::StringTrim(dst, src, size, trim);
    case Op::kZeros:
      break;
  }
  return Twin<Ch>::StringZeroSuppress(dst, src, size);
}

// Shift-JIS: "表" is 0x95 0x5C, "ソ" 0x83 0x5C.
TYPED_TEST(Trimming, DropTrimElementsAndLeadingZeros) {
  using Ch = TypeParam;
  struct Case {
    Op op;
    const char *src, *expected;
    char trim = ' ';
    Only only = Only::kBoth;
  } cases[] = {
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
      // Narrow scans end at a double-byte character.
      {Op::kLeft, " \x95\x5C ", "\x95\x5C ", ' ', Only::kNarrow},
      {Op::kLeft, "\x95\x5C", "\x95\x5C", '\\', Only::kNarrow},
      // A lead byte equal to trim is protected by the pair test...
      {Op::kLeft, "\x83\x5C", "\x83\x5C", '\x83', Only::kNarrow},
      // ...but a lead byte at the end is no pair: a text of trim alone.
      {Op::kLeft, "\x81", "\x81", '\x81', Only::kNarrow},
      {Op::kRight, "a\x81", "a", '\x81', Only::kNarrow},
      // 0x81 0x81 is a pair as well (0x81 is a trail byte too): both stay.
      {Op::kRight, "a\x81\x81", "a\x81\x81", '\x81', Only::kNarrow},
      // A trail byte equal to trim does not shorten the character.
      {Op::kRight, "\x95\x5C", "\x95\x5C", '\\', Only::kNarrow},
      {Op::kRight, "\x95\x5C\\", "\x95\x5C", '\\', Only::kNarrow},
      {Op::kRight, "a\x83\x5C\\\\", "a\x83\x5C", '\\', Only::kNarrow},
      {Op::kBoth, "\\\x95\x5C\\", "\x95\x5C", '\\', Only::kNarrow},
      {Op::kZeros, "00\x95\x5C", "\x95\x5C", ' ', Only::kNarrow},
      {Op::kZeros, "0\x81", "\x81", ' ', Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    const auto expected = text<Ch>(c.expected);
    EXPECT_EQ(run(c.op, dst.data(), text<Ch>(c.src).c_str(), 8, Ch(c.trim)),
              static_cast<int32_t>(expected.size()))
        << static_cast<int>(c.op) << " '" << c.src << "'";
    EXPECT_EQ(str(dst), expected) << static_cast<int>(c.op) << " '" << c.src << "'";
  }
}

TYPED_TEST(Trimming, SizesAroundTheResult) {
  using Ch = TypeParam;
  // Each result "ab" needs 3 elements with its terminator.
  const struct {
    Op op;
    const char* src;
  } cases[] = {
      {Op::kLeft, "  ab"},
      {Op::kRight, "ab  "},
      {Op::kBoth, "ab"},
      {Op::kZeros, "00ab"},
  };
  for (const auto& c : cases) {
    for (int32_t size : {4, 3, 2, 1, 0}) {
      auto dst = sentinel_buffer<Ch>(6);
      const bool fits = size >= 3;
      EXPECT_EQ(run(c.op, dst.data(), text<Ch>(c.src).c_str(), size, Ch(' ')), fits ? 2 : 0)
          << static_cast<int>(c.op) << " size " << size;
      if (size > 0) {
        EXPECT_EQ(str(dst), fits ? text<Ch>("ab") : text<Ch>(""));
      }
      EXPECT_TRUE(untouched_from(dst, static_cast<std::size_t>(size)))
          << static_cast<int>(c.op) << " size " << size;
    }
  }
  // In place, src and dst the same buffer.
  auto buffer = text<Ch>("ab   ");
  EXPECT_EQ(Twin<Ch>::StringTrimRight(buffer.data(), buffer.c_str(), 6, Ch(' ')), 2);
  EXPECT_EQ(std::basic_string<Ch>(buffer.c_str()), text<Ch>("ab"));
}

}  // namespace
