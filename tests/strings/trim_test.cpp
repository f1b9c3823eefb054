// The trims and the zero suppression, in both twins, and their narrow scans
// around double-byte characters.
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Trimming);

enum class Op { kLeft, kRight, kBoth, kZeros };

template <class Ch>
int32_t run(Op op, Ch* dst, const Ch* src, int32_t size, Ch trim) {
  return op == Op::kLeft    ? Twin<Ch>::StringTrimLeft(dst, src, size, trim)
         : op == Op::kRight ? Twin<Ch>::StringTrimRight(dst, src, size, trim)
         : op == Op::kBoth  ? Twin<Ch>::StringTrim(dst, src, size, trim)
                            : Twin<Ch>::StringZeroSuppress(dst, src, size);
}

// A text of trim elements alone stays whole on the left and keeps one
// element on the right (both intended); zeros alone give the empty text,
// and no sign is looked at. In narrow text ("ソ" is 0x83 0x5C, "表" 0x95
// 0x5C) a lead byte equal to trim is protected by the pair test, but one at
// the end is no pair; 0x81 0x81 is a pair as well; a trail byte equal to
// trim does not shorten its character.
TYPED_TEST(Trimming, DropTrimElementsAndLeadingZeros) {
  using Ch = TypeParam;
  const struct {
    Op op;
    const char *src, *expected;
    char trim = ' ';
    Only only = kBoth;
  } cases[] = {{Op::kLeft, "  ab ", "ab "},
               {Op::kRight, "  ab ", "  ab"},
               {Op::kBoth, "  ab ", "ab"},
               {Op::kLeft, "   ", "   "},
               {Op::kBoth, "   ", " "},
               {Op::kRight, "", ""},
               {Op::kZeros, "00120", "120"},
               {Op::kZeros, "000", ""},
               {Op::kZeros, "-007", "-007"},
               {Op::kLeft, "\x83\x5C", "\x83\x5C", '\x83', kNarrow},
               {Op::kLeft, "\x81", "\x81", '\x81', kNarrow},
               {Op::kRight, "a\x81", "a", '\x81', kNarrow},
               {Op::kRight, "a\x81\x81", "a\x81\x81", '\x81', kNarrow},
               {Op::kRight, "a\x83\x5C\\\\", "a\x83\x5C", '\\', kNarrow},
               {Op::kBoth, "\\\x95\x5C\\", "\x95\x5C", '\\', kNarrow}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    const auto expected = text<Ch>(c.expected);
    EXPECT_EQ(run(c.op, dst.data(), text<Ch>(c.src).c_str(), 8, Ch(c.trim)),
              static_cast<int32_t>(expected.size()))
        << static_cast<int>(c.op) << " '" << c.src << "'";
    EXPECT_TRUE(holds(dst, expected, 0, 8)) << static_cast<int>(c.op) << " '" << c.src << "'";
  }
}

// Each result "ab" needs 3 elements with its terminator; the right trim
// also works in place.
TYPED_TEST(Trimming, SizesAroundTheResult) {
  using Ch = TypeParam;
  for (const auto& [op, src] : {std::pair(Op::kLeft, "  ab"),
                                {Op::kRight, "ab  "},
                                {Op::kBoth, "ab"},
                                {Op::kZeros, "00ab"}})
    for (int32_t size : {3, 2, 1, 0}) {
      auto dst = sentinel_buffer<Ch>(6);
      EXPECT_EQ(run(op, dst.data(), text<Ch>(src).c_str(), size, Ch(' ')), size >= 3 ? 2 : 0);
      EXPECT_TRUE(size > 0 ? holds(dst, text<Ch>(size >= 3 ? "ab" : ""), 0, size)
                           : untouched_from(dst, 0))
          << static_cast<int>(op) << " size " << size;
    }
  auto buffer = text<Ch>("ab   ");
  EXPECT_EQ(Twin<Ch>::StringTrimRight(buffer.data(), buffer.c_str(), 6, Ch(' ')), 2);
  EXPECT_EQ(std::basic_string<Ch>(buffer.c_str()), text<Ch>("ab"));
}

}  // namespace
