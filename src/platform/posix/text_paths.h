// The ways the POSIX layer converts code page 932, all with the same
// results: a plain one for any processor, and on x86-64 one per vector
// instruction set (text_sse2.cpp, text_avx2.cpp, text_avx512.cpp), of which
// text.cpp picks the widest the processor runs.
#pragma once

#include <cstddef>
#include <cstdint>

namespace kz::os::cp932_paths {

// Each kernel converts `length` elements (the terminator, when included, is
// one of them) and gives the count written. The decoder is told how many
// bytes from the start are known to be nonzero (the text before its
// terminator), which lets it decide whole blocks from bit masks; it may be 0.
// The `fits` kernels may take the destination to be large enough (a byte gives
// at most one unit, a unit at most two bytes); the `bounded` ones stop at
// capacity, leave there the whole characters that fit, and give -1.
struct Kernels {
  const char* name;
  long (*decode_fits)(const unsigned char* src, std::size_t length, std::size_t nonzero,
                      char16_t* dst, std::size_t capacity);
  long (*decode_bounded)(const unsigned char* src, std::size_t length, std::size_t nonzero,
                         char16_t* dst, std::size_t capacity);
  long (*encode_fits)(const char16_t* src, std::size_t length, unsigned char* dst,
                      std::size_t capacity);
  long (*encode_bounded)(const char16_t* src, std::size_t length, unsigned char* dst,
                         std::size_t capacity);
  // Where an instruction set has its own, the start of a terminated text,
  // converted while its end is found: loads that may reach behind the
  // terminator, though never out of its page, so text.cpp calls these only
  // where no sanitizer watches. Each gives the count written with the
  // terminator, or -2 with `in` and `out` where the rest starts (the text
  // goes on, or what follows may not fit); null where the set has none.
  long (*decode_start)(const unsigned char* src, char16_t* dst, std::size_t capacity,
                       std::size_t& in, std::size_t& out) = nullptr;
  long (*encode_start)(const char16_t* src, unsigned char* dst, std::size_t capacity,
                       std::size_t& in, std::size_t& out) = nullptr;
};

// The kernels of each instruction set, or null where this build did not
// compile them (another processor, or a compiler without the flags).
const Kernels* sse2_kernels();
const Kernels* avx2_kernels();
const Kernels* avx512_kernels();

// The unit of every byte together with the byte after it, indexed by the two
// as a little-endian 16-bit word (byte | next << 8), as it lies in memory: a
// lead byte with a nonzero next byte gives the pair's unit, any other byte
// its own unit. 128 KiB, derived at compile time from the checked-in table,
// so that a block looks a character up with one load from where it starts.
struct DecodeByWord {
  char16_t units[65536];
};
extern const DecodeByWord kDecodeByWord;

// The encoding table spread out to one entry a unit (128 KiB), with the bytes
// of each unit as they lie in memory: a double-byte value has its lead byte
// in the low half, so that a 16-bit store writes lead, then trail.
struct EncodeInOrder {
  std::uint16_t bytes[65536];
};
extern const EncodeInOrder kEncodeInOrder;

}  // namespace kz::os::cp932_paths
