// What the date and time twins need of their element type: the split and
// release of a list, the number parse, the formatter and the case-blind
// compare of the matching width, and literals widened at compile time so
// that one format string serves both widths.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/text.h"

namespace kz::datetime {

template <class Ch>
struct Calls;

template <>
struct Calls<char> {
  static std::int32_t split(const char* text, char delimiter, StrList* list) {
    return KZ_StringSplitA(text, delimiter, list, 1);
  }
  static void release(StrList* list) { KZ_DeleteStrListA(list); }
  static int to_int(const char* text) { return os::atoi(text); }
  static int compare_folded(const char* a, const char* b) { return os::_stricmp(a, b); }
  // The delimiters reach the formatter as the call's own argument promotion
  // makes them: a char sign-extended to int.
  template <class... Args>
  static int format(char* out, const char* layout, Args... args) {
    return os::wsprintfA(out, layout, args...);
  }
};

template <>
struct Calls<wchar> {
  static std::int32_t split(const wchar* text, wchar delimiter, StrList* list) {
    return KZ_StringSplitW(text, delimiter, list, 1);
  }
  static void release(StrList* list) { KZ_DeleteStrListW(list); }
  static int to_int(const wchar* text) { return os::_wtoi(text); }
  static int compare_folded(const wchar* a, const wchar* b) { return os::_wcsicmp(a, b); }
  template <class... Args>
  static int format(wchar* out, const wchar* layout, Args... args) {
    return os::wsprintfW(out, layout, args...);
  }
};

// An ASCII literal in the element type Ch.
template <class Ch, std::size_t N>
struct Literal {
  Ch text[N];
};

template <class Ch, std::size_t N>
constexpr Literal<Ch, N> widen(const char (&ascii)[N]) {
  Literal<Ch, N> out{};
  for (std::size_t i = 0; i < N; ++i) out.text[i] = static_cast<Ch>(ascii[i]);
  return out;
}

// The entries of a filled list, as texts of the list's width.
template <class Ch>
Ch* entry(const StrList& list, std::int32_t index) {
  return static_cast<Ch*>(list.strings[index]);
}

}  // namespace kz::datetime
