// Coinage text in both twins: the round trip of the four number types
// against the C++ library's decimal text, the bound of the size, and the
// readers' comma removal. Allocation failures are held by the allocation
// table.
#include <random>

#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Coinage);

// The writer and the reader of the value's type.
template <class Ch>
struct For {
  using T = Twin<Ch>;
  static int32_t write(int32_t v, Ch* d, int32_t n) { return T::CoinageStringInt(v, d, n); }
  static int32_t write(uint32_t v, Ch* d, int32_t n) { return T::CoinageStringDWord(v, d, n); }
  static int32_t write(int64_t v, Ch* d, int32_t n) { return T::CoinageStringLongLong(v, d, n); }
  static int32_t write(uint64_t v, Ch* d, int32_t n) { return T::CoinageStringULongLong(v, d, n); }
  static int32_t read(int32_t, const Ch* t) { return T::StringCoinageInt(t); }
  static uint32_t read(uint32_t, const Ch* t) { return T::StringCoinageDWord(t); }
  static int64_t read(int64_t, const Ch* t) { return T::StringCoinageLongLong(t); }
  static uint64_t read(uint64_t, const Ch* t) { return T::StringCoinageULongLong(t); }
};

// The text reads back to its value and is, without its commas, the C++
// library's decimal text, with a comma before every third digit from the
// right, never first. The narrow twin refuses a sign and leaves the
// destination alone; the wide twin groups the sign as an element.
template <class Ch, class Value>
void expect_round_trip(Value value) {
  auto dst = sentinel_buffer<Ch>(32);
  const int32_t written = For<Ch>::write(value, dst.data(), 30);
  if (sizeof(Ch) == 1 && value < 0) {
    ASSERT_EQ(written, -1) << value;
    ASSERT_TRUE(untouched_from(dst, 0));
    return;
  }
  const auto grouped = str(dst);
  ASSERT_EQ(written, static_cast<int32_t>(grouped.size())) << value;
  ASSERT_EQ(For<Ch>::read(value, dst.data()), value) << value;
  std::string expected = std::to_string(value);
  for (std::size_t i = expected.size(); i > 3; i -= 3) expected.insert(i - 3, ",");
  ASSERT_EQ(grouped, text<Ch>(expected)) << value;
  // One element less than the grouped text's length: -1, an emptied buffer
  // and nothing written behind the terminator's place.
  auto cut = sentinel_buffer<Ch>(32);
  ASSERT_EQ(For<Ch>::write(value, cut.data(), written - 1), -1) << value;
  ASSERT_TRUE(cut[0] == 0 && untouched_from(cut, static_cast<std::size_t>(written))) << value;
}

TYPED_TEST(Coinage, EveryWrittenTextReadsBackAndReadersDropEveryComma) {
  using Ch = TypeParam;
  std::mt19937_64 random(31);
  const uint64_t limits[] = {uint64_t{1} << 63,  ~uint64_t{0} >> 1, 0,           uint64_t(-123456),
                             ~uint64_t{0} << 31, 0x7FFFFFFF,        ~uint64_t{0}};
  for (int round = 0; round < 3000; ++round) {
    const uint64_t bits = round < 7 ? limits[round] : random() >> (random() % 64);
    expect_round_trip<Ch>(static_cast<int32_t>(bits));
    expect_round_trip<Ch>(static_cast<uint32_t>(bits));
    expect_round_trip<Ch>(static_cast<int64_t>(bits));
    expect_round_trip<Ch>(bits);
  }
  // Every comma goes before the parse, which stops at a blank and saturates;
  // DWord keeps the low 32 bits of a 64-bit parse.
  const auto read = [](const char* s) { return Twin<Ch>::StringCoinageInt(text<Ch>(s).c_str()); };
  EXPECT_EQ(joined(read("1,2,3,4"), read(" 12 345"), read("2,147,483,648")),
            joined(1234, 12, INT32_MAX));
  EXPECT_EQ(Twin<Ch>::StringCoinageDWord(text<Ch>("4,294,967,297").c_str()), 1u);
  EXPECT_EQ(KZ_StringCoinageIntW(utf16("\u3000\uFF11,\uFF12\uFF13\uFF14").c_str()), 1234);
  EXPECT_EQ(KZ_StringCoinageIntA("\x82\x50,234"), 0);  // Shift-JIS "1"
}

}  // namespace
