// The bounded copies never write past their capacity: a destination too
// small is left empty and the copy reports failure.
#include "frame/text.h"
#include "support.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

KZ_TWIN_SUITE(BoundedCopy);

// Copies (count 0) take "abcd" through the traits the library copies with
// (strcpy_s, wcsncpy_s and their kin); the counted copy stops at count or
// the terminator. The append (count -1) adds "cd" to "ab", needs room for
// both, and refuses a destination without its terminator inside size. Null
// arguments and a size of 0 are refused.
TYPED_TEST(BoundedCopy, FitsExactlyOrLeavesTheDestinationEmpty) {
  using Ch = TypeParam;
  using T = kz::Text<Ch>;
  const struct {
    std::size_t size;
    int count, result;
    const char* expected;  // null: untouched
    bool null_dst = false, null_src = false;
  } cases[] = {{5, 0, 0, "abcd"},
               {4, 0, os::kERANGE, ""},
               {3, 2, 0, "ab"},
               {2, 2, os::kERANGE, ""},
               {8, 9, 0, "abcd"},
               {8, -2, 0, ""},
               {5, -1, 0, "abcd"},
               {4, -1, os::kERANGE, ""},
               {2, -1, os::kEINVAL, ""},
               {0, 0, os::kEINVAL, nullptr},
               {4, 0, os::kEINVAL, "", false, true},
               {4, 0, os::kEINVAL, nullptr, true}};
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    if (c.count == -1) buffer[0] = 'a', buffer[1] = 'b', buffer[2] = 0;
    const auto text_in = text<Ch>(c.count == -1 ? "cd" : "abcd");
    Ch* dst = c.null_dst ? nullptr : buffer.data();
    const Ch* src = c.null_src ? nullptr : text_in.c_str();
    EXPECT_EQ(c.count == -1  ? T::append(dst, c.size, src)
              : c.count == 0 ? T::copy(dst, c.size, src)
                             : T::copy_n(dst, c.size, src, c.count < 0 ? 0 : c.count),
              c.result)
        << "size " << c.size << " count " << c.count;
    EXPECT_TRUE(c.expected ? holds(buffer, text<Ch>(c.expected), 0,
                                   std::max<std::size_t>(c.size, c.count == -1 ? 3 : 0))
                           : untouched_from(buffer, 0))
        << "size " << c.size << " count " << c.count;
  }
}

}  // namespace
