// The portable number text of radix.cpp: _itow_s and wcstol as the
// masked password text relies on them, the same on both builds.
#include <climits>

#include "platform/platform.h"
#include "support.h"

namespace {

using namespace kz::test;

TEST(Itow, WritesLowerCaseDigitsOfAnyRadix) {
  struct Case {
    int value, radix;
    const char* expected;
  } cases[] = {
      {0, 36, "0"},    {35, 36, "z"},  {36, 36, "10"},       {65535, 36, "1ekf"},
      {255, 16, "ff"}, {-5, 10, "-5"}, {-1, 16, "ffffffff"}, {INT_MIN, 10, "-2147483648"},
      {5, 2, "101"},
  };
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<wchar>(16);
    EXPECT_EQ(kz::os::_itow_s(c.value, buffer.data(), 16, c.radix), 0);
    EXPECT_EQ(wstring(buffer.data()), text<wchar>(c.expected)) << c.value;
  }
}

TEST(Itow, TooSmallABufferIsLeftEmpty) {
  // "1ekf" needs 5 units.
  for (std::size_t size : {5u, 4u, 1u}) {
    auto buffer = sentinel_buffer<wchar>(6);
    const auto result = kz::os::_itow_s(65535, buffer.data(), size, 36);
    EXPECT_EQ(result, size >= 5 ? 0 : kz::os::kERANGE) << size;
    EXPECT_EQ(wstring(buffer.data()), size >= 5 ? text<wchar>("1ekf") : wstring()) << size;
    EXPECT_EQ(buffer[size], wchar{0x7B});
  }
  EXPECT_EQ(kz::os::_itow_s(1, nullptr, 4, 36), kz::os::kEINVAL);
  wchar buffer[4];
  EXPECT_EQ(kz::os::_itow_s(1, buffer, 4, 37), kz::os::kEINVAL);
}

TEST(Wcstol, ReadsTheLongestNumberAtTheHead) {
  struct Case {
    const char* src;
    int radix;
    std::int32_t value;
    std::size_t consumed;
  } cases[] = {
      {"1ekf", 36, 65535, 4},
      {"1EKF", 36, 65535, 4},
      {"  -z", 36, -35, 4},
      {"\t+10", 36, 36, 4},
      {"zz*z", 36, 1295, 2},
      {"", 36, 0, 0},
      {"*1", 36, 0, 0},
      {"-", 36, 0, 0},
      {" ", 36, 0, 0},
      {"ff", 16, 255, 2},
      {"0x1F", 16, 31, 4},
      {"0X1fz", 16, 31, 4},
      {"7fffffff", 16, INT32_MAX, 8},
      {"-80000000", 16, INT32_MIN, 9},
      // Out of range: clamped to the limits of a 32-bit long, and every digit
      // is still consumed.
      {"80000000", 16, INT32_MAX, 8},
      {"-80000001", 16, INT32_MIN, 9},
      {"zzzzzzzzz", 36, INT32_MAX, 9},
      {"-zzzzzzzzz", 36, INT32_MIN, 10},
      {"123", 10, 123, 3},
      {"0x10", 0, 16, 4},
      {"010", 0, 8, 3},
      {"19", 8, 1, 1},
  };
  for (const auto& c : cases) {
    const auto src = text<wchar>(c.src);
    wchar* end = nullptr;
    EXPECT_EQ(kz::os::wcstol(src.c_str(), &end, c.radix), c.value) << c.src;
    EXPECT_EQ(static_cast<std::size_t>(end - src.c_str()), c.consumed) << c.src;
  }
  EXPECT_EQ(kz::os::wcstol(text<wchar>("12").c_str(), nullptr, 36), 38);
}

}  // namespace
