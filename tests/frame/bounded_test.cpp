// The bounded copies never write past their capacity: a destination too
// small is left empty and the copy reports failure.
#include "platform/platform.h"
#include "support.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

template <class Ch>
struct Copies;
template <>
struct Copies<char> {
  static int copy(char* d, std::size_t n, const char* s) { return os::strcpy_s(d, n, s); }
  static int copy_n(char* d, std::size_t n, const char* s, std::size_t c) {
    return os::strncpy_s(d, n, s, c);
  }
  static int append(char* d, std::size_t n, const char* s) { return os::strcat_s(d, n, s); }
};
template <>
struct Copies<wchar> {
  static int copy(wchar* d, std::size_t n, const wchar* s) { return os::wcscpy_s(d, n, s); }
  static int copy_n(wchar* d, std::size_t n, const wchar* s, std::size_t c) {
    return os::wcsncpy_s(d, n, s, c);
  }
  static int append(wchar* d, std::size_t n, const wchar* s) { return os::wcscat_s(d, n, s); }
};

template <class Ch>
class BoundedCopy : public ::testing::Test {};
TYPED_TEST_SUITE(BoundedCopy, ElementTypes);

TYPED_TEST(BoundedCopy, CopyFitsExactlyOrLeavesTheDestinationEmpty) {
  using Ch = TypeParam;
  const auto src = text<Ch>("abcd");
  struct Case {
    std::size_t size;
    int result;
    std::string dst;
  } cases[] = {{6, 0, "abcd"}, {5, 0, "abcd"}, {4, os::kERANGE, ""}, {1, os::kERANGE, ""}};
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Copies<Ch>::copy(buffer.data(), c.size, src.c_str()), c.result) << c.size;
    EXPECT_EQ(std::basic_string<Ch>(buffer.data()), text<Ch>(c.dst)) << c.size;
    for (std::size_t i = c.size; i < buffer.size(); ++i) EXPECT_EQ(buffer[i], Ch{0x7B}) << i;
  }
}

TYPED_TEST(BoundedCopy, CountedCopyStopsAtCountOrTerminator) {
  using Ch = TypeParam;
  const auto src = text<Ch>("abcd");
  struct Case {
    std::size_t size, count;
    int result;
    std::string dst;
  } cases[] = {{8, 2, 0, "ab"}, {3, 2, 0, "ab"}, {2, 2, os::kERANGE, ""},
               {8, 9, 0, "abcd"}, {8, 0, 0, ""}, {5, 4, 0, "abcd"}};
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    EXPECT_EQ(Copies<Ch>::copy_n(buffer.data(), c.size, src.c_str(), c.count), c.result);
    EXPECT_EQ(std::basic_string<Ch>(buffer.data()), text<Ch>(c.dst)) << c.size << " " << c.count;
  }
}

TYPED_TEST(BoundedCopy, AppendNeedsRoomForBothTexts) {
  using Ch = TypeParam;
  const auto tail = text<Ch>("cd");
  struct Case {
    std::size_t size;
    int result;
    std::string dst;
  } cases[] = {{5, 0, "abcd"}, {4, os::kERANGE, ""}, {2, os::kEINVAL, ""}};
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<Ch>(8);
    buffer[0] = 'a', buffer[1] = 'b', buffer[2] = 0;
    EXPECT_EQ(Copies<Ch>::append(buffer.data(), c.size, tail.c_str()), c.result) << c.size;
    EXPECT_EQ(std::basic_string<Ch>(buffer.data()), text<Ch>(c.dst)) << c.size;
  }
}

TYPED_TEST(BoundedCopy, NullArgumentsAndZeroSizeAreRefused) {
  using Ch = TypeParam;
  auto buffer = sentinel_buffer<Ch>(4);
  const auto src = text<Ch>("a");
  EXPECT_EQ(Copies<Ch>::copy(buffer.data(), 0, src.c_str()), os::kEINVAL);
  EXPECT_EQ(buffer[0], Ch{0x7B});
  EXPECT_EQ(Copies<Ch>::copy(nullptr, 4, src.c_str()), os::kEINVAL);
  EXPECT_EQ(Copies<Ch>::copy(buffer.data(), 4, nullptr), os::kEINVAL);
  EXPECT_EQ(buffer[0], Ch{0});
}

}  // namespace
