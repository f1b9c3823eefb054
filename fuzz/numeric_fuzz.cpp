// Drives the numeric and geometric family through both twins with
// arbitrary text, values, sizes, delimiters, group sizes, widths and
// styles. Every buffer is a heap block of exactly the size the contract
// asks for, so AddressSanitizer catches any access behind it; round trips
// are checked wherever the contract promises one.
//
// Input: a size byte, a group byte, a width byte, a style byte, a
// delimiter byte, eight value bytes, then the text (narrow: the bytes up to
// the first NUL; wide: the bytes in pairs).
#include <cstring>

#include "fuzz_support.h"

using namespace kz::fuzz;

struct Params {
  int32_t size;   // -1 to 62
  int32_t group;  // -1 to 6
  int32_t width;  // -2 to 34
  int32_t style;  // -1 to 6
  unsigned char delimiter;
  uint64_t value;
};

template <class Ch>
void drive(const std::basic_string<Ch>& text, const Params& p) {
  using Api = Twin<Ch>;
  const std::vector<Ch> src = exact(text);
  const auto n = static_cast<int32_t>(text.size());
  const Ch delimiter = static_cast<Ch>(p.delimiter);

  // Grouping: the destination holds size + 1 elements, size + 2 with a
  // group of 1.
  const int32_t numeric = Api::IsNumeric(src.data());
  check(numeric == 0 || numeric == 1);
  if (p.size >= 0) {
    std::vector<Ch> grouped(static_cast<std::size_t>(p.size + 2));
    const int32_t written =
        Api::StringSetDelimiter(src.data(), grouped.data(), p.size, delimiter, p.group);
    check(written >= -1 && written <= p.size + (p.group == 1 ? 1 : 0));
    // A delimiter of 0 ends the grouped text early.
    if (written >= 0 && delimiter != 0)
      check(std::char_traits<Ch>::length(grouped.data()) == static_cast<std::size_t>(written));
    if (sizeof(Ch) == 1 && numeric == 0) check(written == -1);
    // Coinage text of the value, and back.
    std::vector<Ch> coinage(static_cast<std::size_t>(p.size + 1));
    const auto value = static_cast<int64_t>(p.value);
    if (Api::CoinageStringLongLong(value, coinage.data(), p.size) >= 0)
      check(Api::StringCoinageLongLong(coinage.data()) == value);
    if (Api::CoinageStringULongLong(p.value, coinage.data(), p.size) >= 0)
      check(Api::StringCoinageULongLong(coinage.data()) == p.value);
    const auto low = static_cast<int32_t>(p.value);
    if (Api::CoinageStringInt(low, coinage.data(), p.size) >= 0)
      check(Api::StringCoinageInt(coinage.data()) == low);
    if (Api::CoinageStringDWord(static_cast<uint32_t>(low), coinage.data(), p.size) >= 0)
      check(Api::StringCoinageDWord(coinage.data()) == static_cast<uint32_t>(low));
  }
  (Api::StringCoinageInt(src.data()), Api::StringCoinageDWord(src.data()));
  (Api::StringCoinageLongLong(src.data()), Api::StringCoinageULongLong(src.data()));

  // Hexadecimal text: 35 elements hold the longest.
  int32_t valid = -1;
  Api::StringHex(src.data(), &valid);
  check(valid == 0 || valid == 1);
  std::vector<Ch> hex(35);
  const auto value32 = static_cast<uint32_t>(p.value);
  if (Api::HexString(value32, hex.data(), p.width, p.style) == 1) {
    const int32_t back = Api::StringHex(hex.data(), &valid);
    check(valid == 1);
    check(back == (value32 > 0x7FFFFFFFu ? 0x7FFFFFFF : static_cast<int32_t>(value32)));
  } else {
    check(p.width < 0 || p.width > 32 || p.style < 0 || p.style > 5);
  }

  // Points and rectangles: the text as given, then a written record.
  PointRecord point{0, 0};
  RectRecord rect{0, 0, 0, 0};
  check(Api::StringPoint(src.data(), &point, delimiter) <= 1 &&
        Api::StringRect(src.data(), &rect, delimiter) <= 1);
  const PointRecord written_point{static_cast<int32_t>(p.value),
                                  static_cast<int32_t>(p.value >> 32)};
  const RectRecord written_rect{written_point.x, written_point.y, n, -n};
  std::vector<Ch> point_text(25), rect_text(51);
  Api::PointString(&written_point, point_text.data(), delimiter);
  Api::RectString(&written_rect, rect_text.data(), delimiter);
  // A delimiter that a written point or rectangle reads back with: not the
  // terminator, a blank, a sign, a digit or a double quote.
  if (std::string(" -\"0123456789").find(static_cast<char>(p.delimiter)) == std::string::npos &&
      p.delimiter != 0) {
    check(Api::StringPoint(point_text.data(), &point, delimiter) == 1 &&
          point.x == written_point.x && point.y == written_point.y);
    check(Api::StringRect(rect_text.data(), &rect, delimiter) == 1 &&
          std::memcmp(&rect, &written_rect, sizeof rect) == 0);
  }
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 13) return 0;
  Params p{data[0] % 64 - 1, data[1] % 8 - 1, data[2] % 37 - 2, data[3] % 8 - 1, data[4], 0};
  for (int i = 0; i < 8; ++i) p.value |= static_cast<uint64_t>(data[5 + i]) << (8 * i);
  both_twins(data, size, 13, [&](const auto& text) { drive(text, p); });
  return 0;
}
