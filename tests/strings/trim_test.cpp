// The trims and the zero suppression, in both twins, and their narrow scans
// around double-byte characters.
#include <cstring>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Trimming);

enum Op { kLeft, kRight, kTrim, kZeros };

template <class Ch>
int32_t run(Op op, Ch* dst, const Ch* src, int32_t size, Ch trim) {
  return op == kLeft    ? Twin<Ch>::StringTrimLeft(dst, src, size, trim)
         : op == kRight ? Twin<Ch>::StringTrimRight(dst, src, size, trim)
         : op == kTrim  ? Twin<Ch>::StringTrim(dst, src, size, trim)
                        : Twin<Ch>::StringZeroSuppress(dst, src, size);
}

// A text of trim elements alone stays whole on the left and keeps one
// element on the right (both intended); zeros alone give the empty text,
// and no sign is looked at. In narrow text ("ソ" is 0x83 0x5C, "表" 0x95
// 0x5C) a lead byte equal to trim is protected by the pair test, but one at
// the end is no pair; 0x81 0x81 is a pair as well; a trail byte equal to
// trim does not shorten its character. The right trim also works in place.
TYPED_TEST(Trimming, DropTrimElementsAndLeadingZeros) {
  using Ch = TypeParam;
  const std::tuple<Op, const char*, const char*, char, Only> cases[] = {
      {kLeft, "  ab ", "ab ", ' ', kBoth},
      {kRight, "  ab ", "  ab", ' ', kBoth},
      {kTrim, "  ab ", "ab", ' ', kBoth},
      {kLeft, "   ", "   ", ' ', kBoth},
      {kTrim, "   ", " ", ' ', kBoth},
      {kRight, "", "", ' ', kBoth},
      {kZeros, "00120", "120", ' ', kBoth},
      {kZeros, "000", "", ' ', kBoth},
      {kZeros, "-007", "-007", ' ', kBoth},
      {kLeft, "\x83\x5C", "\x83\x5C", '\x83', kNarrow},
      {kLeft, "\x81", "\x81", '\x81', kNarrow},
      {kRight, "a\x81", "a", '\x81', kNarrow},
      {kRight, "a\x81\x81", "a\x81\x81", '\x81', kNarrow},
      {kRight, "a\x83\x5C\\\\", "a\x83\x5C", '\\', kNarrow},
      {kTrim, "\\\x95\x5C\\", "\x95\x5C", '\\', kNarrow}};
  for (const auto& [op, src, expected, trim, only] : cases) {
    if (!runs<Ch>(only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    EXPECT_EQ(run(op, dst.data(), text<Ch>(src).c_str(), 8, Ch(trim)),
              static_cast<int32_t>(std::strlen(expected)))
        << op << " '" << src << "'";
    EXPECT_TRUE(holds(dst, text<Ch>(expected), 0, 8)) << op << " '" << src << "'";
  }
  auto buffer = text<Ch>("ab   ");  // in place
  EXPECT_EQ(Twin<Ch>::StringTrimRight(buffer.data(), buffer.c_str(), 6, Ch(' ')), 2);
  EXPECT_EQ(std::basic_string<Ch>(buffer.c_str()), text<Ch>("ab"));
}

}  // namespace
