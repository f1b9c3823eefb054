// The pair test and the two code conversions through which narrow text
// meets wide text: KZ_IsSJisMultiByteChar, KZ_SJIS2UNICODE and
// KZ_UNICODE2SJIS.
#include "frame/convert.h"

#include <cstring>

namespace kz {
namespace {

// Both conversions leave dst as if it had been zero-filled first, so that
// an empty source leaves the empty text and a caller can go by dst alone.
// The result counts the terminator and one more: "abc" gives 5, a failure 1.
template <class From, class To, class Convert>
int32_t convert(const From* src, To* dst, int32_t size, Convert platform_convert) {
  const auto zero = [&](int32_t from) {
    // Most callers size dst by the text and leave nothing to zero.
    if (from < size) std::memset(dst + from, 0, static_cast<std::size_t>(size - from) * sizeof(To));
  };
  const bool fill = dst != nullptr && size > 0;
  if (src == nullptr || src[0] == 0) {
    if (fill) zero(0);
    return -1;
  }
  if (size < 0) return 1;  // the platform refuses a negative capacity
  if (!fill) return platform_convert(src, nullptr, size) + 1;
  // A successful conversion writes exactly its count from the start, so
  // zeroing what lies behind it gives the same bytes as zeroing first,
  // without a second pass over dst.
  const int written = platform_convert(src, dst, size);
  if (written > 0) {
    zero(written);
    return written + 1;
  }
  // A failed one may have left part of the text: fill, then convert again.
  zero(0);
  return platform_convert(src, dst, size) + 1;
}

}  // namespace

int32_t to_wide(const char* src, wchar* dst, int32_t size) {
  return convert(src, dst, size, [](const char* s, wchar* d, int n) {
    return os::MultiByteToWideChar(os::kAnsiCodePage, 0, s, -1, d, n);
  });
}

int32_t to_narrow(const wchar* src, char* dst, int32_t size) {
  return convert(src, dst, size, [](const wchar* s, char* d, int n) {
    return os::WideCharToMultiByte(os::kAnsiCodePage, 0, s, -1, d, n, nullptr, nullptr);
  });
}

}  // namespace kz

extern "C" {

KZ_API int32_t KZ_IsSJisMultiByteChar(const char* p) { return kz::is_pair(p) ? 1 : 0; }

KZ_API int32_t KZ_SJIS2UNICODE(const char* src, KZ_WCHAR* dst, int32_t size) {
  return kz::to_wide(src, dst, size);
}

KZ_API int32_t KZ_UNICODE2SJIS(const KZ_WCHAR* src, char* dst, int32_t size) {
  return kz::to_narrow(src, dst, size);
}

}  // extern "C"
