// The code page 932 kernels on AVX-512 (byte and word instructions, and the
// compress of words), compiled for processors that have it and chosen at run
// time. Mixed blocks widen every character's first byte at once and look up
// only the characters outside ASCII; masked stores write exactly the
// characters a block holds. A short text's start goes in windows of 64 bytes
// whose masked loads stay in their page.
#include "platform/posix/text_paths.h"

#if defined(__AVX512BW__) && defined(__AVX512VBMI2__) && defined(__BMI2__)
#include <immintrin.h>

#include "platform/posix/text_kernels.h"

namespace kz::os::cp932_paths {
namespace {

struct Avx512 {
  static constexpr bool kCompress = true;

  static unsigned count(std::uint64_t bits) {
    return static_cast<unsigned>(__builtin_popcountll(bits));
  }

  static __m512i load(const void* p) { return _mm512_loadu_si512(p); }

  static unsigned high16(const unsigned char* p) {
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
  }
  static std::uint64_t high64(const unsigned char* p) { return _mm512_movepi8_mask(load(p)); }

  // The lead bytes 0x81-0x9F and 0xE0-0xFC become 0xA1-0xDC by flipping
  // bit 5, then 0x00-0x3B.
  static std::uint64_t leads64(const unsigned char* p) { return leads_of(load(p)); }
  static std::uint64_t leads_of(__m512i bytes) {
    const __m512i flipped = _mm512_xor_si512(bytes, _mm512_set1_epi8(0x20));
    const __m512i moved = _mm512_sub_epi8(flipped, _mm512_set1_epi8(static_cast<char>(0xA1)));
    return _mm512_cmplt_epu8_mask(moved, _mm512_set1_epi8(0x3C));
  }

  static void widen16(const unsigned char* p, char16_t* d) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), _mm256_cvtepu8_epi16(bytes));
  }
  static void widen64(const unsigned char* p, char16_t* d) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
    _mm512_storeu_si512(d, _mm512_cvtepu8_epi16(low));
    _mm512_storeu_si512(d + 32, _mm512_cvtepu8_epi16(high));
  }

  // Widens the bytes of the block at the positions in `starts`, packed
  // together, and stores exactly that many units. Gives their count.
  static unsigned widen_starts(const unsigned char* p, std::uint64_t starts, char16_t* d) {
    const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
    const auto low_starts = static_cast<__mmask32>(starts);
    const auto high_starts = static_cast<__mmask32>(starts >> 32);
    const unsigned low_count = static_cast<unsigned>(__builtin_popcount(low_starts));
    const unsigned high_count = static_cast<unsigned>(__builtin_popcount(high_starts));
    _mm512_mask_storeu_epi16(d, _bzhi_u32(~0u, low_count),
                             _mm512_maskz_compress_epi16(low_starts, _mm512_cvtepu8_epi16(low)));
    _mm512_mask_storeu_epi16(d + low_count, _bzhi_u32(~0u, high_count),
                             _mm512_maskz_compress_epi16(high_starts, _mm512_cvtepu8_epi16(high)));
    return low_count + high_count;
  }

  // The little-endian words (byte | next << 8) at the positions in `starts`,
  // packed into words; gives their count. Reads the byte behind the block.
  static unsigned start_words(const unsigned char* p, std::uint64_t starts, std::uint16_t* words) {
    unsigned count = 0;
    for (int half = 0; half < 64; half += 32) {
      const __m512i bytes =
          _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + half)));
      const __m512i next =
          _mm512_cvtepu8_epi16(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + half + 1)));
      const auto half_starts = static_cast<__mmask32>(starts >> half);
      const __m512i packed = _mm512_maskz_compress_epi16(
          half_starts, _mm512_or_si512(bytes, _mm512_slli_epi16(next, 8)));
      _mm512_storeu_si512(words + count, packed);
      count += static_cast<unsigned>(__builtin_popcount(half_starts));
    }
    return count;
  }

  // Encodes 32 units, of which those in `others` are not ASCII: those are
  // looked up one by one, then the bytes of all of them are packed
  // together (the trail of each double-byte value, no other high byte) and
  // exactly those stored. Gives their count.
  static unsigned encode_block(const char16_t* p, std::uint32_t others, unsigned char* d) {
    alignas(64) std::uint16_t words[32];
    _mm512_store_si512(words, load(p));
    for (; others != 0; others &= others - 1) {
      const unsigned at = static_cast<unsigned>(__builtin_ctz(others));
      words[at] = kEncodeInOrder.bytes[words[at]];
    }
    const __m512i in_order = _mm512_load_si512(words);
    const __mmask64 keep = _mm512_test_epi8_mask(in_order, in_order) | 0x5555555555555555ULL;
    const unsigned count = static_cast<unsigned>(__builtin_popcountll(keep));
    _mm512_mask_storeu_epi8(d, _bzhi_u64(~0ULL, count), _mm512_maskz_compress_epi8(keep, in_order));
    return count;
  }

  // ---- The start of a terminated text ----
  // Whole 64-byte windows, masked to the lanes that lie in the window's
  // page (a masked load touches no other, so it cannot fault), each cut at
  // the terminator; up to this many elements, then the blocks take over.
  static constexpr std::size_t kStart = 64;

  // Where the rest starts, for the blocks.
  static long keep_going(std::size_t in, std::size_t out, std::size_t& in_at, std::size_t& out_at) {
    in_at = in;
    out_at = out;
    return -2;
  }

  // The bytes from p to the end of its page.
  static unsigned page_left(const void* p) {
    return 4096 - static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(p) & 4095);
  }

  static long decode_start(const unsigned char* src, char16_t* dst, std::size_t capacity,
                           std::size_t& in_at, std::size_t& out_at) {
    std::size_t in = in_at, out = out_at;
    const __m512i zero = _mm512_setzero_si512();
    while (in < kStart) {
      const unsigned char* p = src + in;
      const unsigned left = page_left(p);
      const __mmask64 valid = left >= 64 ? ~__mmask64{0} : _bzhi_u64(~0ULL, left);
      const __m512i bytes = left >= 64 ? load(p) : _mm512_maskz_loadu_epi8(valid, p);
      const __mmask64 zeros = _mm512_mask_cmpeq_epi8_mask(valid, bytes, zero);
      // The window's text: through the terminator, or every lane read.
      __mmask64 lanes = zeros != 0 ? _blsmsk_u64(zeros) : valid;
      __mmask64 starts = lanes;
      const __mmask64 high = _mm512_movepi8_mask(bytes) & lanes;
      if (high != 0) {
        // A lead byte just before the terminator stands alone.
        const __mmask64 leads = leads_of(bytes) & lanes & ~(zeros >> 1);
        bool last_is_pair = false;
        const std::uint64_t trails = trail_positions(leads, last_is_pair);
        // A pair whose trail lies behind the window goes to the next one.
        if (last_is_pair || (trails & ~lanes) != 0) lanes &= lanes >> 1;
        if (lanes == 0) return keep_going(in, out, in_at, out_at);
        starts = lanes & ~trails;
      }
      const std::size_t written = count(starts);
      if (capacity - out < written) return keep_going(in, out, in_at, out_at);
      const auto low_starts = static_cast<__mmask32>(starts);
      const auto high_starts = static_cast<__mmask32>(starts >> 32);
      const __m512i low = _mm512_cvtepu8_epi16(_mm512_maskz_extracti64x4_epi64(0xFF, bytes, 0));
      const __m512i upper = _mm512_cvtepu8_epi16(_mm512_maskz_extracti64x4_epi64(0xFF, bytes, 1));
      char16_t* at = dst + out;
      if (starts == lanes) {
        _mm512_mask_storeu_epi16(at, low_starts, low);
        _mm512_mask_storeu_epi16(at + 32, high_starts, upper);
      } else {
        const unsigned low_count = static_cast<unsigned>(__builtin_popcount(low_starts));
        _mm512_mask_storeu_epi16(at, _bzhi_u32(~0u, low_count),
                                 _mm512_maskz_compress_epi16(low_starts, low));
        _mm512_mask_storeu_epi16(at + low_count,
                                 _bzhi_u32(~0u, static_cast<unsigned>(written) - low_count),
                                 _mm512_maskz_compress_epi16(high_starts, upper));
      }
      // The characters outside ASCII, looked up where their first byte
      // landed; the byte behind a nonzero byte is readable.
      for (std::uint64_t others = high & starts; others != 0; others &= others - 1) {
        const unsigned from = lowest(others);
        at[count(starts & ((std::uint64_t{1} << from) - 1))] = unit_at(p + from);
      }
      out += written;
      if (zeros != 0) return static_cast<long>(out);
      in += count(lanes);
    }
    return keep_going(in, out, in_at, out_at);
  }

  static long encode_start(const char16_t* src, unsigned char* dst, std::size_t capacity,
                           std::size_t& in_at, std::size_t& out_at) {
    std::size_t in = in_at, out = out_at;
    const __m512i zero = _mm512_setzero_si512();
    const __m512i beyond_ascii = _mm512_set1_epi16(static_cast<short>(0xFF80));
    while (in < kStart) {
      const char16_t* p = src + in;
      // Whole units only: one cut by the page's end is not read.
      const unsigned left = page_left(p);
      const __mmask32 valid = left >= 64 ? ~__mmask32{0} : _bzhi_u32(~0u, left / 2);
      if (valid == 0) return keep_going(in, out, in_at, out_at);
      const __m512i units = left >= 64 ? load(p) : _mm512_maskz_loadu_epi16(valid, p);
      const __mmask32 zeros = _mm512_mask_cmpeq_epi16_mask(valid, units, zero);
      const __mmask32 lanes = zeros != 0 ? _blsmsk_u32(zeros) : valid;
      std::uint32_t others = _mm512_mask_test_epi16_mask(lanes, units, beyond_ascii);
      unsigned count = static_cast<unsigned>(__builtin_popcount(lanes));
      if (others == 0) {
        if (capacity - out < count) return keep_going(in, out, in_at, out_at);
        _mm256_mask_storeu_epi8(dst + out, lanes, _mm512_maskz_cvtepi16_epi8(~__mmask32{0}, units));
      } else {
        // Each unit outside ASCII replaced in the vector by its bytes.
        __m512i in_order = units;
        for (; others != 0; others &= others - 1)
          in_order = _mm512_mask_set1_epi16(
              in_order, others & -others,
              static_cast<short>(kEncodeInOrder.bytes[p[__builtin_ctz(others)]]));
        // Each unit's first byte, and its second where it is a trail.
        const std::uint64_t unit_bytes = _pdep_u64(lanes, 0x5555555555555555ULL);
        const __mmask64 keep = (_mm512_test_epi8_mask(in_order, in_order) | unit_bytes) &
                               (unit_bytes | unit_bytes << 1);
        count = static_cast<unsigned>(__builtin_popcountll(keep));
        if (capacity - out < count) return keep_going(in, out, in_at, out_at);
        _mm512_mask_storeu_epi8(dst + out, _bzhi_u64(~0ULL, count),
                                _mm512_maskz_compress_epi8(keep, in_order));
      }
      out += count;
      if (zeros != 0) return static_cast<long>(out);
      // Without the terminator the window took every unit read, which is
      // known before its text is: the next load need not wait for it.
      in += static_cast<unsigned>(__builtin_popcount(valid));
    }
    return keep_going(in, out, in_at, out_at);
  }

  static std::uint32_t wide_high32(const char16_t* p) {
    return _mm512_cmpgt_epu16_mask(load(p), _mm512_set1_epi16(0x7F));
  }

  static void narrow16(const char16_t* p, unsigned char* d) {
    const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm256_maskz_cvtepi16_epi8(0xFFFF, units));
  }
  static void narrow32(const char16_t* p, unsigned char* d) {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d),
                        _mm512_maskz_cvtepi16_epi8(~__mmask32{0}, load(p)));
  }
};

constexpr Kernels kAvx512 = kernels_of<Avx512>("avx512");

}  // namespace

const Kernels* avx512_kernels() { return &kAvx512; }

}  // namespace kz::os::cp932_paths
#else
const kz::os::cp932_paths::Kernels* kz::os::cp932_paths::avx512_kernels() { return nullptr; }
#endif
