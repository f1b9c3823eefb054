// The code page 932 kernels on AVX2, compiled for processors that have it
// (with BMI1, BMI2 and the population count) and chosen at run time.
#include "platform/posix/text_paths.h"

#if defined(__AVX2__) && defined(__BMI2__) && defined(__POPCNT__)
#include <immintrin.h>

#include "platform/posix/text_kernels.h"

namespace kz::os::cp932_paths {
namespace {

struct Avx2 {
  static constexpr bool kCompress = false;

  static unsigned count(std::uint64_t bits) {
    return static_cast<unsigned>(__builtin_popcountll(bits));
  }

  static __m256i load(const void* p) { return _mm256_loadu_si256(static_cast<const __m256i*>(p)); }

  static unsigned high16(const unsigned char* p) {
    return static_cast<unsigned>(
        _mm_movemask_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p))));
  }
  static std::uint32_t high32(const unsigned char* p) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(load(p)));
  }
  static std::uint64_t high64(const unsigned char* p) {
    return high32(p) | std::uint64_t{high32(p + 32)} << 32;
  }

  // 0x81-0x9F and 0xE0-0xFC become 0xA1-0xDC by flipping bit 5; that range,
  // moved to start at -128, is what lies below -128 + 0x3C.
  static std::uint32_t leads32(const unsigned char* p) {
    __m256i bytes = _mm256_xor_si256(load(p), _mm256_set1_epi8(0x20));
    bytes = _mm256_sub_epi8(bytes, _mm256_set1_epi8(static_cast<char>(0xA1)));
    bytes = _mm256_xor_si256(bytes, _mm256_set1_epi8(static_cast<char>(0x80)));
    bytes = _mm256_cmpgt_epi8(_mm256_set1_epi8(static_cast<char>(0x80 + 0x3C)), bytes);
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(bytes));
  }
  static std::uint64_t leads64(const unsigned char* p) {
    return leads32(p) | std::uint64_t{leads32(p + 32)} << 32;
  }

  static void widen16(const unsigned char* p, char16_t* d) {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), _mm256_cvtepu8_epi16(bytes));
  }
  static void widen64(const unsigned char* p, char16_t* d) {
    for (int part = 0; part < 64; part += 16) widen16(p + part, d + part);
  }

  // Bit k set where unit k of 32 is 0x80 or above. The pack works within
  // each 128-bit lane, so its quarters are put back in order.
  static std::uint32_t wide_high32(const char16_t* p) {
    const __m256i beyond = _mm256_set1_epi16(static_cast<short>(0xFF80));
    const __m256i zero = _mm256_setzero_si256();
    const __m256i low = _mm256_cmpeq_epi16(_mm256_and_si256(load(p), beyond), zero);
    const __m256i high = _mm256_cmpeq_epi16(_mm256_and_si256(load(p + 16), beyond), zero);
    const __m256i ascii = _mm256_permute4x64_epi64(_mm256_packs_epi16(low, high), 0xD8);
    return ~static_cast<std::uint32_t>(_mm256_movemask_epi8(ascii));
  }

  static void narrow16(const char16_t* p, unsigned char* d) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 8));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm_packus_epi16(low, high));
  }
  static void narrow32(const char16_t* p, unsigned char* d) {
    const __m256i packed = _mm256_packus_epi16(load(p), load(p + 16));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), _mm256_permute4x64_epi64(packed, 0xD8));
  }
};

constexpr Kernels kAvx2 = kernels_of<Avx2>("avx2");

}  // namespace

const Kernels* avx2_kernels() { return &kAvx2; }

}  // namespace kz::os::cp932_paths
#else
const kz::os::cp932_paths::Kernels* kz::os::cp932_paths::avx2_kernels() { return nullptr; }
#endif
