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
  // size, count, result, expected (null: untouched), null dst, null src
  const std::tuple<std::size_t, int, int, const char*, bool, bool> cases[] = {
      {5, 0, 0, "abcd", false, false},        {4, 0, os::kERANGE, "", false, false},
      {3, 2, 0, "ab", false, false},          {2, 2, os::kERANGE, "", false, false},
      {8, 9, 0, "abcd", false, false},        {8, -2, 0, "", false, false},
      {5, -1, 0, "abcd", false, false},       {4, -1, os::kERANGE, "", false, false},
      {2, -1, os::kEINVAL, "", false, false}, {0, 0, os::kEINVAL, nullptr, false, false},
      {4, 0, os::kEINVAL, "", false, true},   {4, 0, os::kEINVAL, nullptr, true, false}};
  for (const auto& [size, count, result, expected, null_dst, null_src] : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    if (count == -1) buffer[0] = 'a', buffer[1] = 'b', buffer[2] = 0;
    const auto text_in = text<Ch>(count == -1 ? "cd" : "abcd");
    Ch* dst = null_dst ? nullptr : buffer.data();
    const Ch* src = null_src ? nullptr : text_in.c_str();
    EXPECT_EQ(count == -1  ? T::append(dst, size, src)
              : count == 0 ? T::copy(dst, size, src)
                           : T::copy_n(dst, size, src, count < 0 ? 0 : count),
              result)
        << "size " << size << " count " << count;
    EXPECT_TRUE(expected ? holds(buffer, text<Ch>(expected), 0,
                                 std::max<std::size_t>(size, count == -1 ? 3 : 0))
                         : untouched_from(buffer, 0))
        << "size " << size << " count " << count;
  }
}

}  // namespace
