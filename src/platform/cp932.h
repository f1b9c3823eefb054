// The tables of code page 932 as Windows converts it, generated from the
// platform's own answers by tools/gen-cp932. The POSIX conversion layer works
// from them, and the tests compare both builds with them.
#pragma once

#include <cstdint>

namespace kz::cp932 {

#include "platform/posix/cp932_tables.inc"

// The decoder's ASCII run and the encoder's ASCII run copy bytes unchanged.
constexpr bool ascii_is_identity() {
  for (unsigned value = 0; value < 0x80; ++value)
    if (kDecode[value] != value || kEncode[kEncodePage[0] * 256 + value] != value) return false;
  return true;
}
static_assert(ascii_is_identity());

// A byte alone, and a lead byte with the byte after it.
inline char16_t decode_single(unsigned char byte) { return kDecode[byte]; }
inline char16_t decode_pair(unsigned char lead, unsigned char trail) {
  return kDecode[kLeadIndex[lead] * 256u + trail];
}

// The bytes of a unit: one byte below 0x100, else lead * 256 + trail.
inline std::uint16_t encode_unit(char16_t unit) {
  return kEncode[kEncodePage[unit >> 8] * 256u + (unit & 0xFFu)];
}

}  // namespace kz::cp932
