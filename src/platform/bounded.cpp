// The runtime's bounded copies, written once for both builds. Where the
// destination is too small they leave it empty and report failure instead
// of invoking an invalid-parameter handler, so callers give their own
// failure or empty result.
#include "platform/platform.h"

namespace kz::os {
namespace {

// Copies at most `count` elements of src behind dst[offset], within size.
template <class Ch>
errno_t put(Ch* dst, std::size_t size, std::size_t offset, const Ch* src, std::size_t count) {
  std::size_t n = 0;
  while (n < count && src[n] != 0) {
    if (offset + n + 1 >= size) {  // no room for this element and a terminator
      dst[0] = 0;
      return kERANGE;
    }
    dst[offset + n] = src[n];
    ++n;
  }
  dst[offset + n] = 0;
  return 0;
}

template <class Ch>
errno_t copy(Ch* dst, std::size_t size, const Ch* src, std::size_t count) {
  if (dst == nullptr || size == 0) return kEINVAL;
  if (src == nullptr) {
    dst[0] = 0;
    return kEINVAL;
  }
  return put(dst, size, 0, src, count);
}

template <class Ch>
errno_t append(Ch* dst, std::size_t size, const Ch* src) {
  if (dst == nullptr || size == 0) return kEINVAL;
  std::size_t end = 0;
  while (end < size && dst[end] != 0) ++end;
  if (src == nullptr || end == size) {  // no terminator within size
    dst[0] = 0;
    return kEINVAL;
  }
  return put(dst, size, end, src, SIZE_MAX);
}

}  // namespace

errno_t wcscpy_s(WCHAR* dst, std::size_t size, const WCHAR* src) {
  return copy(dst, size, src, SIZE_MAX);
}
errno_t strcpy_s(char* dst, std::size_t size, const char* src) {
  return copy(dst, size, src, SIZE_MAX);
}
errno_t wcsncpy_s(WCHAR* dst, std::size_t size, const WCHAR* src, std::size_t count) {
  return copy(dst, size, src, count);
}
errno_t strncpy_s(char* dst, std::size_t size, const char* src, std::size_t count) {
  return copy(dst, size, src, count);
}
errno_t wcscat_s(WCHAR* dst, std::size_t size, const WCHAR* src) { return append(dst, size, src); }
errno_t strcat_s(char* dst, std::size_t size, const char* src) { return append(dst, size, src); }

}  // namespace kz::os
