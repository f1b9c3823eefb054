// The code page 932 kernels on SSE2, which every x86-64 processor has.
#include "platform/posix/text_paths.h"

#if defined(__SSE2__)
#include "platform/posix/text_kernels.h"

namespace kz::os::cp932_paths {
namespace {

struct Sse2 {
  static constexpr bool kCompress = false;

  // Without the population count instruction, which SSE2 does not promise.
  static unsigned count(std::uint64_t bits) {
    bits -= (bits >> 1) & 0x5555555555555555ULL;
    bits = (bits & 0x3333333333333333ULL) + ((bits >> 2) & 0x3333333333333333ULL);
    bits = (bits + (bits >> 4)) & 0x0F0F0F0F0F0F0F0FULL;
    return static_cast<unsigned>((bits * 0x0101010101010101ULL) >> 56);
  }

  static __m128i load(const void* p) { return _mm_loadu_si128(static_cast<const __m128i*>(p)); }

  static unsigned high16(const unsigned char* p) {
    return static_cast<unsigned>(_mm_movemask_epi8(load(p)));
  }
  static std::uint64_t high64(const unsigned char* p) {
    return high16(p) | std::uint64_t{high16(p + 16)} << 16 | std::uint64_t{high16(p + 32)} << 32 |
           std::uint64_t{high16(p + 48)} << 48;
  }

  // 0x81-0x9F and 0xE0-0xFC become 0xA1-0xDC by flipping bit 5; that range,
  // moved to start at -128, is what lies below -128 + 0x3C.
  static unsigned leads16(const unsigned char* p) {
    __m128i bytes = _mm_xor_si128(load(p), _mm_set1_epi8(0x20));
    bytes = _mm_sub_epi8(bytes, _mm_set1_epi8(static_cast<char>(0xA1)));
    bytes = _mm_xor_si128(bytes, _mm_set1_epi8(static_cast<char>(0x80)));
    bytes = _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(0x80 + 0x3C)));
    return static_cast<unsigned>(_mm_movemask_epi8(bytes));
  }
  static std::uint64_t leads64(const unsigned char* p) {
    return leads16(p) | std::uint64_t{leads16(p + 16)} << 16 |
           std::uint64_t{leads16(p + 32)} << 32 | std::uint64_t{leads16(p + 48)} << 48;
  }

  static void widen16(const unsigned char* p, char16_t* d) {
    const __m128i bytes = load(p), zero = _mm_setzero_si128();
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm_unpacklo_epi8(bytes, zero));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 8), _mm_unpackhi_epi8(bytes, zero));
  }
  static void widen64(const unsigned char* p, char16_t* d) {
    for (int part = 0; part < 64; part += 16) widen16(p + part, d + part);
  }

  // Bit k set where unit k of 16 is 0x80 or above.
  static unsigned wide_high16(const char16_t* p) {
    const __m128i beyond = _mm_set1_epi16(static_cast<short>(0xFF80)), zero = _mm_setzero_si128();
    const __m128i low = _mm_cmpeq_epi16(_mm_and_si128(load(p), beyond), zero);
    const __m128i high = _mm_cmpeq_epi16(_mm_and_si128(load(p + 8), beyond), zero);
    return ~static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(low, high))) & 0xFFFF;
  }
  static std::uint32_t wide_high32(const char16_t* p) {
    return wide_high16(p) | wide_high16(p + 16) << 16;
  }

  static void narrow16(const char16_t* p, unsigned char* d) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm_packus_epi16(load(p), load(p + 8)));
  }
  static void narrow32(const char16_t* p, unsigned char* d) {
    narrow16(p, d);
    narrow16(p + 16, d + 16);
  }
};

constexpr Kernels kSse2 = kernels_of<Sse2>("sse2");

}  // namespace

const Kernels* sse2_kernels() { return &kSse2; }

}  // namespace kz::os::cp932_paths
#else
const kz::os::cp932_paths::Kernels* kz::os::cp932_paths::sse2_kernels() { return nullptr; }
#endif
