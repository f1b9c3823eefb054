// Code page 932 as Windows converts it, from the generated tables in
// cp932.h. Code page 0, the ANSI code page, is always 932 here; flags, the
// default character and the used-default flag are not needed by the library
// and take the defaults.
//
// Both directions keep the platform's shape: a size of 0 counts what is
// needed, a destination too small gets what fits (never half of a
// double-byte character) and the result 0, and nothing is written behind the
// last element converted.
#include <cstring>

#include "platform/cp932.h"
#include "platform/platform.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace kz::os {
namespace {

using cp932::kLeadIndex;
using cp932::kPair;
using cp932::kSingleByte;

// Units out of a run of bytes. A lead byte takes the byte after it as its
// trail, whatever its value, unless the text ends there or that byte is 0:
// then the lead byte stands alone. With Checked, the output stops at
// capacity and the result is -1 when the run does not fit.
template <bool Checked>
long decode_run(const unsigned char* src, std::size_t length, char16_t* dst, std::size_t capacity) {
  std::size_t in = 0, out = 0;
  while (in < length) {
#if defined(__SSE2__)
    // Sixteen ASCII bytes at a time; a mixed block gives its ASCII prefix.
    while (in + 16 <= length && (!Checked || out + 16 <= capacity)) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
      const unsigned high = static_cast<unsigned>(_mm_movemask_epi8(bytes));
      if (high != 0) {
        const unsigned ascii = static_cast<unsigned>(__builtin_ctz(high));
        for (unsigned k = 0; k < ascii; ++k) dst[out + k] = src[in + k];
        in += ascii;
        out += ascii;
        break;
      }
      const __m128i zero = _mm_setzero_si128();
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out), _mm_unpacklo_epi8(bytes, zero));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out + 8), _mm_unpackhi_epi8(bytes, zero));
      in += 16;
      out += 16;
    }
    if (in == length) break;
#endif
    if (Checked && out == capacity) return -1;
    const unsigned byte = src[in];
    const unsigned lead = kLeadIndex[byte];
    if (lead != 0 && in + 1 < length && src[in + 1] != 0) {
      dst[out++] = kPair[(lead - 1) * 256u + src[in + 1]];
      in += 2;
    } else {
      dst[out++] = kSingleByte[byte];
      in += 1;
    }
  }
  return static_cast<long>(out);
}

std::size_t decoded_length(const unsigned char* src, std::size_t length) {
  std::size_t trails = 0;
  for (std::size_t in = 0; in + 1 < length; ++in) {
    if (kLeadIndex[src[in]] != 0 && src[in + 1] != 0) {
      ++trails;
      ++in;
    }
  }
  return length - trails;
}

template <bool Checked>
long encode_run(const char16_t* src, std::size_t length, unsigned char* dst, std::size_t capacity) {
  std::size_t in = 0, out = 0;
  while (in < length) {
#if defined(__SSE2__)
    // Sixteen ASCII units at a time.
    while (in + 16 <= length && (!Checked || out + 16 <= capacity)) {
      const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
      const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in + 8));
      const __m128i beyond_ascii = _mm_set1_epi16(static_cast<short>(0xFF80));
      const __m128i any = _mm_and_si128(_mm_or_si128(low, high), beyond_ascii);
      if (_mm_movemask_epi8(_mm_cmpeq_epi8(any, _mm_setzero_si128())) != 0xFFFF) break;
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out), _mm_packus_epi16(low, high));
      in += 16;
      out += 16;
    }
    if (in == length) break;
#endif
    const char16_t unit = src[in++];
    if (unit < 0x80) {
      if (Checked && out == capacity) return -1;
      dst[out++] = static_cast<unsigned char>(unit);
      continue;
    }
    const unsigned bytes = cp932::encode_unit(unit);
    if (bytes < 0x100) {
      if (Checked && out == capacity) return -1;
      dst[out++] = static_cast<unsigned char>(bytes);
    } else {
      if (Checked && capacity - out < 2) return -1;
      dst[out] = static_cast<unsigned char>(bytes >> 8);
      dst[out + 1] = static_cast<unsigned char>(bytes);
      out += 2;
    }
  }
  return static_cast<long>(out);
}

std::size_t encoded_length(const char16_t* src, std::size_t length) {
  std::size_t doubles = 0;
  for (std::size_t in = 0; in < length; ++in)
    doubles += src[in] >= 0x80 && cp932::encode_unit(src[in]) >= 0x100;
  return length + doubles;
}

std::size_t wide_length(const char16_t* text) {
  const char16_t* end = text;
  while (*end != 0) ++end;
  return static_cast<std::size_t>(end - text);
}

// The platform's result: the count, or 0 when it does not fit in an int or
// in the destination.
int result_of(long count) { return count < 0 || count > 0x7FFFFFFF ? 0 : static_cast<int>(count); }

}  // namespace

int MultiByteToWideChar(UINT, DWORD, const char* src, int src_length, WCHAR* dst, int dst_size) {
  if (src == nullptr || src_length == 0 || src_length < -1 || dst_size < 0 ||
      (dst_size > 0 && dst == nullptr))
    return 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(src);
  // A length of -1 converts the terminator as well.
  const std::size_t length =
      src_length < 0 ? std::strlen(src) + 1 : static_cast<std::size_t>(src_length);
  if (dst_size == 0) return result_of(static_cast<long>(decoded_length(bytes, length)));
  auto* out = reinterpret_cast<char16_t*>(dst);
  const auto capacity = static_cast<std::size_t>(dst_size);
  // Each byte gives at most one unit.
  return result_of(capacity >= length ? decode_run<false>(bytes, length, out, capacity)
                                      : decode_run<true>(bytes, length, out, capacity));
}

int WideCharToMultiByte(UINT, DWORD, const WCHAR* src, int src_length, char* dst, int dst_size,
                        const char*, BOOL*) {
  if (src == nullptr || src_length == 0 || src_length < -1 || dst_size < 0 ||
      (dst_size > 0 && dst == nullptr))
    return 0;
  const auto* units = reinterpret_cast<const char16_t*>(src);
  const std::size_t length =
      src_length < 0 ? wide_length(units) + 1 : static_cast<std::size_t>(src_length);
  if (dst_size == 0) return result_of(static_cast<long>(encoded_length(units, length)));
  auto* out = reinterpret_cast<unsigned char*>(dst);
  const auto capacity = static_cast<std::size_t>(dst_size);
  // Each unit gives at most two bytes.
  return result_of(capacity >= 2 * length ? encode_run<false>(units, length, out, capacity)
                                          : encode_run<true>(units, length, out, capacity));
}

int _ismbclegal(unsigned int c) {
  return c <= 0xFFFF && cp932::kLegalLead[c >> 8] != 0 && cp932::kLegalTrail[c & 0xFF] != 0;
}

}  // namespace kz::os
