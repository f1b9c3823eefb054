// Drives the numeric and geometric family through both twins with
// arbitrary text, values, sizes, delimiters, group sizes, widths and
// styles. Every buffer is a heap block of exactly the size the contract
// asks for, so AddressSanitizer catches any access behind it. The written
// coinage texts and records are read back by tests/numeric, over random
// values too.
//
// Input: a size byte, a group byte, a width byte, a style byte, a
// delimiter byte, eight value bytes, then the text (narrow: the bytes up to
// the first NUL; wide: the bytes in pairs).
#include "fuzz_support.h"

template <class Ch>
void drive(const std::basic_string<Ch>& text, const std::uint8_t* in) {
  using Api = Twin<Ch>;
  const std::vector<Ch> src = exact(text);
  const auto n = static_cast<int32_t>(text.size());
  // Size -1 to 62, group -1 to 6, width -2 to 34, style -1 to 6.
  const int32_t size = in[0] % 64 - 1, group = in[1] % 8 - 1, width = in[2] % 37 - 2;
  const int32_t style = in[3] % 8 - 1;
  const Ch delimiter = static_cast<Ch>(in[4]);
  uint64_t value = 0;
  for (int i = 0; i < 8; ++i) value |= static_cast<uint64_t>(in[5 + i]) << (8 * i);

  // Grouping: the destination holds size + 1 elements, size + 2 with a
  // group of 1.
  const int32_t numeric = Api::IsNumeric(src.data());
  check(numeric == 0 || numeric == 1);
  if (size >= 0) {
    std::vector<Ch> grouped(static_cast<std::size_t>(size + 2));
    const int32_t written =
        Api::StringSetDelimiter(src.data(), grouped.data(), size, delimiter, group);
    check(written >= -1 && written <= size + (group == 1 ? 1 : 0));
    // A delimiter of 0 ends the grouped text early.
    if (written >= 0 && delimiter != 0)
      check(std::char_traits<Ch>::length(grouped.data()) == static_cast<std::size_t>(written));
    if (sizeof(Ch) == 1 && numeric == 0) check(written == -1);
    // Coinage text of the value into an exact block (tests/numeric reads
    // every written text back).
    std::vector<Ch> coinage(static_cast<std::size_t>(size + 1));
    Api::CoinageStringLongLong(static_cast<int64_t>(value), coinage.data(), size);
    Api::CoinageStringULongLong(value, coinage.data(), size);
    Api::CoinageStringInt(static_cast<int32_t>(value), coinage.data(), size);
    Api::CoinageStringDWord(static_cast<uint32_t>(value), coinage.data(), size);
  }
  (Api::StringCoinageInt(src.data()), Api::StringCoinageDWord(src.data()));
  (Api::StringCoinageLongLong(src.data()), Api::StringCoinageULongLong(src.data()));

  // Hexadecimal text: 35 elements hold the longest.
  int32_t valid = -1;
  Api::StringHex(src.data(), &valid);
  check(valid == 0 || valid == 1);
  std::vector<Ch> hex(35);
  const auto value32 = static_cast<uint32_t>(value);
  if (Api::HexString(value32, hex.data(), width, style) == 1) {
    const int32_t back = Api::StringHex(hex.data(), &valid);
    check(valid == 1);
    check(back == (value32 > 0x7FFFFFFFu ? 0x7FFFFFFF : static_cast<int32_t>(value32)));
  } else {
    check(width < 0 || width > 32 || style < 0 || style > 5);
  }

  // Points and rectangles: the text as given.
  PointRecord point{0, 0};
  RectRecord rect{0, 0, 0, 0};
  check(Api::StringPoint(src.data(), &point, delimiter) <= 1 &&
        Api::StringRect(src.data(), &rect, delimiter) <= 1);
  // Written records into exact blocks of the longest texts.
  const PointRecord written_point{static_cast<int32_t>(value), static_cast<int32_t>(value >> 32)};
  const RectRecord written_rect{written_point.x, written_point.y, n, -n};
  std::vector<Ch> point_text(25), rect_text(51);
  Api::PointString(&written_point, point_text.data(), delimiter);
  Api::RectString(&written_rect, rect_text.data(), delimiter);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 13) return 0;
  both_twins(data, size, 13, [&](const auto& text) { drive(text, data); });
  return 0;
}
