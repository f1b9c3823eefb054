// The command-line family's internal operations, shared by its files.
#pragma once

#include <cstdint>

#include "frame/memory.h"
#include "frame/text.h"

namespace kz {

// The fixed working limit of the narrow command-line operations and of the
// argument split: 259 elements of text and the terminator.
inline constexpr int32_t kWorkLimit = 260;

// A new allocation that holds text and its terminator, or null.
template <class Ch>
Ch* duplicate(const Ch* text) {
  const std::size_t size = length(text) + 1;
  Ch* copy = allocate_array<Ch>(size);
  if (copy != nullptr) Text<Ch>::copy(copy, size, text);
  return copy;
}

// Fills list with every element of line, split by the platform's rule (the
// narrow form through wide text, within kWorkLimit on both sides). 1 when
// the list holds them all; 0 when the split, a conversion or an allocation
// failed, and then list holds nothing to release.
int32_t command_line_list(const wchar* line, StrList* list);
int32_t command_line_list(const char* line, StrList* list);

}  // namespace kz
