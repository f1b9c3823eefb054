// The scanning primitives of the string toolkit, written once over the
// element type. The exports of scan.cpp are one line each around these, and
// the split (split.cpp) is built from the same three templates.
#pragma once

#include <cstdint>

#include "frame/text.h"

namespace kz {

inline constexpr int kDoubleQuote = 0x22;

// Copies src into dst up to the delimiter, beginning a step at source
// positions below limit only. With quotes on, a double quote flips the quote
// state and is dropped, and inside quotes only the terminator ends the copy.
// dst[0] is set first; dst must hold limit + 1 elements unless the copied
// text is known to be shorter. Gives the number of elements in dst.
template <class Ch>
int32_t copy_until(Ch* dst, const Ch* src, Ch delimiter, int32_t limit, bool quotes);

// The scan of copy_until without the copy; then what stands behind the stop
// goes to dst, with limit as its capacity. Gives the length of dst.
template <class Ch>
int32_t copy_after(Ch* dst, const Ch* src, Ch delimiter, int32_t limit, bool quotes);

// How many elements of text equal code; the narrow form does not compare a
// byte that begins a pair.
template <class Ch>
int32_t code_count(const Ch* text, Ch code);

// Index of the first element equal to code, else the length of text. A plain
// search in both forms.
template <class Ch>
int32_t code_length(const Ch* text, Ch code);

}  // namespace kz
