// What the numeric and geometric twins share: the digit grouping that the
// coinage writers stand on, and ASCII literals widened at compile time so
// that one format text serves both widths.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/text.h"

namespace kz::numeric {

// Puts delimiter into source every `group` elements counted from the right
// and writes the result to destination. size bounds the position at which a
// source element may start, so a grouped text of exactly size elements
// (size + 1 with a group of 1) still fits and its terminator lies behind
// size. Gives the grouped length, or -1. The wide form groups any text; the
// narrow form refuses one that is not all digits and leaves destination as
// it was.
template <class Ch>
std::int32_t set_delimiter(const Ch* source, Ch* destination, std::int32_t size, Ch delimiter,
                           std::int32_t group);

// An ASCII literal in the element type Ch.
template <class Ch, std::size_t N>
struct Literal {
  Ch text[N];
};

template <class Ch, std::size_t N>
constexpr Literal<Ch, N> widen(const char (&ascii)[N]) {
  Literal<Ch, N> out{};
  for (std::size_t i = 0; i < N; ++i) out.text[i] = static_cast<Ch>(ascii[i]);
  return out;
}

}  // namespace kz::numeric
