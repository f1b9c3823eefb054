// What the twins need to know about their element type. An operation is
// written once as a template over Ch (char for narrow Shift-JIS text,
// KZ_WCHAR for wide text) and asks Text<Ch> for the element's pair test and
// the runtime calls of the matching width; literal<Ch> gives its literals.
// This is the one traits struct of the library: a family that needs another
// runtime call of both widths adds it to both specializations here.
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
  static int to_int(const char* text) { return os::atoi(text); }
  static int compare_folded(const char* a, const char* b) { return os::_stricmp(a, b); }
  // A char argument reaches the formatter as the call's own promotion makes
  // it: sign-extended to int.
  template <class... Args>
  static int format(char* out, const char* layout, Args... args) {
    return os::wsprintfA(out, layout, args...);
  }
  // Numbers as text and back: to_int above, and the wider parses and the
  // decimal writers of the narrow runtime.
  static std::int64_t to_int64(const char* text) { return os::_atoi64(text); }
  static std::uint64_t to_uint64(const char* text) { return os::_strtoui64(text, nullptr, 10); }
  static std::int32_t to_long(const char* text, char** end, int radix) {
    return os::strtol(text, end, radix);
  }
  static os::errno_t decimal(std::int32_t value, char* buffer, std::size_t size) {
    return os::_itoa_s(value, buffer, size, 10);
  }
  static os::errno_t decimal(std::uint32_t value, char* buffer, std::size_t size) {
    return os::_ultoa_s(value, buffer, size, 10);
  }
  static os::errno_t decimal(std::int64_t value, char* buffer, std::size_t size) {
    return os::_i64toa_s(value, buffer, size, 10);
  }
  static os::errno_t decimal(std::uint64_t value, char* buffer, std::size_t size) {
    return os::_ui64toa_s(value, buffer, size, 10);
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
  static int to_int(const wchar* text) { return os::_wtoi(text); }
  static int compare_folded(const wchar* a, const wchar* b) { return os::_wcsicmp(a, b); }
  template <class... Args>
  static int format(wchar* out, const wchar* layout, Args... args) {
    return os::wsprintfW(out, layout, args...);
  }
  // Numbers as text and back: to_int above, and the wider parses and the
  // decimal writers of the wide runtime.
  static std::int64_t to_int64(const wchar* text) { return os::_wtoi64(text); }
  static std::uint64_t to_uint64(const wchar* text) { return os::_wcstoui64(text, nullptr, 10); }
  static std::int32_t to_long(const wchar* text, wchar** end, int radix) {
    return os::wcstol(text, end, radix);
  }
  static os::errno_t decimal(std::int32_t value, wchar* buffer, std::size_t size) {
    return os::_itow_s(value, buffer, size, 10);
  }
  static os::errno_t decimal(std::uint32_t value, wchar* buffer, std::size_t size) {
    return os::_ultow_s(value, buffer, size, 10);
  }
  static os::errno_t decimal(std::int64_t value, wchar* buffer, std::size_t size) {
    return os::_i64tow_s(value, buffer, size, 10);
  }
  static os::errno_t decimal(std::uint64_t value, wchar* buffer, std::size_t size) {
    return os::_ui64tow_s(value, buffer, size, 10);
  }
  static wchar* upper(wchar* text) { return os::CharUpperW(text); }
};

// An ASCII literal in the element type Ch, made at compile time, so that one
// format string or name serves both widths:
//   static constexpr auto kLayout = literal<Ch>("%04d%c%02d");
//   Text<Ch>::format(out, kLayout.text, ...);
template <class Ch, std::size_t N>
struct Literal {
  Ch text[N];
};

template <class Ch, std::size_t N>
constexpr Literal<Ch, N> literal(const char (&ascii)[N]) {
  Literal<Ch, N> out{};
  for (std::size_t i = 0; i < N; ++i) out.text[i] = static_cast<Ch>(ascii[i]);
  return out;
}

// Length of a terminated text in elements.
template <class Ch>
std::size_t length(const Ch* text) {
  std::size_t n = 0;
  while (text[n] != 0) ++n;
  return n;
}

}  // namespace kz
