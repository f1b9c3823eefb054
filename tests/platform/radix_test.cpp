// The portable number text of radix.cpp: _itow_s and wcstol as the
// masked password text relies on them, and the decimal writers of every
// width of number that coinage text stands on; the same on both builds.
#include <climits>
#include <random>
#include <string>

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
      {255, 16, 16, "ff"},
      {-5, 10, 16, "-5"},
      {-1, 16, 16, "ffffffff"},
      {5, 2, 16, "101"},
      {INT_MIN, 10, 16, "-2147483648"},
      // "1ekf" needs 5 units.
      {65535, 36, 6, "1ekf"},
      {65535, 36, 5, "1ekf"},
      {65535, 36, 4, nullptr},
      {65535, 36, 1, nullptr},
  };
  for (const auto& c : cases) {
    auto buffer = sentinel_buffer<wchar>(17);
    EXPECT_EQ(kz::os::_itow_s(c.value, buffer.data(), c.size, c.radix),
              c.expected ? 0 : kz::os::kERANGE)
        << c.value << " size " << c.size;
    EXPECT_EQ(str(buffer), text<wchar>(c.expected ? c.expected : "")) << c.value;
    EXPECT_TRUE(untouched_from(buffer, c.size)) << c.value << " size " << c.size;
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

namespace {

using namespace kz::test;

// The decimal writers of every width of number, in both widths of text.
template <class Ch>
struct Decimal;
template <>
struct Decimal<char> {
  static auto write(std::int32_t v, char* b, std::size_t n) { return kz::os::_itoa_s(v, b, n, 10); }
  static auto write(std::uint32_t v, char* b, std::size_t n) {
    return kz::os::_ultoa_s(v, b, n, 10);
  }
  static auto write(std::int64_t v, char* b, std::size_t n) {
    return kz::os::_i64toa_s(v, b, n, 10);
  }
  static auto write(std::uint64_t v, char* b, std::size_t n) {
    return kz::os::_ui64toa_s(v, b, n, 10);
  }
};
template <>
struct Decimal<wchar> {
  static auto write(std::int32_t v, wchar* b, std::size_t n) {
    return kz::os::_itow_s(v, b, n, 10);
  }
  static auto write(std::uint32_t v, wchar* b, std::size_t n) {
    return kz::os::_ultow_s(v, b, n, 10);
  }
  static auto write(std::int64_t v, wchar* b, std::size_t n) {
    return kz::os::_i64tow_s(v, b, n, 10);
  }
  static auto write(std::uint64_t v, wchar* b, std::size_t n) {
    return kz::os::_ui64tow_s(v, b, n, 10);
  }
};

template <class Ch>
class DecimalText : public ::testing::Test {};
TYPED_TEST_SUITE(DecimalText, ElementTypes);

// The text is the C++ library's, and it fits exactly its length plus one.
template <class Ch, class Value>
void expect_decimal(Value value) {
  const auto expected = text<Ch>(std::to_string(value));
  const std::size_t needed = expected.size() + 1;
  for (std::size_t size : {needed + 1, needed, needed - 1, std::size_t{1}}) {
    auto buffer = sentinel_buffer<Ch>(needed + 2);
    const bool fits = size >= needed;
    ASSERT_EQ(Decimal<Ch>::write(value, buffer.data(), size), fits ? 0 : kz::os::kERANGE)
        << value << " size " << size;
    ASSERT_EQ(str(buffer), fits ? expected : text<Ch>("")) << value;
    ASSERT_TRUE(untouched_from(buffer, fits ? needed : 1)) << value << " size " << size;
  }
  Ch buffer[1];
  EXPECT_EQ(Decimal<Ch>::write(value, buffer, 0), kz::os::kEINVAL);
}

TYPED_TEST(DecimalText, WritesEveryWidthOfNumberAsTheCxxLibraryDoes) {
  using Ch = TypeParam;
  std::mt19937_64 random(7);
  for (int round = 0; round < 2000; ++round) {
    const std::uint64_t bits = random() >> (random() % 64);
    expect_decimal<Ch>(static_cast<std::int32_t>(bits));
    expect_decimal<Ch>(static_cast<std::uint32_t>(bits));
    expect_decimal<Ch>(static_cast<std::int64_t>(bits));
    expect_decimal<Ch>(bits);
  }
  for (std::int64_t limit : {INT64_MIN, INT64_MAX, std::int64_t{0}}) expect_decimal<Ch>(limit);
  expect_decimal<Ch>(INT32_MIN);
  expect_decimal<Ch>(UINT32_MAX);
  expect_decimal<Ch>(UINT64_MAX);
}

}  // namespace
