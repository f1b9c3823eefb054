// Adding and removing double quotes, in both twins.
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(DoubleQuotes);

constexpr bool kSet = true;
constexpr bool kDel = false;

template <class Ch>
void quote(bool set, const Ch* src, Ch* dst, int32_t size) {
  set ? Twin<Ch>::SetDoublequote(src, dst, size) : Twin<Ch>::DelDoublequote(src, dst, size);
}

// A text with a quote anywhere counts as quoted: set adds nothing, del
// takes its first and last element whatever they are (intended), in narrow
// text one byte of "表" (0x95 0x5C). Set needs room for both quotes ("abc"
// needs 6), del for the source ("\"ab\"" needs 5) though its result needs
// less; a size below leaves the empty text, a size of 0 writes nothing.
// Set then del in place gives the text back.
TYPED_TEST(DoubleQuotes, SetAndDelGoByAnyQuoteInTheText) {
  using Ch = TypeParam;
  struct Case {
    bool set;
    const char *src, *expected;
    int32_t size;
    Only only;
  } cases[] = {{kSet, "\"abc\"", "\"abc\"", 8, kBoth}, {kDel, "\"abc\"", "abc", 8, kBoth},
               {kDel, "abc", "abc", 8, kBoth},         {kDel, "\"", "", 8, kBoth},
               {kDel, "a\"b", "\"", 8, kBoth},         {kSet, "abc", "\"abc\"", 7, kBoth},
               {kSet, "abc", "\"abc\"", 6, kBoth},     {kSet, "abc", "", 5, kBoth},
               {kSet, "abc", nullptr, 0, kBoth},       {kDel, "\"ab\"", "ab", 5, kBoth},
               {kDel, "\"ab\"", "", 4, kBoth},         {kSet, "a\x81", "\"a\x81\"", 8, kNarrow},
               {kDel, "\x95\\\"x", "\\\"", 8, kNarrow}};
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto dst = sentinel_buffer<Ch>(8);
    quote(c.set, text<Ch>(c.src).c_str(), dst.data(), c.size);
    EXPECT_TRUE(c.expected ? holds(dst, text<Ch>(c.expected), 0, static_cast<std::size_t>(c.size))
                           : untouched_from(dst, 0))
        << c.set << " " << c.src << " size " << c.size;
  }
  for (const char* src : {"", "a b,c"}) {
    auto buffer = sentinel_buffer<Ch>(12);
    Twin<Ch>::SetDoublequote(text<Ch>(src).c_str(), buffer.data(), 12);
    Twin<Ch>::DelDoublequote(buffer.data(), buffer.data(), 12);
    EXPECT_EQ(str(buffer), text<Ch>(src));
  }
}

}  // namespace
