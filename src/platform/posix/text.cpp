// Code page 932 as Windows converts it, from the generated tables in
// cp932.h. Code page 0, the ANSI code page, is always 932 here; flags, the
// default character and the used-default flag are not needed by the library
// and take the defaults.
//
// Both directions keep the platform's shape: a size of 0 counts what is
// needed, a destination too small gets what fits (never half of a
// double-byte character) and the result 0, and nothing is written behind the
// last element converted.
//
// The work is done by kernels (text_paths.h): a plain one here, and vector
// ones for each instruction set on x86-64, of which the widest the processor
// runs is chosen when the library loads.
#include <algorithm>
#include <cstring>

#include "frame/memory.h"
#include "platform/cp932.h"
#include "platform/platform.h"
#include "platform/posix/text_paths.h"

#if defined(__x86_64__) && defined(__SSE2__)
#include <emmintrin.h>
#define KZ_X86_PATHS 1
#else
#define KZ_X86_PATHS 0
#endif

// Whether a scan for the terminator may read 16 bytes that hold it, as long
// as they lie in one page: never under AddressSanitizer or ThreadSanitizer,
// which report what lies behind the terminator.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define KZ_UNDER_SANITIZER 1
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(KZ_UNDER_SANITIZER)
#define KZ_ALIGNED_OVERREAD 0
#else
#define KZ_ALIGNED_OVERREAD KZ_X86_PATHS
#endif

namespace kz::os {

namespace cp932_paths {

constexpr DecodeByWord make_decode_by_word() {
  DecodeByWord table{};
  for (unsigned next = 0; next < 256; ++next)
    for (unsigned byte = 0; byte < 256; ++byte) {
      const unsigned row = cp932::kLeadIndex[byte];
      table.units[next * 256 + byte] =
          row != 0 && next != 0 ? cp932::kDecode[row * 256 + next] : cp932::kDecode[byte];
    }
  return table;
}

constexpr EncodeInOrder make_encode_in_order() {
  EncodeInOrder table{};
  for (unsigned at = 0; at < 65536; ++at) {
    const unsigned bytes = cp932::kEncode[cp932::kEncodePage[at >> 8] * 256 + (at & 0xFF)];
    table.bytes[at] =
        static_cast<std::uint16_t>(bytes > 0xFF ? (bytes >> 8) | ((bytes & 0xFF) << 8) : bytes);
  }
  return table;
}

constinit const DecodeByWord kDecodeByWord = make_decode_by_word();
constinit const EncodeInOrder kEncodeInOrder = make_encode_in_order();

}  // namespace cp932_paths

namespace {

using cp932_paths::Kernels;

// ---- The plain kernels ------------------------------------------------------
// One character at a time, for any processor; the model the others are
// checked against.

template <bool Checked>
long plain_decode(const unsigned char* src, std::size_t length, std::size_t, char16_t* dst,
                  std::size_t capacity) {
  std::size_t in = 0, out = 0;
  while (in < length) {
    if (Checked && out == capacity) return -1;
    const unsigned byte = src[in];
    if (cp932::kLeadIndex[byte] != 0 && in + 1 < length && src[in + 1] != 0) {
      dst[out++] = cp932::decode_pair(static_cast<unsigned char>(byte), src[in + 1]);
      in += 2;
    } else {
      dst[out++] = cp932::decode_single(static_cast<unsigned char>(byte));
      in += 1;
    }
  }
  return static_cast<long>(out);
}

template <bool Checked>
long plain_encode(const char16_t* src, std::size_t length, unsigned char* dst,
                  std::size_t capacity) {
  std::size_t out = 0;
  for (std::size_t in = 0; in < length; ++in) {
    const unsigned bytes = cp932::encode_unit(src[in]);
    const unsigned count = bytes > 0xFF ? 2 : 1;
    if (Checked && capacity - out < count) return -1;
    if (count == 2) dst[out++] = static_cast<unsigned char>(bytes >> 8);
    dst[out++] = static_cast<unsigned char>(bytes);
  }
  return static_cast<long>(out);
}

constexpr Kernels kPlain = {"plain", plain_decode<false>, plain_decode<true>, plain_encode<false>,
                            plain_encode<true>};

// ---- Choosing the kernels ----------------------------------------------------

struct Paths {
  const Kernels* each[4] = {&kPlain};
  int count = 1;
};

Paths find_paths() {
  Paths paths;
#if KZ_X86_PATHS
  __builtin_cpu_init();
  const Kernels* found[] = {
      cp932_paths::sse2_kernels(),
      __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2") &&
              __builtin_cpu_supports("popcnt")
          ? cp932_paths::avx2_kernels()
          : nullptr,
      __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vl") &&
              __builtin_cpu_supports("avx512vbmi2") && __builtin_cpu_supports("bmi2") &&
              __builtin_cpu_supports("popcnt")
          ? cp932_paths::avx512_kernels()
          : nullptr,
  };
  for (const Kernels* kernels : found)
    if (kernels != nullptr) paths.each[paths.count++] = kernels;
#endif
  return paths;
}

const Paths& paths() {
  static const Paths found = find_paths();
  return found;
}

// The plain kernels until the library's initialisation picks the widest.
const Kernels* active = &kPlain;
[[maybe_unused]] const bool kPicked = [] {
  active = paths().each[paths().count - 1];
  return true;
}();

// ---- Terminated text --------------------------------------------------------

#if KZ_ALIGNED_OVERREAD
// The short calls find the terminator while they convert: 16 bytes at a
// time where they lie in one page (so they cannot fault, though they may
// read behind the terminator), until the terminator, a character outside
// ASCII (taken one at a time), the destination's end or this many elements.
// Kernels with a start of their own (AVX-512's masked loads) use that one.
constexpr std::size_t kOnePass = 64;

template <std::size_t Bytes = 16>
inline bool within_page(const void* p) {
  return (reinterpret_cast<std::uintptr_t>(p) & 4095) <= 4096 - Bytes;
}

// Stores the first `count` 16-bit lanes of low:high (count <= 16).
inline void store_units(char16_t* dst, __m128i low, __m128i high, unsigned count) {
  if (count == 16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), low);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + 8), high);
    return;
  }
  if (count & 8) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), low);
    low = high;
    dst += 8;
  }
  if (count & 4) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), low);
    low = _mm_srli_si128(low, 8);
    dst += 4;
  }
  if (count & 2) {
    const auto two = static_cast<std::uint32_t>(_mm_cvtsi128_si32(low));
    std::memcpy(dst, &two, 4);
    low = _mm_srli_si128(low, 4);
    dst += 2;
  }
  if (count & 1) *dst = static_cast<char16_t>(_mm_cvtsi128_si32(low));
}

// Stores the first `count` bytes of packed (count <= 16).
inline void store_bytes(unsigned char* dst, __m128i packed, unsigned count) {
  if (count == 16) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(dst), packed);
    return;
  }
  if (count & 8) {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(dst), packed);
    packed = _mm_srli_si128(packed, 8);
    dst += 8;
  }
  auto bytes = static_cast<std::uint64_t>(_mm_cvtsi128_si64(packed));
  if (count & 4) {
    const auto four = static_cast<std::uint32_t>(bytes);
    std::memcpy(dst, &four, 4);
    bytes >>= 32;
    dst += 4;
  }
  if (count & 2) {
    const auto two = static_cast<std::uint16_t>(bytes);
    std::memcpy(dst, &two, 2);
    bytes >>= 16;
    dst += 2;
  }
  if (count & 1) *dst = static_cast<unsigned char>(bytes);
}

// The count written, terminator included, or -1 when the text does not fit;
// or -2 with `in` and `out` where the rest starts.
long decode_start(const unsigned char* src, char16_t* dst, std::size_t capacity, std::size_t& in,
                  std::size_t& out) {
  const __m128i zero = _mm_setzero_si128();
  while (in < kOnePass && within_page<32>(src + in)) {
    __m128i first = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
    const __m128i second = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in + 16));
    const auto zeros = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(first, zero))) |
                       static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(second, zero))) << 16;
    const unsigned stops = zeros | static_cast<unsigned>(_mm_movemask_epi8(first)) |
                           static_cast<unsigned>(_mm_movemask_epi8(second)) << 16;
    const unsigned ascii = stops == 0 ? 32 : static_cast<unsigned>(__builtin_ctz(stops));
    const unsigned ends = ascii < 32 ? zeros >> ascii & 1 : 0;
    unsigned count = ascii + ends;
    if (out + count > capacity) break;
    char16_t* at = dst + out;
    if (count >= 16) {
      _mm_storeu_si128(reinterpret_cast<__m128i*>(at), _mm_unpacklo_epi8(first, zero));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(at + 8), _mm_unpackhi_epi8(first, zero));
      first = second;
      at += 16;
      count -= 16;
    }
    store_units(at, _mm_unpacklo_epi8(first, zero), _mm_unpackhi_epi8(first, zero), count);
    if (ascii == 32) {
      in += 32;
      out += 32;
      continue;
    }
    in += ascii;
    out += ascii;
    if (ends) return static_cast<long>(out + 1);
    // The byte behind a nonzero byte is readable.
    do {
      if (out == capacity) return -1;
      const unsigned byte = src[in], next = src[in + 1];
      if (cp932::kLeadIndex[byte] != 0 && next != 0) {
        dst[out++] = cp932_paths::kDecodeByWord.units[byte | next << 8];
        in += 2;
      } else {
        dst[out++] = cp932::kDecode[byte];
        in += 1;
      }
    } while (src[in] >= 0x80);
  }
  return -2;
}

long encode_start(const char16_t* src, unsigned char* dst, std::size_t capacity, std::size_t& in,
                  std::size_t& out) {
  const __m128i zero = _mm_setzero_si128();
  const __m128i beyond_ascii = _mm_set1_epi16(static_cast<short>(0xFF80));
  while (in < kOnePass && within_page<32>(src + in)) {
    const __m128i low = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in));
    const __m128i high = _mm_loadu_si128(reinterpret_cast<const __m128i*>(src + in + 8));
    // One bit a unit: the low 16 bits for the terminator, the high 16 for ASCII.
    const auto zeros = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_packs_epi16(_mm_cmpeq_epi16(low, zero), _mm_cmpeq_epi16(high, zero))));
    const auto ascii_units = static_cast<unsigned>(_mm_movemask_epi8(
        _mm_packs_epi16(_mm_cmpeq_epi16(_mm_and_si128(low, beyond_ascii), zero),
                        _mm_cmpeq_epi16(_mm_and_si128(high, beyond_ascii), zero))));
    const __m128i packed = _mm_packus_epi16(low, high);
    const unsigned stops = zeros | (~ascii_units & 0xFFFF);
    if (stops == 0) {
      if (out + 16 > capacity) break;
      _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + out), packed);
      in += 16;
      out += 16;
      continue;
    }
    const auto ascii = static_cast<unsigned>(__builtin_ctz(stops));
    const unsigned ends = zeros >> ascii & 1;
    if (out + ascii + ends > capacity) break;
    store_bytes(dst + out, packed, ascii + ends);
    in += ascii;
    out += ascii;
    if (ends) return static_cast<long>(out + 1);
    // The unit behind a nonzero unit is readable.
    do {
      const std::uint16_t in_order = cp932_paths::kEncodeInOrder.bytes[src[in++]];
      const unsigned count = 1 + ((in_order + 0xFF00u) >> 16);
      if (capacity - out < count) return -1;
      dst[out] = static_cast<unsigned char>(in_order);
      if (count == 2) dst[out + 1] = static_cast<unsigned char>(in_order >> 8);
      out += count;
    } while (src[in] >= 0x80);
  }
  return -2;
}
#endif

// The units before the terminator, or `limit` when there are at least that
// many.
std::size_t wide_length(const char16_t* text, std::size_t limit = SIZE_MAX) {
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
    // A word is read only while every unit before it belongs to the text.
    const std::uintptr_t bound = limit < (SIZE_MAX - address) / 2 ? address + 2 * limit : SIZE_MAX;
    while (zeros == 0 && reinterpret_cast<std::uintptr_t>(word + 1) < bound)
      zeros = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(*++word, zero)));
    if (zeros == 0) return limit;
    const auto end = reinterpret_cast<std::uintptr_t>(word) + __builtin_ctz(zeros);
    return std::min<std::size_t>((end - address) / 2, limit);
  }
#endif
  const char16_t* end = text;
  // Each unit is read only when the one before it is not the terminator.
  while (static_cast<std::size_t>(end - text) + 4 <= limit && end[0] != 0 && end[1] != 0 &&
         end[2] != 0 && end[3] != 0)
    end += 4;
  while (static_cast<std::size_t>(end - text) < limit && *end != 0) ++end;
  return static_cast<std::size_t>(end - text);
}

// Long texts go in chunks that stay in the cache between finding their end
// and converting them, so that the text is read from memory once.
constexpr std::size_t kChunk = 8192;

long decode_terminated(const Kernels& kernels, const unsigned char* src, char16_t* dst,
                       std::size_t capacity) {
  std::size_t in = 0, out = 0;
#if KZ_ALIGNED_OVERREAD
  if (&kernels != &kPlain) {
    const long done = kernels.decode_start != nullptr
                          ? kernels.decode_start(src, dst, capacity, in, out)
                          : decode_start(src, dst, capacity, in, out);
    if (done != -2) return done;
  }
#endif
  for (;;) {
    const unsigned char* text = src + in;
    std::size_t nonzero = strnlen(reinterpret_cast<const char*>(text), kChunk);
    // A chunk ends behind a byte that cannot lead a pair: whether it stands
    // alone or ends a pair, the next character starts behind it. Failing
    // one near the end of the chunk, the rest of the text goes at once.
    std::size_t take = nonzero;
    if (nonzero == kChunk) {
      while (take > kChunk - 64 && cp932::kLeadIndex[text[take - 1]] != 0) --take;
      if (take == kChunk - 64) take = nonzero = std::strlen(reinterpret_cast<const char*>(text));
    }
    const bool last = take == nonzero && (nonzero < kChunk || text[take] == 0);
    const std::size_t length = last ? take + 1 : take;
    // Each byte gives at most one unit.
    const long rest = capacity - out >= length
                          ? kernels.decode_fits(text, length, take, dst + out, capacity - out)
                          : kernels.decode_bounded(text, length, take, dst + out, capacity - out);
    if (rest < 0) return -1;
    in += take;
    out += static_cast<std::size_t>(rest);
    if (last) return static_cast<long>(out);
  }
}

long encode_terminated(const Kernels& kernels, const char16_t* src, unsigned char* dst,
                       std::size_t capacity) {
  std::size_t in = 0, out = 0;
#if KZ_ALIGNED_OVERREAD
  if (&kernels != &kPlain) {
    const long done = kernels.encode_start != nullptr
                          ? kernels.encode_start(src, dst, capacity, in, out)
                          : encode_start(src, dst, capacity, in, out);
    if (done != -2) return done;
  }
#endif
  for (;;) {
    const std::size_t units = wide_length(src + in, kChunk);
    const bool last = units < kChunk;
    const std::size_t length = last ? units + 1 : units;
    // Each unit gives at most two bytes.
    const long rest = capacity - out >= 2 * length
                          ? kernels.encode_fits(src + in, length, dst + out, capacity - out)
                          : kernels.encode_bounded(src + in, length, dst + out, capacity - out);
    if (rest < 0) return -1;
    in += length;
    out += static_cast<std::size_t>(rest);
    if (last) return static_cast<long>(out);
  }
}

std::size_t decoded_length(const unsigned char* src, std::size_t length) {
  std::size_t trails = 0;
  for (std::size_t in = 0; in + 1 < length; ++in) {
    if (cp932::kLeadIndex[src[in]] != 0 && src[in + 1] != 0) {
      ++trails;
      ++in;
    }
  }
  return length - trails;
}

std::size_t encoded_length(const char16_t* src, std::size_t length) {
  std::size_t doubles = 0;
  for (std::size_t in = 0; in < length; ++in) doubles += cp932::encode_unit(src[in]) > 0xFF;
  return length + doubles;
}

// The platform's result: the count, or 0 when it does not fit in an int or
// in the destination.
int result_of(long count) { return count < 0 || count > 0x7FFFFFFF ? 0 : static_cast<int>(count); }

}  // namespace

int code_page_path_count() { return paths().count; }

const char* use_code_page_path(int path) {
  if (path < 0 || path >= paths().count) return nullptr;
  active = paths().each[path];
  return active->name;
}

int MultiByteToWideChar(UINT, DWORD, const char* src, int src_length, WCHAR* dst, int dst_size) {
  if (src == nullptr || src_length == 0 || src_length < -1 || dst_size < 0 ||
      (dst_size > 0 && dst == nullptr))
    return 0;
  const auto* bytes = reinterpret_cast<const unsigned char*>(src);
  auto* out = reinterpret_cast<char16_t*>(dst);
  const auto capacity = static_cast<std::size_t>(dst_size);
  if (dst_size == 0) {
    // A length of -1 converts the terminator as well.
    const std::size_t length =
        src_length < 0 ? std::strlen(src) + 1 : static_cast<std::size_t>(src_length);
    return result_of(static_cast<long>(decoded_length(bytes, length)));
  }
  if (src_length < 0) return result_of(decode_terminated(*active, bytes, out, capacity));
  const auto length = static_cast<std::size_t>(src_length);
  // Each byte gives at most one unit.
  return result_of(capacity >= length ? active->decode_fits(bytes, length, 0, out, capacity)
                                      : active->decode_bounded(bytes, length, 0, out, capacity));
}

int WideCharToMultiByte(UINT, DWORD, const WCHAR* src, int src_length, char* dst, int dst_size,
                        const char*, BOOL*) {
  if (src == nullptr || src_length == 0 || src_length < -1 || dst_size < 0 ||
      (dst_size > 0 && dst == nullptr))
    return 0;
  const auto* units = reinterpret_cast<const char16_t*>(src);
  auto* out = reinterpret_cast<unsigned char*>(dst);
  const auto capacity = static_cast<std::size_t>(dst_size);
  if (dst_size == 0) {
    const std::size_t length =
        src_length < 0 ? wide_length(units) + 1 : static_cast<std::size_t>(src_length);
    return result_of(static_cast<long>(encoded_length(units, length)));
  }
  if (src_length < 0) return result_of(encode_terminated(*active, units, out, capacity));
  const auto length = static_cast<std::size_t>(src_length);
  // Each unit gives at most two bytes.
  return result_of(capacity >= 2 * length ? active->encode_fits(units, length, out, capacity)
                                          : active->encode_bounded(units, length, out, capacity));
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

// As Windows does it: the text goes to wide text, is upper-cased there and
// comes back within its own length. A byte that forms no character comes
// back as the code page's substitute for it.
char* CharUpperA(char* text) {
  const auto bytes = static_cast<int>(std::strlen(text));
  if (bytes == 0) return text;
  WCHAR stack_units[260];
  WCHAR* units = bytes < 260 ? stack_units : allocate_array<WCHAR>(static_cast<std::size_t>(bytes));
  if (units == nullptr) return text;
  const int count = MultiByteToWideChar(kAnsiCodePage, 0, text, bytes, units, bytes);
  for (int i = 0; i < count; ++i) units[i] = upper_unit(units[i]);
  WideCharToMultiByte(kAnsiCodePage, 0, units, count, text, bytes, nullptr, nullptr);
  if (units != stack_units) release(units);
  return text;
}

WCHAR* CharUpperW(WCHAR* text) {
  for (std::size_t i = 0; text[i] != 0; ++i) text[i] = upper_unit(text[i]);
  return text;
}

}  // namespace kz::os
