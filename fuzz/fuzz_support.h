// What every fuzz target needs beside the table of twins: a check that stops
// the run where a property fails, the length of a terminated text, exact
// blocks, and an input's bytes read as narrow text and as 16-bit units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "twins.h"

// Each target is a program of its own, so its helpers live in the global
// namespace.
using kz::test::Twin;
using wchar = KZ_WCHAR;

inline void check(bool condition) {
  if (!condition) std::abort();
}

template <class Ch>
std::size_t length(const Ch* text) {
  std::size_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

// A text and its terminator in a block of exactly their size.
template <class Ch>
std::vector<Ch> exact(const std::basic_string<Ch>& text) {
  return std::vector<Ch>(text.c_str(), text.c_str() + text.size() + 1);
}

// Little-endian pairs of bytes, an odd last byte left out; wide_units stops
// at the first zero unit.
inline std::basic_string<wchar> pairs(const std::string& bytes) {
  std::basic_string<wchar> wide;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    wide.push_back(static_cast<wchar>(static_cast<unsigned char>(bytes[i]) |
                                      (static_cast<unsigned char>(bytes[i + 1]) << 8)));
  return wide;
}
inline std::basic_string<wchar> wide_units(const std::string& bytes) {
  return pairs(bytes).c_str();
}

// The input's bytes from `head` on, given to drive twice: as narrow text up
// to the first zero byte, and as 16-bit units.
template <class Drive>
void both_twins(const std::uint8_t* data, std::size_t size, std::size_t head, Drive drive) {
  const std::string bytes(reinterpret_cast<const char*>(data) + head, size - head);
  drive(std::string(bytes.c_str()));
  drive(wide_units(bytes));
}
