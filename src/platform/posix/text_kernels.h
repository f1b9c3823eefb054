// The vector kernels of the code page 932 conversions, written once over the
// operations of an instruction set. text_sse2.cpp, text_avx2.cpp and
// text_avx512.cpp each define those operations in a struct and instantiate
// the kernels with it.
//
// Everything here has internal linkage: the three files are compiled for
// different processors, and the linker must never pick one file's copy of a
// function for another.
#pragma once

#include <emmintrin.h>

#include <cstring>

#include "platform/cp932.h"
#include "platform/posix/text_paths.h"

namespace kz::os::cp932_paths {
namespace {

// ---- Decoding ---------------------------------------------------------------
// A lead byte takes the byte after it as its trail, whatever its value, unless
// the text ends there or that byte is 0: then the lead byte stands alone.

// The unit of the character that starts at p.
inline char16_t unit_at(const unsigned char* p) {
  std::uint16_t word;
  std::memcpy(&word, p, 2);
  return kDecodeByWord.units[word];
}

// The unit of a byte alone or of a lead byte with its trail.
inline char16_t single_unit(unsigned byte) { return cp932::kDecode[byte]; }
inline char16_t pair_unit(unsigned lead, unsigned trail) {
  return cp932::kDecode[cp932::kLeadIndex[lead] * 256u + trail];
}

// The trail positions among 64 bytes whose lead bytes are `leads`: in a
// run of lead bytes every other one is a trail, counted from the run's
// start. (The same carry trick finds escaped characters after runs of
// backslashes.) last_is_pair tells whether the last byte is a lead byte
// that takes the byte behind the block.
inline std::uint64_t trail_positions(std::uint64_t leads, bool& last_is_pair) {
  constexpr std::uint64_t even = 0x5555555555555555ULL;
  const std::uint64_t follows_lead = leads << 1;
  const std::uint64_t odd_starts = leads & ~even & ~follows_lead;
  std::uint64_t sum = 0;
  last_is_pair = __builtin_add_overflow(odd_starts, leads, &sum);
  return (even ^ (sum << 1)) & follows_lead;
}

inline unsigned lowest(std::uint64_t bits) { return static_cast<unsigned>(__builtin_ctzll(bits)); }

// Blocks with more characters outside ASCII than this look every character
// up; sparser ones widen the ASCII runs between them as vectors.
constexpr unsigned kDenseDecode = 20;
constexpr unsigned kDenseEncode = 10;
constexpr unsigned kDenseCompressed = 8;

// Decodes blocks of 64 bytes while they lie before `nonzero`, the text's
// terminator, and fit in the destination, then the rest in runs of 16 ASCII
// bytes and one character at a time. A block that is not all ASCII is cut
// into characters by bit masks.
//
// Without exact stores (Isa::kCompress false) the blocks write vectors that
// reach up to 16 units past the characters they hold; the junk lies inside
// the destination, and every block keeps 32 bytes of text behind it, so at
// least 16 more units, that overwrite it.
template <class Isa, bool Checked>
long decode_kernel(const unsigned char* src, std::size_t length, std::size_t nonzero, char16_t* dst,
                   std::size_t capacity) {
  constexpr std::size_t text_after = Isa::kCompress ? 1 : 32;
  constexpr std::size_t room_after = Isa::kCompress ? 0 : 16;
  std::size_t in = 0, out = 0;
  while (in + 64 + text_after <= nonzero && (!Checked || out + 64 + room_after <= capacity)) {
    const unsigned char* block = src + in;
    const std::uint64_t high = Isa::high64(block);
    if (high == 0) {
      Isa::widen64(block, dst + out);
      in += 64;
      out += 64;
      continue;
    }
    bool last_is_pair = false;
    const std::uint64_t leads = Isa::leads64(block);
    const std::uint64_t starts = ~trail_positions(leads, last_is_pair);
    std::uint64_t others = high & starts;
    if constexpr (Isa::kCompress) {
      if (Isa::count(others) > kDenseCompressed) {
        // The word at every character's start, packed, then each looked up.
        std::uint16_t words[64];
        const unsigned count = Isa::start_words(block, starts, words);
        for (unsigned k = 0; k < count; ++k) dst[out + k] = kDecodeByWord.units[words[k]];
        out += count;
        in += 64 + (last_is_pair ? 1 : 0);
        continue;
      }
      // Every character's first byte widened in place, then the characters
      // outside ASCII looked up where they landed.
      const unsigned count = Isa::widen_starts(block, starts, dst + out);
      for (; others != 0; others &= others - 1) {
        const unsigned at = lowest(others);
        dst[out + Isa::count(starts & ((std::uint64_t{1} << at) - 1))] = unit_at(block + at);
      }
      out += count;
    } else if (Isa::count(others) > kDenseDecode) {
      // Looked up in groups of eight, so that the loop's length varies
      // little and its end is predicted; a group's spare lookups write junk
      // units (the block's last byte) that later units overwrite.
      std::uint64_t remaining = starts;
      const unsigned count = Isa::count(starts);
      for (unsigned done = 0; done < count; done += 8)
        for (unsigned k = 0; k < 8; ++k) {
          dst[out + done + k] = unit_at(block + lowest(remaining | std::uint64_t{1} << 63));
          remaining &= remaining - 1;
        }
      out += count;
    } else {
      // The ASCII run before each other character is widened 16 bytes at a
      // time (a run of 0 still stores, and the character overwrites it).
      unsigned from = 0;
      for (; others != 0; others &= others - 1) {
        const unsigned at = lowest(others);
        Isa::widen16(block + from, dst + out);
        for (unsigned done = 16; done < at - from; done += 16)
          Isa::widen16(block + from + done, dst + out + done);
        out += at - from;
        dst[out++] = unit_at(block + at);
        from = at + 1 + static_cast<unsigned>(leads >> at & 1);
      }
      for (unsigned done = 0; from + done < 64; done += 16)
        Isa::widen16(block + from + done, dst + out + done);
      if (from < 64) out += 64 - from;
    }
    // A pair may take the byte behind the block, which is no terminator.
    in += 64 + (last_is_pair ? 1 : 0);
  }

  while (in < length) {
    // Sixteen ASCII bytes at a time where a run of them starts.
    if (src[in] < 0x80 && in + 16 <= nonzero && (!Checked || out + 16 <= capacity)) {
      const unsigned high = Isa::high16(src + in);
      if (high == 0) {
        Isa::widen16(src + in, dst + out);
        in += 16;
        out += 16;
        continue;
      }
      for (const std::size_t end = in + lowest(high); in < end;) dst[out++] = src[in++];
    }
    if (Checked && out == capacity) return -1;
    const unsigned byte = src[in];
    if (cp932::kLeadIndex[byte] != 0 && in + 1 < length && src[in + 1] != 0) {
      dst[out++] = pair_unit(byte, src[in + 1]);
      in += 2;
    } else {
      dst[out++] = single_unit(byte);
      in += 1;
    }
  }
  return static_cast<long>(out);
}

// ---- Encoding ---------------------------------------------------------------
// Each unit on its own: a lone surrogate, and each half of a pair, take the
// default character like any unit without a narrow form.

// Writes the bytes of one unit as two bytes at once: for a single byte the
// second is junk that the next unit overwrites. Gives the count of real bytes.
inline unsigned put_unit(unsigned char* dst, char16_t unit) {
  const std::uint16_t in_order = kEncodeInOrder.bytes[unit];
  std::memcpy(dst, &in_order, 2);
  // 2 above 0xFF. Written as arithmetic: a comparison here costs a quarter
  // of the encoder's speed on Japanese text.
  return 1 + ((in_order + 0xFF00u) >> 16);
}

// The bytes of eight units when all of them are ASCII, packed into the low
// half of the result; `ascii` tells whether they are.
inline __m128i ascii_units(const char16_t* src, bool& ascii) {
  const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src));
  const __m128i beyond_ascii = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
  ascii = _mm_movemask_epi8(_mm_cmpeq_epi8(beyond_ascii, _mm_setzero_si128())) == 0xFFFF;
  return _mm_packus_epi16(units, units);
}

// Encodes blocks of 32 units, then blocks of 8 near the end of the text or
// the destination, then one unit at a time. A block with many units outside
// ASCII writes every unit from the table; one with a few narrows the ASCII
// runs between them 16 at a time, or on AVX-512 packs the whole block's
// bytes at once. The table and the runs write junk bytes up to 16 past the
// block's text, inside the destination; a block keeps 16 units behind it, so
// at least 16 more bytes, that overwrite them.
template <class Isa, bool Checked>
long encode_kernel(const char16_t* src, std::size_t length, unsigned char* dst,
                   std::size_t capacity) {
  std::size_t in = 0, out = 0;
  while (in + 48 <= length && (!Checked || out + 64 + 16 <= capacity)) {
    const char16_t* block = src + in;
    std::uint32_t others = Isa::wide_high32(block);
    in += 32;
    if (others == 0) {
      Isa::narrow32(block, dst + out);
      out += 32;
    } else if (Isa::count(others) > kDenseEncode) {
      for (int k = 0; k < 32; ++k) out += put_unit(dst + out, block[k]);
    } else if constexpr (Isa::kCompress) {
      out += Isa::encode_block(block, others, dst + out);
    } else {
      unsigned from = 0;
      for (; others != 0; others &= others - 1) {
        const unsigned at = lowest(others);
        Isa::narrow16(block + from, dst + out);
        if (at - from > 16) Isa::narrow16(block + from + 16, dst + out + 16);
        out += at - from;
        out += put_unit(dst + out, block[at]);
        from = at + 1;
      }
      if (from < 32) {
        Isa::narrow16(block + from, dst + out);
        if (32 - from > 16) Isa::narrow16(block + from + 16, dst + out + 16);
        out += 32 - from;
      }
    }
  }
  while (in + 8 <= length) {
    bool ascii = false;
    const __m128i packed = ascii_units(src + in, ascii);
    if (ascii) {
      if (Checked && out + 8 > capacity) break;
      _mm_storel_epi64(reinterpret_cast<__m128i*>(dst + out), packed);
      in += 8;
      out += 8;
      continue;
    }
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

template <class Isa>
constexpr Kernels kernels_of(const char* name) {
  Kernels kernels{name, decode_kernel<Isa, false>, decode_kernel<Isa, true>,
                  encode_kernel<Isa, false>, encode_kernel<Isa, true>};
  if constexpr (requires { Isa::decode_start; }) {
    kernels.decode_start = Isa::decode_start;
    kernels.encode_start = Isa::encode_start;
  }
  return kernels;
}

}  // namespace
}  // namespace kz::os::cp932_paths
