// What the twins need to know about their element type. An operation is
// written once as a template over Ch (char for narrow Shift-JIS text,
// KZ_WCHAR for wide text) and asks Text<Ch> for the element's pair test,
// its runtime calls and its literals.
#pragma once

#include <cstddef>
#include <cstdint>

#include "kz_basis.h"
#include "platform/platform.h"

namespace kz {

using wchar = KZ_WCHAR;

// The pair test of the narrow code page, without the export's call overhead:
// the byte behind p must not be the terminator, and the two bytes must form
// a legal pair.
inline bool is_pair(const char* p) {
  const auto lead = static_cast<unsigned char>(p[0]);
  const auto trail = static_cast<unsigned char>(p[1]);
  return trail != 0 && os::_ismbclegal(lead * 256u + trail) != 0;
}

template <class Ch>
struct Text;

template <>
struct Text<char> {
  static constexpr bool narrow = true;
  static bool pair_at(const char* p) { return is_pair(p); }
  static os::errno_t copy(char* dst, std::size_t size, const char* src) {
    return os::strcpy_s(dst, size, src);
  }
  static os::errno_t copy_n(char* dst, std::size_t size, const char* src, std::size_t count) {
    return os::strncpy_s(dst, size, src, count);
  }
  static os::errno_t append(char* dst, std::size_t size, const char* src) {
    return os::strcat_s(dst, size, src);
  }
  // Upper-cases text in place by the system's rules.
  static char* upper(char* text) { return os::CharUpperA(text); }
};

template <>
struct Text<wchar> {
  static constexpr bool narrow = false;
  static bool pair_at(const wchar*) { return false; }
  static os::errno_t copy(wchar* dst, std::size_t size, const wchar* src) {
    return os::wcscpy_s(dst, size, src);
  }
  static os::errno_t copy_n(wchar* dst, std::size_t size, const wchar* src, std::size_t count) {
    return os::wcsncpy_s(dst, size, src, count);
  }
  static os::errno_t append(wchar* dst, std::size_t size, const wchar* src) {
    return os::wcscat_s(dst, size, src);
  }
  static wchar* upper(wchar* text) { return os::CharUpperW(text); }
};

// Length of a terminated text in elements.
template <class Ch>
std::size_t length(const Ch* text) {
  std::size_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

}  // namespace kz
