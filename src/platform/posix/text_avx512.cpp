// The code page 932 kernels on AVX-512 (byte and word instructions, and the
// compress of words), compiled for processors that have it and chosen at run
// time. Mixed blocks widen every character's first byte at once and look up
// only the characters outside ASCII; masked stores write exactly the
// characters a block holds.
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
  static std::uint64_t leads64(const unsigned char* p) {
    const __m512i flipped = _mm512_xor_si512(load(p), _mm512_set1_epi8(0x20));
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
