// Narrow text through wide and back. An operation written for one width
// serves the other twin by converting its arguments into scratch text of
// that width, running, and converting its result back:
//
//   const WideText wide_src(src, size);          // narrow argument as wide
//   Scratch<wchar> wide_dst(size);
//   if (!wide_src || !wide_dst) return failure;  // no memory: dst untouched
//   run(wide_src.get(), wide_dst.get(), size);
//   to_narrow(wide_dst.get(), dst, size);        // the result, back to narrow
//
// NarrowText is the same the other way round, for wide twins that run a
// narrow operation. Inside the library these stand in for KZ_SJIS2UNICODE
// and KZ_UNICODE2SJIS, which are for callers.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "frame/memory.h"
#include "frame/text.h"

namespace kz {

// The conversions of KZ_SJIS2UNICODE (to_wide) and KZ_UNICODE2SJIS
// (to_narrow), with their contract: size is dst's capacity in elements and
// dst is left as if zero-filled first. The result counts the terminator and
// one more ("abc" gives 5); 1 when the text does not fit (dst may then hold
// its first size elements, unterminated) or size is negative; -1 for a null
// or empty src. With a null dst or a size of 0 nothing is written and the
// result is the needed capacity plus one.
int32_t to_wide(const char* src, wchar* dst, int32_t size);
int32_t to_narrow(const wchar* src, char* dst, int32_t size);

// Text converted to the element type To from the other width, in scratch
// memory owned by the call. One element behind the conversion's capacity
// always stays 0, so the scratch holds a terminated text even when the
// conversion failed for want of room.
template <class To>
class Converted {
 public:
  using From = std::conditional_t<std::is_same_v<To, wchar>, char, wchar>;

  // The whole of text, in scratch sized to it: a byte becomes at most one
  // unit and a unit at most two bytes, so the conversion always fits. text
  // must not be null.
  explicit Converted(const From* text) : Converted(text, capacity_for(length(text))) {}

  // text as a caller's buffer of size elements would receive it: empty when
  // text is null or empty, and at most its first size elements when its
  // converted form does not fit. size must not be negative.
  Converted(const From* text, int32_t size) : scratch_(static_cast<std::size_t>(size) + 1) {
    if (!scratch_) return;
    scratch_.get()[size] = 0;
    if constexpr (std::is_same_v<To, wchar>)
      to_wide(text, scratch_.get(), size);
    else
      to_narrow(text, scratch_.get(), size);
  }

  // False when the scratch could not be had: the operation's failure result.
  explicit operator bool() const noexcept { return static_cast<bool>(scratch_); }
  To* get() const noexcept { return scratch_.get(); }

 private:
  static int32_t capacity_for(std::size_t from_length) {
    return static_cast<int32_t>(from_length * (std::is_same_v<To, wchar> ? 1 : 2) + 1);
  }

  Scratch<To> scratch_;
};

using WideText = Converted<wchar>;   // narrow text read as wide
using NarrowText = Converted<char>;  // wide text read as narrow

}  // namespace kz
