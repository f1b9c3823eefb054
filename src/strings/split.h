// The splitter of the string toolkit, for the families above it that read
// delimited fields (dates and times, points and rectangles). It is the
// template behind KZ_StringSplit and KZ_StringCSV.
#pragma once

#include <cstdint>

#include "frame/text.h"

namespace kz {

// Fills list with the fields of text between the delimiters, each a text of
// its own. With quotes on, double quotes group a field and are dropped. The
// number of fields is the count of delimiters plus one, quoted ones
// included. 1 on success; 0 for an empty text or a failed allocation, with
// the list then empty. The caller gives the list back with release_list
// (frame/strlist.h).
template <class Ch>
int32_t split(const Ch* text, Ch delimiter, StrList* list, bool quotes);

}  // namespace kz
