// String lists inside the library: the families that fill a StrList give it
// back and read its entries through these, not through the exports.
#pragma once

#include <cstdint>

#include "kz_basis.h"

namespace kz {

// Releases every string of the list and its array, and leaves the list
// empty (count 0, no array). The record has one layout for both widths, so
// one release serves both twins. A null list is ignored.
void release_list(StrList* list);

// The entry at index of a filled list, as text of the list's width.
template <class Ch>
Ch* entry(const StrList& list, int32_t index) {
  return static_cast<Ch*>(list.strings[index]);
}

}  // namespace kz
