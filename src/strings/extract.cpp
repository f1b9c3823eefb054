// Copying a fixed number of characters and taking what stands between two
// markers: KZ_StringLengthCopy and KZ_StringGetQuoted. The narrow twins
// convert to wide text, run the wide operation and convert its result back,
// so their counts and results are in characters, not bytes.
#include <cstring>

#include "frame/convert.h"

namespace kz {
namespace {

bool refuses_length_copy(const void* src, const void* dst, int32_t count, int32_t size) {
  return src == nullptr || dst == nullptr || count == 0 || size <= 0 || count >= size;
}

// Copies the first count elements of src, terminators included, into a
// zero-filled dst. A negative count copies nothing and gives 0.
int32_t length_copy(const wchar* src, wchar* dst, int32_t count, int32_t size) {
  if (refuses_length_copy(src, dst, count, size)) return 0;
  std::memset(dst, 0, static_cast<std::size_t>(size) * sizeof(wchar));
  if (count < 0) return 0;
  std::memcpy(dst, src, static_cast<std::size_t>(count) * sizeof(wchar));
  return count;
}

int32_t length_copy_narrow(const char* src, char* dst, int32_t count, int32_t size) {
  if (refuses_length_copy(src, dst, count, size)) return 0;
  // A wide form longer than size fails to convert; only the first count
  // units of what the scratch then holds are used.
  const WideText wide_src(src, size);
  const Scratch<wchar> wide_dst(static_cast<std::size_t>(size));
  if (!wide_src || !wide_dst) return 0;  // dst stays as it was
  const int32_t copied = length_copy(wide_src.get(), wide_dst.get(), count, size);
  if (copied > 0) to_narrow(wide_dst.get(), dst, size);
  return copied;
}

// Whether `marker` stands at text, compared over `width` elements; stops at
// the first difference, so it never reads behind text's terminator.
bool marker_at(const wchar* text, const wchar* marker, std::size_t width) {
  for (std::size_t k = 0; k < width; ++k)
    if (text[k] != marker[k]) return false;
  return true;
}

int32_t get_quoted(const wchar* text, wchar* out, int32_t size, const wchar* open,
                   const wchar* close) {
  if (text == nullptr || out == nullptr || open == nullptr || close == nullptr || size <= 0)
    return 0;
  std::memset(out, 0, static_cast<std::size_t>(size) * sizeof(wchar));
  // Both searches compare at the width of open. An empty marker is never
  // found, and a close of another width than open is not found either.
  const std::size_t width = length(open);
  if (width == 0 || length(close) != width) return 0;

  std::size_t first = 0;
  while (text[first] != 0 && !marker_at(text + first, open, width)) ++first;
  if (text[first] == 0) return 0;
  // The extract begins one element behind open, whatever open's width.
  const std::size_t start = first + 1;
  std::size_t end = start;
  while (text[end] != 0 && !marker_at(text + end, close, width)) ++end;
  if (text[end] == 0) return 0;
  // An empty extract, or one of size elements or more, is refused and gives 0.
  length_copy(text + start, out, static_cast<int32_t>(end - start), size);
  return static_cast<int32_t>(length(out));
}

int32_t get_quoted_narrow(const char* text, char* out, int32_t size, const char* open,
                          const char* close) {
  if (text == nullptr || out == nullptr || open == nullptr || close == nullptr || size <= 0)
    return 0;
  std::memset(out, 0, static_cast<std::size_t>(size));
  const WideText wide_text(text, size), wide_open(open), wide_close(close);
  const Scratch<wchar> wide_out(static_cast<std::size_t>(size));
  if (!wide_text || !wide_open || !wide_close || !wide_out) return 0;
  const int32_t extracted =
      get_quoted(wide_text.get(), wide_out.get(), size, wide_open.get(), wide_close.get());
  if (extracted > 0) to_narrow(wide_out.get(), out, size);
  return extracted;
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StringLengthCopyW(const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t count,
                                    int32_t size) {
  return kz::length_copy(src, dst, count, size);
}
KZ_API int32_t KZ_StringLengthCopyA(const char* src, char* dst, int32_t count, int32_t size) {
  return kz::length_copy_narrow(src, dst, count, size);
}
KZ_API int32_t KZ_StringGetQuotedW(const KZ_WCHAR* text, KZ_WCHAR* out, int32_t size,
                                   const KZ_WCHAR* open, const KZ_WCHAR* close) {
  return kz::get_quoted(text, out, size, open, close);
}
KZ_API int32_t KZ_StringGetQuotedA(const char* text, char* out, int32_t size, const char* open,
                                   const char* close) {
  return kz::get_quoted_narrow(text, out, size, open, close);
}

}  // extern "C"
