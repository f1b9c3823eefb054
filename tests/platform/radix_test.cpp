// The portable number text of radix.cpp: _itow_s and wcstol as the
// masked password text relies on them, the same on both builds.
#include <climits>

#include "platform/platform.h"
#include "support.h"

namespace {

using namespace kz::test;

TEST(Itow, WritesLowerCaseDigitsOfAnyRadixOrLeavesTheBufferEmpty) {
  struct Case {
    int value, radix;
    std::size_t size;
    const char* expected;  // null: too small a buffer
  } cases[] = {
      {0, 36, 16, "0"},
      {35, 36, 16, "z"},
      {36, 36, 16, "10"},
      {-5, 10, 16, "-5"},
      {-1, 16, 16, "ffffffff"},
      {INT_MIN, 10, 16, "-2147483648"},
      // "1ekf" needs 5 units.
      {65535, 36, 5, "1ekf"},
      {65535, 36, 4, nullptr},
  };
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<wchar>(17);
    EXPECT_EQ(kz::os::_itow_s(c.value, buffer.data(), c.size, c.radix),
              c.expected ? 0 : kz::os::kERANGE)
        << c.value << " size " << c.size;
    EXPECT_TRUE(holds(buffer, text<wchar>(c.expected ? c.expected : ""), 0, c.size)) << c.value;
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
      {"  -z", 36, -35, 4},
      {"zz*z", 36, 1295, 2},
      {"", 36, 0, 0},
      {"-", 36, 0, 0},
      {"0x1F", 16, 31, 4},
      // Out of range: clamped to the limits of a 32-bit long, and every digit
      // is still consumed.
      {"80000000", 16, INT32_MAX, 8},
      {"-80000001", 16, INT32_MIN, 9},
      {"zzzzzzzzz", 36, INT32_MAX, 9},
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
