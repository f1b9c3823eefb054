// What the date and time files share: the element traits and literals of
// frame/text.h, the string toolkit's splitter for the readers, and the
// file-time reader that the range checks stand on.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/strlist.h"
#include "frame/text.h"
#include "strings/split.h"

namespace kz::datetime {

// Local date-time text to a UTC moment, the reader of KZ_StringFileTime
// (parse.cpp): not 0 on success; 0 on failure, with time not written.
template <class Ch>
std::int32_t string_file_time(const Ch* text, FILETIME* time, Ch delimiter, Ch separator);

}  // namespace kz::datetime
