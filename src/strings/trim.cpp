// Trimming a chosen element from the ends of a text, and dropping leading
// zeros: KZ_StringTrimLeft, KZ_StringTrimRight, KZ_StringTrim and
// KZ_StringZeroSuppress.
//
// A double-byte character is never the trim element or a zero, so in narrow
// text a position that begins a pair ends the scan at once: no result begins
// or ends inside a character, even where a trail byte equals trim.
#include "frame/text.h"

namespace kz {
namespace {

// Index of the first element from the start that `skip` does not accept, or
// of the terminator.
template <class Ch, class Skip>
std::size_t skip_leading(const Ch* src, Skip skip) {
  std::size_t p = 0;
  while (src[p] != 0) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(src + p)) break;
    }
    if (!skip(src[p])) break;
    ++p;
  }
  return p;
}

// Copies src from `start` into dst; gives the length of dst.
template <class Ch>
int32_t copy_from(Ch* dst, const Ch* src, int32_t size, std::size_t start) {
  if (size <= 0) return 0;
  Text<Ch>::copy(dst, static_cast<std::size_t>(size), src + start);
  return static_cast<int32_t>(length(dst));
}

template <class Ch>
int32_t trim_left(Ch* dst, const Ch* src, int32_t size, Ch trim) {
  std::size_t start = skip_leading(src, [trim](Ch c) { return c == trim; });
  // A text of trim elements alone is kept whole; intended, the right trim
  // differs here.
  if (src[start] == 0) start = 0;
  return copy_from(dst, src, size, start);
}

template <class Ch>
int32_t trim_right(Ch* dst, const Ch* src, int32_t size, Ch trim) {
  if (size <= 0) return 0;
  const std::size_t n = length(src);
  // A text of trim elements alone keeps its first element; intended.
  std::size_t keep = n == 0 ? 0 : 1;
  for (std::size_t p = n; p-- > 0;) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(src + p)) {  // the byte behind had matched trim
        keep = p + 2;
        break;
      }
    }
    if (src[p] != trim) {
      keep = p + 1;
      break;
    }
  }
  // src and dst may be the same buffer: the copy moves nothing then and only
  // sets the terminator.
  Text<Ch>::copy_n(dst, static_cast<std::size_t>(size), src, keep);
  return static_cast<int32_t>(length(dst));
}

template <class Ch>
int32_t trim_both(Ch* dst, const Ch* src, int32_t size, Ch trim) {
  if (size <= 0) return 0;
  trim_left(dst, src, size, trim);
  return trim_right(dst, dst, size, trim);
}

template <class Ch>
int32_t zero_suppress(Ch* dst, const Ch* src, int32_t size) {
  // Unlike the left trim, a text of zeros alone becomes the empty text. No
  // sign is looked at.
  return copy_from(dst, src, size, skip_leading(src, [](Ch c) { return c == Ch('0'); }));
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StringTrimLeftW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size, KZ_WCHAR trim) {
  return kz::trim_left(dst, src, size, trim);
}
KZ_API int32_t KZ_StringTrimLeftA(char* dst, const char* src, int32_t size, char trim) {
  return kz::trim_left(dst, src, size, trim);
}
KZ_API int32_t KZ_StringTrimRightW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size,
                                   KZ_WCHAR trim) {
  return kz::trim_right(dst, src, size, trim);
}
KZ_API int32_t KZ_StringTrimRightA(char* dst, const char* src, int32_t size, char trim) {
  return kz::trim_right(dst, src, size, trim);
}
KZ_API int32_t KZ_StringTrimW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size, KZ_WCHAR trim) {
  return kz::trim_both(dst, src, size, trim);
}
KZ_API int32_t KZ_StringTrimA(char* dst, const char* src, int32_t size, char trim) {
  return kz::trim_both(dst, src, size, trim);
}
KZ_API int32_t KZ_StringZeroSuppressW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size) {
  return kz::zero_suppress(dst, src, size);
}
KZ_API int32_t KZ_StringZeroSuppressA(char* dst, const char* src, int32_t size) {
  return kz::zero_suppress(dst, src, size);
}

}  // extern "C"
