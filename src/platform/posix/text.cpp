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

using cp932::kDecode;
using cp932::kLeadIndex;

// ---- Decoding ---------------------------------------------------------------
// A lead byte takes the byte after it as its trail, whatever its value, unless
// the text ends there or that byte is 0: then the lead byte stands alone.

#if defined(__SSE2__)
// The blocks compute a lead byte's row instead of looking it up.
constexpr bool lead_rows_are_in_byte_order() {
  for (unsigned byte = 0; byte < 256; ++byte) {
    const unsigned row = byte >= 0x81 && byte <= 0x9F   ? byte - 0x80
                         : byte >= 0xE0 && byte <= 0xFC ? byte - 0xC0
                                                        : 0;
    if (kLeadIndex[byte] != row) return false;
  }
  return true;
}
static_assert(lead_rows_are_in_byte_order());

// Bit k set where byte k of the 64 at p has its high bit, or is a lead byte.
std::uint64_t mask64(const unsigned char* p, bool leads) {
  std::uint64_t mask = 0;
  for (int part = 0; part < 4; ++part) {
    __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * part));
    if (leads) {
      // 0x81-0x9F and 0xE0-0xFC become 0xA1-0xDC by flipping bit 5; that
      // range, moved to start at -128, is what lies below -128 + 0x3C.
      bytes = _mm_xor_si128(bytes, _mm_set1_epi8(0x20));
      bytes = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(0xA1)));
      bytes = _mm_xor_si128(bytes, _mm_set1_epi8(static_cast<char>(0x80)));
      bytes = _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(0x80 + 0x3C)));
    }
    mask |= static_cast<std::uint64_t>(static_cast<unsigned>(_mm_movemask_epi8(bytes)))
            << (16 * part);
  }
  return mask;
}

// The trail positions among 64 bytes whose lead bytes are `leads`: in a run
// of lead bytes every other one is a trail, counted from the run's start.
// (The same carry trick finds escaped characters after runs of backslashes.)
std::uint64_t trail_positions(std::uint64_t leads, bool& last_is_pair) {
  constexpr std::uint64_t even = 0x5555555555555555ULL;
  const std::uint64_t follows_lead = leads << 1;
  const std::uint64_t odd_starts = leads & ~even & ~follows_lead;
  std::uint64_t sum = 0;
  last_is_pair = __builtin_add_overflow(odd_starts, leads, &sum);
  return (even ^ (sum << 1)) & follows_lead;
}
#endif

// Decodes length bytes; the first `nonzero` of them are known to be nonzero
// (the text before its terminator), which lets whole blocks of 64 be decided
// from bit masks. With Checked, the output stops at capacity and the result
// is -1 when the bytes do not fit.
template <bool Checked>
long decode_run(const unsigned char* src, std::size_t length, std::size_t nonzero, char16_t* dst,
                std::size_t capacity) {
  std::size_t in = 0, out = 0;
#if defined(__SSE2__)
  // A block needs the byte behind it as well, for a pair at its last byte.
  while (in + 65 <= nonzero && (!Checked || out + 64 <= capacity)) {
    const unsigned char* block = src + in;
    if (mask64(block, false) == 0) {
      const __m128i zero = _mm_setzero_si128();
      for (int part = 0; part < 4; ++part) {
        const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block + 16 * part));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out + 16 * part),
                         _mm_unpacklo_epi8(bytes, zero));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out + 16 * part + 8),
                         _mm_unpackhi_epi8(bytes, zero));
      }
      in += 64;
      out += 64;
      continue;
    }
    const std::uint64_t leads = mask64(block, true);
    bool last_is_pair = false;
    const std::uint64_t trails = trail_positions(leads, last_is_pair);
    const std::uint64_t pairs = leads & ~trails;
    // The table index of every position, eight at a time; then each
    // character start looks its unit up.
    alignas(16) std::uint16_t index[64];
    for (int part = 0; part < 8; ++part) {
      const __m128i zero = _mm_setzero_si128();
      const __m128i here = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(block + 8 * part));
      const __m128i next = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(block + 8 * part + 1));
      const __m128i byte = _mm_unpacklo_epi8(here, zero);
      const __m128i trail = _mm_unpacklo_epi8(next, zero);
      // The row of a lead byte: 0x81-0x9F are rows 1-31, 0xE0-0xFC rows 32-60.
      const __m128i high_leads = _mm_cmpgt_epi16(byte, _mm_set1_epi16(0xDF));
      const __m128i row = _mm_sub_epi16(_mm_sub_epi16(byte, _mm_set1_epi16(0x80)),
                                        _mm_and_si128(high_leads, _mm_set1_epi16(0x40)));
      const __m128i pair_index = _mm_add_epi16(_mm_slli_epi16(row, 8), trail);
      const __m128i lane_bits = _mm_setr_epi16(1, 2, 4, 8, 16, 32, 64, 128);
      const __m128i chunk = _mm_set1_epi16(static_cast<short>((pairs >> (8 * part)) & 0xFF));
      const __m128i is_pair = _mm_cmpeq_epi16(_mm_and_si128(chunk, lane_bits), lane_bits);
      const __m128i chosen =
          _mm_or_si128(_mm_and_si128(is_pair, pair_index), _mm_andnot_si128(is_pair, byte));
      _mm_store_si128(reinterpret_cast<__m128i*>(index + 8 * part), chosen);
    }
    for (std::uint64_t starts = ~trails; starts != 0; starts &= starts - 1)
      dst[out++] = kDecode[index[__builtin_ctzll(starts)]];
    in += 64 + (last_is_pair ? 1 : 0);
  }
#else
  (void)nonzero;
#endif
  while (in < length) {
#if defined(__SSE2__)
    // Sixteen ASCII bytes at a time where a run of them starts.
    if (src[in] < 0x80 && in + 16 <= nonzero && (!Checked || out + 16 <= capacity)) {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
      const unsigned high = static_cast<unsigned>(_mm_movemask_epi8(bytes));
      if (high == 0) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out),
                         _mm_unpacklo_epi8(bytes, _mm_setzero_si128()));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out + 8),
                         _mm_unpackhi_epi8(bytes, _mm_setzero_si128()));
        in += 16;
        out += 16;
        continue;
      }
      for (const std::size_t end = in + static_cast<unsigned>(__builtin_ctz(high)); in < end;)
        dst[out++] = src[in++];
    }
#endif
    if (Checked && out == capacity) return -1;
    const unsigned byte = src[in];
    const unsigned row = kLeadIndex[byte];
    if (row != 0 && in + 1 < length && src[in + 1] != 0) {
      dst[out++] = kDecode[row * 256u + src[in + 1]];
      in += 2;
    } else {
      dst[out++] = kDecode[byte];
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

// ---- Encoding ---------------------------------------------------------------
// Each unit on its own: a lone surrogate, and each half of a pair, take the
// default character like any unit without a narrow form.

// The encoding table spread out to one entry a unit for the blocks (derived
// at compile time from the paged table; 128 KiB of read-only data), with
// the bytes of each unit as they lie in memory (a double-byte value has its lead
// byte in the low half, so that a 16-bit store writes lead, then trail).
struct EncodeInOrder {
  std::uint16_t bytes[65536];
};

constexpr EncodeInOrder make_encode_in_order() {
  EncodeInOrder table{};
  for (unsigned at = 0; at < 65536; ++at) {
    const unsigned bytes = cp932::kEncode[cp932::kEncodePage[at >> 8] * 256 + (at & 0xFF)];
    table.bytes[at] =
        static_cast<std::uint16_t>(bytes > 0xFF ? (bytes >> 8) | ((bytes & 0xFF) << 8) : bytes);
  }
  return table;
}

constexpr EncodeInOrder kEncodeInOrder = make_encode_in_order();

// Writes the bytes of one unit as two bytes at once: for a single byte the
// second is junk that the next unit overwrites. Gives the count of real bytes.
inline unsigned put_unit(unsigned char* dst, char16_t unit) {
  const std::uint16_t in_order = kEncodeInOrder.bytes[unit];
  std::memcpy(dst, &in_order, 2);
  // 2 above 0xFF. Written as arithmetic: a comparison here costs a quarter
  // of the encoder's speed on Japanese text.
  return 1 + ((in_order + 0xFF00u) >> 16);
}

template <bool Checked>
long encode_run(const char16_t* src, std::size_t length, unsigned char* dst, std::size_t capacity) {
  std::size_t in = 0, out = 0;
  // Blocks of 16 units leave a unit behind them to overwrite their junk
  // byte, and room for it, so nothing shows where the platform writes nothing.
  while (in + 16 < length && (!Checked || out + 34 <= capacity)) {
#if defined(__SSE2__)
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in + 8));
    const __m128i beyond_ascii =
        _mm_and_si128(_mm_or_si128(low, high), _mm_set1_epi16(static_cast<short>(0xFF80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi8(beyond_ascii, _mm_setzero_si128())) == 0xFFFF) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out), _mm_packus_epi16(low, high));
      in += 16;
      out += 16;
      continue;
    }
#endif
    for (int k = 0; k < 16; ++k) out += put_unit(dst + out, src[in + k]);
    in += 16;
  }
  while (in < length) {
#if defined(__SSE2__)
    // Eight ASCII units at a time where a run of them starts.
    if (src[in] < 0x80 && in + 8 <= length && (!Checked || out + 8 <= capacity)) {
      const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
      const __m128i beyond_ascii = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
      if (_mm_movemask_epi8(_mm_cmpeq_epi8(beyond_ascii, _mm_setzero_si128())) == 0xFFFF) {
        _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + out), _mm_packus_epi16(units, units));
        in += 8;
        out += 8;
        continue;
      }
    }
#endif
    const unsigned bytes = cp932::encode_unit(src[in++]);
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
  for (std::size_t in = 0; in < length; ++in) doubles += cp932::encode_unit(src[in]) > 0xFF;
  return length + doubles;
}

std::size_t wide_length(const char16_t* text) {
  const char16_t* end = text;
  // Each unit is read only when the one before it is not the terminator.
  while (end[0] != 0 && end[1] != 0 && end[2] != 0 && end[3] != 0) end += 4;
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
  const std::size_t nonzero = src_length < 0 ? std::strlen(src) : 0;
  const std::size_t length = src_length < 0 ? nonzero + 1 : static_cast<std::size_t>(src_length);
  if (dst_size == 0) return result_of(static_cast<long>(decoded_length(bytes, length)));
  auto* out = reinterpret_cast<char16_t*>(dst);
  const auto capacity = static_cast<std::size_t>(dst_size);
  // Each byte gives at most one unit.
  return result_of(capacity >= length ? decode_run<false>(bytes, length, nonzero, out, capacity)
                                      : decode_run<true>(bytes, length, nonzero, out, capacity));
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
