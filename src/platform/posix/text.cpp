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

// Whether a scan for the terminator may read whole aligned words that hold
// it: never under AddressSanitizer, which reports what lies behind it.
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define KZ_UNDER_ASAN 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(KZ_UNDER_ASAN)
#define KZ_ALIGNED_OVERREAD 0
#elif defined(__SSE2__)
#define KZ_ALIGNED_OVERREAD 1
#else
#define KZ_ALIGNED_OVERREAD 0
#endif

namespace kz::os {
namespace {

using cp932::kDecode;
using cp932::kLeadIndex;

// ---- Decoding ---------------------------------------------------------------
// A lead byte takes the byte after it as its trail, whatever its value, unless
// the text ends there or that byte is 0: then the lead byte stands alone.

// The unit of every byte together with the byte after it, indexed by the
// two as a little-endian 16-bit word (byte | next << 8), as it lies in
// memory: a lead byte with a nonzero next byte gives the pair's unit, any
// other byte its own unit.
// Derived at compile time from the checked-in table (128 KiB of read-only
// data), so that the blocks look a character up with one load from where it
// starts, whatever it is.
struct DecodeByWord {
  char16_t units[65536];
};

constexpr DecodeByWord make_decode_by_word() {
  DecodeByWord table{};
  for (unsigned next = 0; next < 256; ++next)
    for (unsigned byte = 0; byte < 256; ++byte) {
      const unsigned row = kLeadIndex[byte];
      table.units[next * 256 + byte] =
          row != 0 && next != 0 ? kDecode[row * 256 + next] : kDecode[byte];
    }
  return table;
}

constexpr DecodeByWord kDecodeByWord = make_decode_by_word();

#if defined(__SSE2__)
// Bit k set where byte k of the Width at p has its high bit, or is a lead
// byte (Width is 16 or 64).
template <int Width>
std::uint64_t byte_mask(const unsigned char* p, bool leads) {
  std::uint64_t mask = 0;
  for (int part = 0; part < Width / 16; ++part) {
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

// Widens Width ASCII bytes to units.
template <int Width>
void widen_ascii(const unsigned char* src, char16_t* dst) {
  const __m128i zero = _mm_setzero_si128();
  for (int part = 0; part < Width / 16; ++part) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + 16 * part));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 16 * part), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 16 * part + 8),
                     _mm_unpackhi_epi8(bytes, zero));
  }
}

// The trail positions among 64 bytes whose lead bytes are `leads`: in a
// run of lead bytes every other one is a trail, counted from the run's
// start. (The same carry trick finds escaped characters after runs of
// backslashes.) last_is_pair tells whether the last byte is a lead byte
// that takes the byte behind the block.
std::uint64_t trail_positions(std::uint64_t leads, bool& last_is_pair) {
  constexpr std::uint64_t even = 0x5555555555555555ULL;
  const std::uint64_t follows_lead = leads << 1;
  const std::uint64_t odd_starts = leads & ~even & ~follows_lead;
  std::uint64_t sum = 0;
  last_is_pair = __builtin_add_overflow(odd_starts, leads, &sum);
  return (even ^ (sum << 1)) & follows_lead;
}

// The unit of the character that starts at p.
inline char16_t unit_at(const unsigned char* p) {
  std::uint16_t word;
  std::memcpy(&word, p, 2);
  return kDecodeByWord.units[word];
}

// Decodes blocks of 64 bytes from in while they lie before `nonzero`,
// the text's terminator, and fit in the destination: an ASCII block is
// widened, any other is cut into characters by bit masks and each
// character looked up where it starts. The byte behind a block is readable
// (at worst the terminator), which a pair at the block's end needs.
//
// The blocks look characters up in groups of eight, so that the
// loop's length varies little and its end is predicted; a group's spare
// lookups write up to seven junk units behind the block's characters. Those
// blocks keep 16 bytes of text behind them, at least eight more units, and
// room for them, so that later units always overwrite the junk.
template <bool Checked>
void decode_blocks(const unsigned char* src, std::size_t& in, std::size_t nonzero, char16_t* dst,
                   std::size_t& out, std::size_t capacity) {
  constexpr int Width = 64;
  constexpr std::size_t text_after = 16, room_after = 8;
  while (in + Width + text_after <= nonzero && (!Checked || out + Width + room_after <= capacity)) {
    const unsigned char* block = src + in;
    if (byte_mask<Width>(block, false) == 0) {
      widen_ascii<Width>(block, dst + out);
      in += Width;
      out += Width;
      continue;
    }
    bool last_is_pair = false;
    std::uint64_t starts = ~trail_positions(byte_mask<Width>(block, true), last_is_pair);
    const auto count = static_cast<unsigned>(__builtin_popcountll(starts));
    for (unsigned done = 0; done < count; done += 8)
      for (unsigned k = 0; k < 8; ++k) {
        // Past the last start this looks up the block's last byte.
        dst[out + done + k] = unit_at(block + __builtin_ctzll(starts | 1ULL << 63));
        starts &= starts - 1;
      }
    out += count;
    // A lead byte before the terminator stands alone.
    in += Width + (last_is_pair && block[Width] != 0 ? 1 : 0);
  }
}
#endif

// Decodes length bytes; the first `nonzero` of them are known to be nonzero
// (the text before its terminator), which lets whole blocks be decided from
// bit masks. With Checked, the output stops at capacity and the result is
// -1 when the bytes do not fit.
template <bool Checked>
long decode_run(const unsigned char* src, std::size_t length, std::size_t nonzero, char16_t* dst,
                std::size_t capacity) {
  std::size_t in = 0, out = 0;
#if defined(__SSE2__)
  decode_blocks<Checked>(src, in, nonzero, dst, out, capacity);
#else
  (void)nonzero;
#endif
  while (in < length) {
#if defined(__SSE2__)
    // Sixteen ASCII bytes at a time where a run of them starts.
    if (src[in] < 0x80 && in + 16 <= nonzero && (!Checked || out + 16 <= capacity)) {
      const unsigned high = static_cast<unsigned>(byte_mask<16>(src + in, false));
      if (high == 0) {
        widen_ascii<16>(src + in, dst + out);
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

#if defined(__SSE2__)
// The bytes of eight units when all of them are ASCII, packed into the low
// half of the result; `ascii` tells whether they are.
inline __m128i ascii_units(const char16_t* src, bool& ascii) {
  const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
  const __m128i beyond_ascii = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
  ascii = _mm_movemask_epi8(_mm_cmpeq_epi8(beyond_ascii, _mm_setzero_si128())) == 0xFFFF;
  return _mm_packus_epi16(units, units);
}
#endif

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
  // Blocks of 8 the same way near the end of the text or the destination,
  // where short texts spend most of their time.
  while (in + 8 <= length) {
#if defined(__SSE2__)
    bool ascii = false;
    const __m128i packed = ascii_units(src + in, ascii);
    if (ascii) {
      if (Checked && out + 8 > capacity) break;
      _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + out), packed);
      in += 8;
      out += 8;
      continue;
    }
#endif
    if (in + 8 == length || (Checked && out + 17 > capacity)) break;
    for (int k = 0; k < 8; ++k) out += put_unit(dst + out, src[in + k]);
    in += 8;
  }
  while (in < length) {
    const std::uint16_t in_order = kEncodeInOrder.bytes[src[in++]];
    const unsigned count = 1 + ((in_order + 0xFF00u) >> 16);
    unsigned char bytes[2];
    std::memcpy(bytes, &in_order, 2);
    // Two bytes at once while a unit follows that overwrites a junk byte
    // and is sure to fit behind it.
    if (in < length && (!Checked || out + 3 <= capacity)) {
      std::memcpy(dst + out, bytes, 2);
    } else {
      if (Checked && capacity - out < count) return -1;
      std::memcpy(dst + out, bytes, count);
    }
    out += count;
  }
  return static_cast<long>(out);
}

std::size_t encoded_length(const char16_t* src, std::size_t length) {
  std::size_t doubles = 0;
  for (std::size_t in = 0; in < length; ++in) doubles += cp932::encode_unit(src[in]) > 0xFF;
  return length + doubles;
}

std::size_t wide_length(const char16_t* text) {
#if KZ_ALIGNED_OVERREAD
  // Whole aligned 16-byte words: the word that holds the terminator lies in
  // the terminator's page, so it cannot fault, though it may read units
  // behind the terminator (which AddressSanitizer would rightly report, so
  // its builds take the loop below). An odd address takes the loop as well.
  const auto address = reinterpret_cast<std::uintptr_t>(text);
  if (address % 2 == 0) {
    const auto* word = reinterpret_cast<const __m128i*>(address & ~std::uintptr_t{15});
    const __m128i zero = _mm_setzero_si128();
    // The bytes of the word before the text count for nothing.
    unsigned zeros = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(*word, zero))) >>
                     (address & 15) << (address & 15);
    while (zeros == 0)
      zeros = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(*++word, zero)));
    const auto end = reinterpret_cast<std::uintptr_t>(word) + __builtin_ctz(zeros);
    return (end - address) / 2;
  }
#endif
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

namespace kz::os {
namespace {

// The upper case of one small letter, by the blocks of the system's case
// table that hold letters in plain runs; everything else stays.
WCHAR upper_unit(WCHAR c) {
  if (c >= u'a' && c <= u'z') return static_cast<WCHAR>(c - 0x20);
  if (c < 0xE0) return c == 0xB5 ? WCHAR(0x39C) : c;
  if (c <= 0xFE) return c == 0xF7 ? c : static_cast<WCHAR>(c - 0x20);
  if (c == 0xFF) return 0x178;
  if (c == 0x3C2) return 0x3A3;  // final sigma
  if (c >= 0x3B1 && c <= 0x3CB) return static_cast<WCHAR>(c - 0x20);
  if (c >= 0x430 && c <= 0x44F) return static_cast<WCHAR>(c - 0x20);
  if (c >= 0x450 && c <= 0x45F) return static_cast<WCHAR>(c - 0x50);
  if (c >= 0xFF41 && c <= 0xFF5A) return static_cast<WCHAR>(c - 0x20);
  return c;
}

}  // namespace

char* CharUpperA(char* text) {
  for (std::size_t i = 0; text[i] != 0; ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (text[i + 1] != 0 && _ismbclegal(byte * 256u + static_cast<unsigned char>(text[i + 1]))) {
      ++i;
    } else if (byte >= 'a' && byte <= 'z') {
      text[i] = static_cast<char>(byte - 0x20);
    }
  }
  return text;
}

WCHAR* CharUpperW(WCHAR* text) {
  for (std::size_t i = 0; text[i] != 0; ++i) text[i] = upper_unit(text[i]);
  return text;
}

}  // namespace kz::os
