// The bounded copies never write past their capacity: a destination too
// small is left empty and the copy reports failure.
#include "frame/text.h"
#include "support.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

KZ_TWIN_SUITE(BoundedCopy);

enum class Op { kCopy, kCopyN, kAppend };

// Copies take "abcd" through the traits the library copies with (strcpy_s,
// wcsncpy_s and their kin); the counted copy stops at count or the
// terminator. The append adds "cd" to "ab", needs room for both, and
// refuses a destination without its terminator inside size.
TYPED_TEST(BoundedCopy, FitsExactlyOrLeavesTheDestinationEmpty) {
  using Ch = TypeParam;
  using T = kz::Text<Ch>;
  struct Case {
    Op op;
    std::size_t size, count;
    int result;
    const char* expected;
  } cases[] = {
      {Op::kCopy, 6, 0, 0, "abcd"},
      {Op::kCopy, 5, 0, 0, "abcd"},
      {Op::kCopy, 4, 0, os::kERANGE, ""},
      {Op::kCopyN, 3, 2, 0, "ab"},
      {Op::kCopyN, 2, 2, os::kERANGE, ""},
      {Op::kCopyN, 8, 9, 0, "abcd"},
      {Op::kCopyN, 8, 0, 0, ""},
      {Op::kAppend, 5, 0, 0, "abcd"},
      {Op::kAppend, 4, 0, os::kERANGE, ""},
      {Op::kAppend, 2, 0, os::kEINVAL, ""},
  };
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    const bool append = c.op == Op::kAppend;
    if (append) buffer[0] = 'a', buffer[1] = 'b', buffer[2] = 0;
    const auto src = text<Ch>(append ? "cd" : "abcd");
    Ch* dst = buffer.data();
    EXPECT_EQ(c.op == Op::kCopy    ? T::copy(dst, c.size, src.c_str())
              : c.op == Op::kCopyN ? T::copy_n(dst, c.size, src.c_str(), c.count)
                                   : T::append(dst, c.size, src.c_str()),
              c.result)
        << static_cast<int>(c.op) << " size " << c.size << " count " << c.count;
    EXPECT_TRUE(
        holds(buffer, text<Ch>(c.expected), 0, std::max<std::size_t>(c.size, append ? 3 : 0)))
        << static_cast<int>(c.op) << " size " << c.size;
  }
  // Null arguments and a size of 0 are refused.
  auto buffer = sentinel_buffer<Ch>(4);
  const auto src = text<Ch>("a");
  EXPECT_EQ(T::copy(buffer.data(), 0, src.c_str()), os::kEINVAL);
  EXPECT_TRUE(untouched_from(buffer, 0));
  EXPECT_EQ(T::copy(nullptr, 4, src.c_str()), os::kEINVAL);
  EXPECT_EQ(T::copy(buffer.data(), 4, nullptr), os::kEINVAL);
  EXPECT_EQ(buffer[0], Ch{0});
}

}  // namespace
