// Number text of the runtime in any radix from 2 to 36, written once for
// both builds and both widths: _itow_s, _itoa_s, _ultow_s, _ultoa_s,
// _i64tow_s, _i64toa_s, _ui64tow_s and _ui64toa_s. Where the runtime stops
// the process for a buffer too small, these leave it empty and report
// kERANGE, so callers give their own failure result.
#include <type_traits>

#include "platform/platform.h"

namespace kz::os {
namespace {

constexpr char kDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";

// Writes the sign (when negative) and the digits of magnitude.
template <class Ch>
errno_t write(std::uint64_t magnitude, bool negative, Ch* buffer, std::size_t size, int radix) {
  if (buffer == nullptr || size == 0) return kEINVAL;
  if (radix < 2 || radix > 36) {
    buffer[0] = 0;
    return kEINVAL;
  }
  char reversed[64];
  std::size_t count = 0;
  do {
    reversed[count++] = kDigits[magnitude % static_cast<unsigned>(radix)];
    magnitude /= static_cast<unsigned>(radix);
  } while (magnitude != 0);
  const std::size_t needed = count + (negative ? 1 : 0) + 1;
  if (needed > size) {
    buffer[0] = 0;
    return kERANGE;
  }
  std::size_t out = 0;
  if (negative) buffer[out++] = '-';
  while (count > 0) buffer[out++] = static_cast<Ch>(reversed[--count]);
  buffer[out] = 0;
  return 0;
}

// Only radix 10 writes a sign; any other radix shows the value's bits
// unsigned, in its own width.
template <class Signed, class Ch>
errno_t write_signed(Signed value, Ch* buffer, std::size_t size, int radix) {
  using Unsigned = std::make_unsigned_t<Signed>;
  const bool negative = radix == 10 && value < 0;
  const auto bits = static_cast<Unsigned>(value);
  return write(negative ? static_cast<Unsigned>(0 - bits) : bits, negative, buffer, size, radix);
}

}  // namespace

errno_t _itow_s(int value, WCHAR* buffer, std::size_t size, int radix) {
  return write_signed(value, buffer, size, radix);
}
errno_t _itoa_s(int value, char* buffer, std::size_t size, int radix) {
  return write_signed(value, buffer, size, radix);
}
errno_t _ultow_s(std::uint32_t value, WCHAR* buffer, std::size_t size, int radix) {
  return write(value, false, buffer, size, radix);
}
errno_t _ultoa_s(std::uint32_t value, char* buffer, std::size_t size, int radix) {
  return write(value, false, buffer, size, radix);
}
errno_t _i64tow_s(std::int64_t value, WCHAR* buffer, std::size_t size, int radix) {
  return write_signed(value, buffer, size, radix);
}
errno_t _i64toa_s(std::int64_t value, char* buffer, std::size_t size, int radix) {
  return write_signed(value, buffer, size, radix);
}
errno_t _ui64tow_s(std::uint64_t value, WCHAR* buffer, std::size_t size, int radix) {
  return write(value, false, buffer, size, radix);
}
errno_t _ui64toa_s(std::uint64_t value, char* buffer, std::size_t size, int radix) {
  return write(value, false, buffer, size, radix);
}

}  // namespace kz::os
