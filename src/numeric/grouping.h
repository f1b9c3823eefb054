// The digit grouping that the numeric family's coinage writers stand on.
#pragma once

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

}  // namespace kz::numeric
