// Hexadecimal text in six notations: KZ_HexString and KZ_StringHex.
//
// The writer knows a notation by its style number, the reader recognises
// it by its mark: x, $ or # in front, h behind, or a 0x that the parse
// takes itself. Only one mark is taken away. The parse is the runtime's
// signed 32-bit one, so a value above 0x7FFFFFFF written here reads back as
// 0x7FFFFFFF; intended, it is what the notation's readers have always got.
#include "frame/memory.h"
#include "frame/text.h"

namespace kz::numeric {
namespace {

constexpr std::int32_t kMaxWidth = 32;
constexpr std::size_t kDigitsCapacity = 64;  // elements of the digits text

template <class Ch>
struct Notation {
  static constexpr auto kPlain = literal<Ch>("%s");
  static constexpr auto kZeroX = literal<Ch>("0x%s");
  static constexpr auto kX = literal<Ch>("x%s");
  static constexpr auto kSuffixH = literal<Ch>("%sH");
  static constexpr auto kDollar = literal<Ch>("$%s");
  static constexpr auto kHash = literal<Ch>("#%s");
  static constexpr auto kDigits = literal<Ch>("%x");
  static constexpr auto kPadded = literal<Ch>("%%0%dx");

  // The format of each style, or null for a style out of range.
  static const Ch* of_style(std::int32_t style) {
    switch (style) {
      case 0:
        return kPlain.text;
      case 1:
        return kZeroX.text;
      case 2:
        return kX.text;
      case 3:
        return kSuffixH.text;
      case 4:
        return kDollar.text;
      case 5:
        return kHash.text;
      default:
        return nullptr;
    }
  }
};

template <class Ch>
std::int32_t hex_text(std::uint32_t value, Ch* destination, std::int32_t width,
                      std::int32_t style) {
  const Ch* notation = Notation<Ch>::of_style(style);
  if (width < 0 || width > kMaxWidth || notation == nullptr) return 0;
  Ch digits[kDigitsCapacity];
  if (width > 0) {
    // The width never cuts: a value with more digits keeps them all.
    Ch padded[16];
    Text<Ch>::format(padded, Notation<Ch>::kPadded.text, width);
    Text<Ch>::format(digits, padded, value);
  } else {
    Text<Ch>::format(digits, Notation<Ch>::kDigits.text, value);
  }
  Text<Ch>::format(destination, notation, digits);
  return 1;
}

template <class Ch>
bool is_either(Ch c, char lower) {
  return c == lower || c == lower - 'a' + 'A';
}

template <class Ch>
std::int32_t hex_value(const Ch* text, std::int32_t* valid) {
  const std::size_t n = length(text);
  const Ch* from = text;
  std::size_t count = n;
  if (is_either(text[0], 'x') || text[0] == '$' || text[0] == '#') {
    ++from;
    --count;
  } else if (text[0] == '0' && is_either(text[1], 'x')) {
    // Left whole: the parse takes the 0x.
  } else if (n >= 2 && is_either(text[n - 1], 'h')) {
    --count;
  }
  Scratch<Ch> copy(n + 1);
  if (!copy) {
    *valid = 0;
    return 0;
  }
  Text<Ch>::copy_n(copy.get(), n + 1, from, count);
  Ch* end = nullptr;
  const std::int32_t value = Text<Ch>::to_long(copy.get(), &end, 16);
  *valid = *end == 0 ? 1 : 0;
  return value;
}

}  // namespace
}  // namespace kz::numeric

extern "C" {

KZ_API int32_t KZ_HexStringW(uint32_t value, KZ_WCHAR* destination, int32_t width, int32_t style) {
  return kz::numeric::hex_text(value, destination, width, style);
}
KZ_API int32_t KZ_HexStringA(uint32_t value, char* destination, int32_t width, int32_t style) {
  return kz::numeric::hex_text(value, destination, width, style);
}
KZ_API int32_t KZ_StringHexW(const KZ_WCHAR* text, int32_t* valid) {
  return kz::numeric::hex_value(text, valid);
}
KZ_API int32_t KZ_StringHexA(const char* text, int32_t* valid) {
  return kz::numeric::hex_value(text, valid);
}

}  // extern "C"
