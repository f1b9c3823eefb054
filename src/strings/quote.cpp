// Putting a text into double quotes and taking them off:
// KZ_SetDoublequote and KZ_DelDoublequote. Both go by one test only: a text
// with a double quote anywhere counts as quoted.
#include "frame/memory.h"
#include "strings/scan.h"

namespace kz {
namespace {

template <class Ch>
bool has_double_quote(const Ch* text) {
  for (std::size_t i = 0; text[i] != 0; ++i) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(text + i)) continue;  // byte-step: the trail byte comes up next
    }
    if (text[i] == kDoubleQuote) return true;
  }
  return false;
}

// src is read in full into a working copy before dst is written, so the two
// may be the same buffer. A text that does not fit size, or a working copy
// that cannot be had, leaves dst the empty text.
template <class Ch, class Write>
void through_working_copy(const Ch* src, Ch* dst, int32_t size, Write write) {
  if (size <= 0) return;
  const auto capacity = static_cast<std::size_t>(size);
  Scratch<Ch> work(capacity + 1);
  if (!work || Text<Ch>::copy(work.get(), capacity, src) != 0) {
    dst[0] = 0;
    return;
  }
  write(work.get(), capacity);
}

template <class Ch>
void set_double_quote(const Ch* src, Ch* dst, int32_t size) {
  through_working_copy(src, dst, size, [dst](const Ch* work, std::size_t capacity) {
    if (has_double_quote(work)) {
      Text<Ch>::copy(dst, capacity, work);
      return;
    }
    const std::size_t n = length(work);
    if (n + 3 > capacity) {  // both quotes and the terminator must fit
      dst[0] = 0;
      return;
    }
    dst[0] = Ch(kDoubleQuote);
    dst[1] = 0;
    Text<Ch>::append(dst, capacity, work);
    dst[n + 1] = Ch(kDoubleQuote);
    dst[n + 2] = 0;
  });
}

template <class Ch>
void del_double_quote(const Ch* src, Ch* dst, int32_t size) {
  through_working_copy(src, dst, size, [dst](const Ch* work, std::size_t capacity) {
    if (!has_double_quote(work)) {
      Text<Ch>::copy(dst, capacity, work);
      return;
    }
    // The first and the last element go, whichever they are: a quote in the
    // middle of a text still costs it both ends. Intended; in narrow text
    // that can be one byte of a double-byte character.
    const std::size_t n = length(work);
    Text<Ch>::copy(dst, capacity, work + 1);
    if (n >= 2) dst[n - 2] = 0;
  });
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API void KZ_SetDoublequoteW(const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t size) {
  kz::set_double_quote(src, dst, size);
}
KZ_API void KZ_SetDoublequoteA(const char* src, char* dst, int32_t size) {
  kz::set_double_quote(src, dst, size);
}
KZ_API void KZ_DelDoublequoteW(const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t size) {
  kz::del_double_quote(src, dst, size);
}
KZ_API void KZ_DelDoublequoteA(const char* src, char* dst, int32_t size) {
  kz::del_double_quote(src, dst, size);
}

}  // extern "C"
