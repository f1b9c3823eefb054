// The bounded copies never write past their capacity: a destination too
// small is left empty and the copy reports failure.
#include <algorithm>

#include "frame/text.h"
#include "support.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

template <class Ch>
class BoundedCopy : public ::testing::Test {};
TYPED_TEST_SUITE(BoundedCopy, ElementTypes);

enum class Op { kCopy, kCopyN, kAppend };

// Through the traits the library copies with: strcpy_s and wcscpy_s and
// their kin, one line each.
template <class Ch>
int run(Op op, Ch* dst, std::size_t size, const Ch* src, std::size_t count) {
  using T = kz::Text<Ch>;
  return op == Op::kCopy    ? T::copy(dst, size, src)
         : op == Op::kCopyN ? T::copy_n(dst, size, src, count)
                            : T::append(dst, size, src);
}

// Copies take "abcd"; the append adds "cd" to "ab".
TYPED_TEST(BoundedCopy, FitsExactlyOrLeavesTheDestinationEmpty) {
  using Ch = TypeParam;
  struct Case {
    Op op;
    std::size_t size, count;
    int result;
    const char* expected;
  } cases[] = {
      {Op::kCopy, 6, 0, 0, "abcd"},
      {Op::kCopy, 5, 0, 0, "abcd"},
      {Op::kCopy, 4, 0, os::kERANGE, ""},
      {Op::kCopy, 1, 0, os::kERANGE, ""},
      // The counted copy stops at count or the terminator.
      {Op::kCopyN, 8, 2, 0, "ab"},
      {Op::kCopyN, 3, 2, 0, "ab"},
      {Op::kCopyN, 2, 2, os::kERANGE, ""},
      {Op::kCopyN, 8, 9, 0, "abcd"},
      {Op::kCopyN, 8, 0, 0, ""},
      {Op::kCopyN, 5, 4, 0, "abcd"},
      // The append needs room for both texts; a destination without its
      // terminator inside size is refused outright.
      {Op::kAppend, 5, 0, 0, "abcd"},
      {Op::kAppend, 4, 0, os::kERANGE, ""},
      {Op::kAppend, 2, 0, os::kEINVAL, ""},
  };
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    const bool append = c.op == Op::kAppend;
    if (append) buffer[0] = 'a', buffer[1] = 'b', buffer[2] = 0;
    EXPECT_EQ(run(c.op, buffer.data(), c.size, text<Ch>(append ? "cd" : "abcd").c_str(), c.count),
              c.result)
        << static_cast<int>(c.op) << " size " << c.size << " count " << c.count;
    EXPECT_EQ(str(buffer), text<Ch>(c.expected)) << static_cast<int>(c.op) << " size " << c.size;
    EXPECT_TRUE(untouched_from(buffer, std::max<std::size_t>(c.size, append ? 3 : 0)))
        << static_cast<int>(c.op) << " size " << c.size;
  }
}

TYPED_TEST(BoundedCopy, NullArgumentsAndZeroSizeAreRefused) {
  using Ch = TypeParam;
  auto buffer = sentinel_buffer<Ch>(4);
  const auto src = text<Ch>("a");
  EXPECT_EQ(run(Op::kCopy, buffer.data(), 0, src.c_str(), 0), os::kEINVAL);
  EXPECT_TRUE(untouched_from(buffer, 0));
  EXPECT_EQ(run(Op::kCopy, static_cast<Ch*>(nullptr), 4, src.c_str(), 0), os::kEINVAL);
  EXPECT_EQ(run(Op::kCopy, buffer.data(), 4, static_cast<const Ch*>(nullptr), 0), os::kEINVAL);
  EXPECT_EQ(buffer[0], Ch{0});
}

}  // namespace
