// Number parsing of the runtime, written once for both builds: _wtoi, atoi,
// _wtoi64, _atoi64, _wcstoui64, _strtoui64, wcstol and strtol.
//
// Windows runtimes differ by version at the edges (the older atoi wraps a
// value out of range, Wine's _wtoi64 wraps and reads ASCII digits only), so
// the library parses as the current runtime's _wtoi does, for every width
// of number: wide text skips the Unicode white space and reads the decimal
// digits of other scripts, narrow text sees bytes only, and a value out of
// range gives the limit of the type.
#include <climits>
#include <limits>

#include "platform/platform.h"

namespace kz::os {
namespace {

// The digits the wide runtime reads: the first code of each run of ten
// decimal digits (ASCII, Arabic-Indic, extended Arabic-Indic, Devanagari,
// Bengali, Gurmukhi, Gujarati, Oriya, Telugu, Kannada, Malayalam, Thai, Lao,
// Tibetan, Myanmar, Khmer, Mongolian, full width).
constexpr WCHAR kDigitZeros[] = {0x0030, 0x0660, 0x06F0, 0x0966, 0x09E6, 0x0A66,
                                 0x0AE6, 0x0B66, 0x0C66, 0x0CE6, 0x0D66, 0x0E50,
                                 0x0ED0, 0x0F20, 0x1040, 0x17E0, 0x1810, 0xFF10};

// The value of a digit in radix up to 36, or 36 for anything else. Letters
// are ASCII only, in both widths.
int digit_value(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'z') return c - 'a' + 10;
  if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
  return 36;
}

int digit_value(WCHAR c) {
  if (c < 0x80) return digit_value(static_cast<char>(c));
  for (const WCHAR zero : kDigitZeros)
    if (c >= zero && c <= zero + 9) return c - zero;
  return 36;
}

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The wide runtime's white space: the C0 spaces, NEL, no-break space, the
// Ogham mark, the typographic spaces, the line and paragraph separators and
// the ideographic space; neither the zero-width space nor a byte-order mark.
bool is_space(WCHAR c) {
  if (c < 0x80) return is_space(static_cast<char>(c));
  return c == 0x0085 || c == 0x00A0 || c == 0x1680 || (c >= 0x2000 && c <= 0x200A) || c == 0x2028 ||
         c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

template <class Ch>
struct Number {
  std::uint64_t magnitude = 0;  // clamped to the limit of the sign's side
  bool negative = false;
  bool overflow = false;
  const Ch* end = nullptr;  // behind the last digit; the text when none was read
};

// White space, one sign, for radix 16 (or 0) an optional 0x, then digits.
// The magnitude stops growing at the limit of its sign's side; every digit
// is still consumed.
template <class Ch>
Number<Ch> scan(const Ch* text, int radix, std::uint64_t positive_limit,
                std::uint64_t negative_limit) {
  Number<Ch> number;
  number.end = text;
  if (radix < 0 || radix == 1 || radix > 36) return number;
  const Ch* p = text;
  while (is_space(*p)) ++p;
  if (*p == '-' || *p == '+') number.negative = *p++ == '-';
  const bool prefixed = p[0] == '0' && (p[1] == 'x' || p[1] == 'X');
  if (radix == 0) radix = prefixed ? 16 : p[0] == '0' ? 8 : 10;
  if (radix == 16 && prefixed) {
    // A 0x with no hexadecimal digit behind it is no number at all.
    if (digit_value(p[2]) >= 16) return number;
    p += 2;
  }
  const std::uint64_t limit = number.negative ? negative_limit : positive_limit;
  const auto base = static_cast<std::uint64_t>(radix);
  const Ch* first_digit = p;
  for (int digit; (digit = digit_value(*p)) < radix; ++p) {
    if (number.overflow) continue;
    const auto value = static_cast<std::uint64_t>(digit);
    if (number.magnitude > (limit - value) / base) {
      number.overflow = true;
      number.magnitude = limit;
    } else {
      number.magnitude = number.magnitude * base + value;
    }
  }
  if (p == first_digit) return Number<Ch>{0, false, false, text};
  number.end = p;
  return number;
}

// A signed parse of a type whose smallest value is -(max + 1).
template <class Signed, class Ch>
Signed to_signed(const Ch* text, int radix, Ch** end) {
  constexpr auto max = static_cast<std::uint64_t>(std::numeric_limits<Signed>::max());
  const auto number = scan(text, radix, max, max + 1);
  if (end != nullptr) *end = const_cast<Ch*>(number.end);
  const std::uint64_t bits = number.negative ? 0 - number.magnitude : number.magnitude;
  return static_cast<Signed>(static_cast<std::int64_t>(bits));
}

// Out of range gives the largest value, whatever the sign; in range, a minus
// negates modulo 2 to the 64th, so "-1" gives the largest value as well.
template <class Ch>
std::uint64_t to_unsigned(const Ch* text, Ch** end, int radix) {
  const auto number = scan(text, radix, UINT64_MAX, UINT64_MAX);
  if (end != nullptr) *end = const_cast<Ch*>(number.end);
  if (number.overflow) return UINT64_MAX;
  return number.negative ? 0 - number.magnitude : number.magnitude;
}

}  // namespace

int _wtoi(const WCHAR* text) { return to_signed<int, WCHAR>(text, 10, nullptr); }
int atoi(const char* text) { return to_signed<int, char>(text, 10, nullptr); }
std::int64_t _wtoi64(const WCHAR* text) {
  return to_signed<std::int64_t, WCHAR>(text, 10, nullptr);
}
std::int64_t _atoi64(const char* text) { return to_signed<std::int64_t, char>(text, 10, nullptr); }
std::uint64_t _wcstoui64(const WCHAR* text, WCHAR** end, int radix) {
  return to_unsigned(text, end, radix);
}
std::uint64_t _strtoui64(const char* text, char** end, int radix) {
  return to_unsigned(text, end, radix);
}
std::int32_t wcstol(const WCHAR* text, WCHAR** end, int radix) {
  return to_signed<std::int32_t>(text, radix, end);
}
std::int32_t strtol(const char* text, char** end, int radix) {
  return to_signed<std::int32_t>(text, radix, end);
}

}  // namespace kz::os
