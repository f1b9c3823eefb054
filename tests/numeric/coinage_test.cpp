// Coinage text in both twins: the writers for the four number types, the
// readers, the round trip between them, the size bound and allocation
// failures.
#include <climits>
#include <random>
#include <string>
#include <type_traits>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Coinage : public ::testing::Test {};
TYPED_TEST_SUITE(Coinage, ElementTypes);

// One writer by the value's type.
template <class Ch>
int32_t write(int32_t value, Ch* dst, int32_t size) {
  return Twin<Ch>::CoinageStringInt(value, dst, size);
}
template <class Ch>
int32_t write(uint32_t value, Ch* dst, int32_t size) {
  return Twin<Ch>::CoinageStringDWord(value, dst, size);
}
template <class Ch>
int32_t write(int64_t value, Ch* dst, int32_t size) {
  return Twin<Ch>::CoinageStringLongLong(value, dst, size);
}
template <class Ch>
int32_t write(uint64_t value, Ch* dst, int32_t size) {
  return Twin<Ch>::CoinageStringULongLong(value, dst, size);
}

// And the matching reader.
template <class Value, class Ch>
Value read(const Ch* text) {
  if constexpr (std::is_same_v<Value, int32_t>) {
    return Twin<Ch>::StringCoinageInt(text);
  } else if constexpr (std::is_same_v<Value, uint32_t>) {
    return Twin<Ch>::StringCoinageDWord(text);
  } else if constexpr (std::is_same_v<Value, int64_t>) {
    return Twin<Ch>::StringCoinageLongLong(text);
  } else {
    return Twin<Ch>::StringCoinageULongLong(text);
  }
}

// The grouped text made by the writer of the value's type, or nothing for
// a result of -1 (then the destination must be as it was).
template <class Ch, class Value>
std::basic_string<Ch> coinage(Value value, int32_t size = 40) {
  auto dst = sentinel_buffer<Ch>(48);
  const int32_t written = write(value, dst.data(), size);
  if (written < 0) {
    EXPECT_TRUE(untouched_from(dst, 0)) << value;
    return text<Ch>("untouched");
  }
  EXPECT_EQ(static_cast<std::size_t>(written), str(dst).size()) << value;
  return str(dst);
}

TYPED_TEST(Coinage, WritersGroupThePlainTextByThrees) {
  using Ch = TypeParam;
  const bool wide = sizeof(Ch) == 2;
  EXPECT_EQ(coinage<Ch>(0), text<Ch>("0"));
  EXPECT_EQ(coinage<Ch>(1234567), text<Ch>("1,234,567"));
  EXPECT_EQ(coinage<Ch>(INT32_MAX), text<Ch>("2,147,483,647"));
  EXPECT_EQ(coinage<Ch>(UINT32_MAX), text<Ch>("4,294,967,295"));
  EXPECT_EQ(coinage<Ch>(INT64_MAX), text<Ch>("9,223,372,036,854,775,807"));
  EXPECT_EQ(coinage<Ch>(UINT64_MAX), text<Ch>("18,446,744,073,709,551,615"));
  // A negative value groups its sign as an element in the wide twin and is
  // refused by the narrow twin, which groups digits alone.
  const struct {
    int64_t value;
    const char* wide;
  } negatives[] = {
      {-1234567, "-1,234,567"},      {-123456, "-,123,456"}, {-123, "-,123"}, {-12, "-12"},
      {INT32_MIN, "-2,147,483,648"},
  };
  for (const auto& c : negatives) {
    const auto expected = text<Ch>(wide ? c.wide : "untouched");
    EXPECT_EQ(coinage<Ch>(static_cast<int32_t>(c.value)), expected) << c.value;
    EXPECT_EQ(coinage<Ch>(c.value), expected) << c.value;
  }
  EXPECT_EQ(coinage<Ch>(INT64_MIN), text<Ch>(wide ? "-9,223,372,036,854,775,808" : "untouched"));
}

// 1234567 has a plain text of 7 digits (8 elements) and a grouped text of
// 9: below 8 the plain text does not fit, at 8 the grouped text does not.
TYPED_TEST(Coinage, SizesAroundTheBound) {
  using Ch = TypeParam;
  for (int32_t size : {10, 9, 8, 7, 1, 0}) {
    auto dst = sentinel_buffer<Ch>(12);
    const bool fits = size >= 9;
    EXPECT_EQ(Twin<Ch>::CoinageStringInt(1234567, dst.data(), size), fits ? 9 : -1)
        << "size " << size;
    EXPECT_EQ(str(dst), text<Ch>(fits ? "1,234,567" : "")) << "size " << size;
    EXPECT_TRUE(untouched_from(dst, fits ? 10 : static_cast<std::size_t>(size) + 1))
        << "size " << size;
  }
  auto dst = sentinel_buffer<Ch>(4);
  EXPECT_EQ(Twin<Ch>::CoinageStringInt(1, dst.data(), -1), -1);
  EXPECT_TRUE(untouched_from(dst, 0));
}

TYPED_TEST(Coinage, ReadersDropEveryCommaBeforeTheParse) {
  using Ch = TypeParam;
  const auto as_int = [](const char* s) { return Twin<Ch>::StringCoinageInt(text<Ch>(s).c_str()); };
  const auto as_dword = [](const char* s) {
    return Twin<Ch>::StringCoinageDWord(text<Ch>(s).c_str());
  };
  const auto as_long_long = [](const char* s) {
    return Twin<Ch>::StringCoinageLongLong(text<Ch>(s).c_str());
  };
  const auto as_ulong_long = [](const char* s) {
    return Twin<Ch>::StringCoinageULongLong(text<Ch>(s).c_str());
  };
  EXPECT_EQ(as_int("1,2,3,4"), 1234);
  EXPECT_EQ(as_int(",,,"), 0);
  EXPECT_EQ(as_int(""), 0);
  EXPECT_EQ(as_int("12 345"), 12);  // the blank ends the digits
  EXPECT_EQ(as_int(" 12,345"), 12345);
  EXPECT_EQ(as_int("-1,234"), -1234);
  EXPECT_EQ(as_int("-,123"), -123);
  EXPECT_EQ(as_int("1,234.5"), 1234);
  EXPECT_EQ(as_int("2,147,483,648"), INT32_MAX);
  EXPECT_EQ(as_int("-2,147,483,649"), INT32_MIN);
  // The low 32 bits of a 64-bit parse.
  EXPECT_EQ(as_dword("-1"), 0xFFFFFFFFu);
  EXPECT_EQ(as_dword("4,294,967,295"), 0xFFFFFFFFu);
  EXPECT_EQ(as_dword("4,294,967,296"), 0u);
  EXPECT_EQ(as_dword("99,999,999,999,999,999,999"), 0xFFFFFFFFu);
  EXPECT_EQ(as_long_long("9,223,372,036,854,775,808"), INT64_MAX);
  EXPECT_EQ(as_long_long("-9,223,372,036,854,775,809"), INT64_MIN);
  EXPECT_EQ(as_ulong_long("-1"), UINT64_MAX);
  EXPECT_EQ(as_ulong_long("18,446,744,073,709,551,616"), UINT64_MAX);
  if constexpr (sizeof(Ch) == 2) {
    // The wide parse takes Unicode spaces and full-width digits.
    EXPECT_EQ(KZ_StringCoinageIntW(utf16("\u3000\uFF11,\uFF12\uFF13\uFF14").c_str()), 1234);
    EXPECT_EQ(KZ_StringCoinageULongLongW(utf16("\uFF11,000").c_str()), 1000u);
  } else {
    EXPECT_EQ(KZ_StringCoinageIntA("\x82\x50,234"), 0);  // full-width 1 in Shift-JIS
  }
}

// Every text a writer makes reads back to its value; without its commas it
// is the C++ library's decimal text.
template <class Ch, class Value>
void expect_round_trip(Value value) {
  auto dst = sentinel_buffer<Ch>(32);
  const int32_t written = write(value, dst.data(), 30);
  if (sizeof(Ch) == 1 && value < 0) {
    ASSERT_EQ(written, -1) << value;
    return;
  }
  ASSERT_GT(written, 0) << value;
  ASSERT_EQ(read<Value>(dst.data()), value) << value;
  std::basic_string<Ch> digits;
  for (Ch c : str(dst))
    if (c != ',') digits.push_back(c);
  ASSERT_EQ(digits, text<Ch>(std::to_string(value))) << value;
}

TYPED_TEST(Coinage, EveryWrittenTextReadsBack) {
  using Ch = TypeParam;
  std::mt19937_64 random(31);
  for (int round = 0; round < 3000; ++round) {
    const uint64_t bits = random() >> (random() % 64);
    expect_round_trip<Ch>(static_cast<int32_t>(bits));
    expect_round_trip<Ch>(static_cast<uint32_t>(bits));
    expect_round_trip<Ch>(static_cast<int64_t>(bits));
    expect_round_trip<Ch>(bits);
  }
  expect_round_trip<Ch>(INT32_MIN);
  expect_round_trip<Ch>(INT64_MIN);
  expect_round_trip<Ch>(UINT64_MAX);
}

TYPED_TEST(Coinage, AllocationFailuresGiveTheFailureResult) {
  using Ch = TypeParam;
  for_each_allocation_failure([] {
    auto dst = sentinel_buffer<Ch>(16);
    const int32_t written = Twin<Ch>::CoinageStringULongLong(1234567u, dst.data(), 12);
    const bool failed = kz::alloc_faults::attempts() > 0 && written == -1;
    EXPECT_TRUE(failed || (written == 9 && str(dst) == text<Ch>("1,234,567")));
    if (failed) {
      EXPECT_TRUE(untouched_from(dst, 0));
    }
  });
  for_each_allocation_failure([] {
    const int64_t value = Twin<Ch>::StringCoinageLongLong(text<Ch>("-1,234").c_str());
    EXPECT_TRUE(value == -1234 || value == 0);
  });
  // The first allocation is the working buffer or copy.
  auto dst = sentinel_buffer<Ch>(16);
  kz::alloc_faults::arm(1, false);
  EXPECT_EQ(Twin<Ch>::CoinageStringInt(1234, dst.data(), 12), -1);
  kz::alloc_faults::arm(1, false);
  EXPECT_EQ(Twin<Ch>::StringCoinageInt(text<Ch>("1,234").c_str()), 0);
  kz::alloc_faults::disarm();
  EXPECT_TRUE(untouched_from(dst, 0));
}

}  // namespace
