// Number text in any radix from 2 to 36, for 16-bit wide text: _itow_s and
// wcstol. Written once for both builds, since the Windows runtimes differ
// by version in what they accept. long is 32 bits wide here on every
// platform, as on Windows.
#include <climits>

#include "platform/platform.h"

namespace kz::os {
namespace {

constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";

// The value of a digit of either case, or 36 for anything else.
int digit_value(WCHAR c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'a' && c <= 'z') return c - 'a' + 10;
  if (c >= 'A' && c <= 'Z') return c - 'A' + 10;
  return 36;
}

bool is_space(WCHAR c) { return c == ' ' || (c >= 0x09 && c <= 0x0D); }

}  // namespace

errno_t _itow_s(int value, WCHAR* buffer, std::size_t size, int radix) {
  if (buffer == nullptr || size == 0) return kEINVAL;
  if (radix < 2 || radix > 36) {
    buffer[0] = 0;
    return kEINVAL;
  }
  // Only radix 10 writes a sign; any other radix shows the 32 bits unsigned.
  const bool negative = radix == 10 && value < 0;
  auto rest = negative ? 0u - static_cast<unsigned>(value) : static_cast<unsigned>(value);
  char reversed[33];
  std::size_t count = 0;
  do {
    reversed[count++] = kDigits[rest % static_cast<unsigned>(radix)];
    rest /= static_cast<unsigned>(radix);
  } while (rest != 0);
  const std::size_t needed = count + (negative ? 1 : 0) + 1;
  if (needed > size) {
    buffer[0] = 0;
    return kERANGE;
  }
  std::size_t out = 0;
  if (negative) buffer[out++] = '-';
  while (count > 0) buffer[out++] = static_cast<WCHAR>(reversed[--count]);
  buffer[out] = 0;
  return 0;
}

std::int32_t wcstol(const WCHAR* text, WCHAR** end, int radix) {
  const WCHAR* p = text;
  auto finish = [&](const WCHAR* stop, std::int32_t value) {
    if (end != nullptr) *end = const_cast<WCHAR*>(stop);
    return value;
  };
  if (text == nullptr || radix < 0 || radix == 1 || radix > 36) return finish(text, 0);
  while (is_space(*p)) ++p;
  bool negative = false;
  if (*p == '-' || *p == '+') negative = *p++ == '-';
  const bool prefixed = p[0] == '0' && (p[1] == 'x' || p[1] == 'X') && digit_value(p[2]) < 16;
  if (radix == 0) radix = prefixed ? 16 : p[0] == '0' ? 8 : 10;
  if (radix == 16 && prefixed) p += 2;

  // The magnitude is gathered up to one past the limit of the sign's side,
  // and clamped there.
  const std::uint32_t limit = negative ? 0x80000000u : 0x7FFFFFFFu;
  std::uint32_t magnitude = 0;
  bool overflow = false;
  const WCHAR* first_digit = p;
  for (int digit; (digit = digit_value(*p)) < radix; ++p) {
    if (overflow) continue;
    if (magnitude > (limit - static_cast<std::uint32_t>(digit)) / static_cast<std::uint32_t>(radix))
      overflow = true;
    else
      magnitude = magnitude * static_cast<std::uint32_t>(radix) + static_cast<std::uint32_t>(digit);
  }
  if (p == first_digit) return finish(text, 0);  // no number at all
  if (overflow) return finish(p, negative ? INT32_MIN : INT32_MAX);
  const auto value =
      negative ? static_cast<std::int32_t>(0u - magnitude) : static_cast<std::int32_t>(magnitude);
  return finish(p, value);
}

}  // namespace kz::os
