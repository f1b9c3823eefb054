// Byte order reversal: KZ_XChgWord and KZ_XChgDWord.
#include <cstdint>

#include "kz_basis.h"

extern "C" {

KZ_API uint16_t KZ_XChgWord(uint16_t value) {
  return static_cast<uint16_t>((value >> 8) | (value << 8));
}
// Each half swapped, and the halves exchanged.
KZ_API uint32_t KZ_XChgDWord(uint32_t value) {
  return (static_cast<uint32_t>(KZ_XChgWord(static_cast<uint16_t>(value))) << 16) |
         KZ_XChgWord(static_cast<uint16_t>(value >> 16));
}

}  // extern "C"
