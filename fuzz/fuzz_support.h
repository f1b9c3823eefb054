// What every fuzz target needs beside the table of twins: a check that stops
// the run where a property fails, the length of a terminated text, and the
// wide text that an input's bytes make when read as 16-bit units.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <string>

#include "kz_basis.h"

namespace kz::fuzz {

inline void check(bool condition) {
  if (!condition) std::abort();
}

template <class Ch>
std::size_t length(const Ch* text) {
  std::size_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

// Little-endian pairs of bytes up to the first zero unit; an odd last byte
// is left out.
inline std::basic_string<KZ_WCHAR> wide_units(const std::string& bytes) {
  std::basic_string<KZ_WCHAR> wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    const auto unit = static_cast<KZ_WCHAR>(static_cast<unsigned char>(bytes[i]) |
                                            (static_cast<unsigned char>(bytes[i + 1]) << 8));
    if (unit == 0) break;
    wide.push_back(unit);
  }
  return wide;
}

}  // namespace kz::fuzz
