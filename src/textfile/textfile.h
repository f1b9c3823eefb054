// The text file written once over the caller's element type, for the
// journal: open, write a line, close.
#pragma once

#include <cstdint>
#include <cstdio>

#include "frame/text.h"

struct TextFileHandle {
  int32_t wide;  // the flag given to the open, unchanged
  FILE* stream;  // owned by the record
};

namespace kz {

// Opens path with the runtime mode, to which "t" and, for wide == 1,
// ",ccs=UNICODE" are added. Null when the open fails, the mode with them
// exceeds 32 elements, or no record can be had.
template <class Ch>
TextFileHandle* text_file_open(const Ch* path, const Ch* mode, int32_t wide);

// Writes text and a newline in the file's encoding. 1 when the stream shows
// no error afterwards, else 0.
template <class Ch>
int32_t text_file_puts(TextFileHandle* file, const Ch* text);

// Closes the stream and frees the record; null does nothing. False when
// the stream's last buffered lines could not be written.
bool text_file_close(TextFileHandle* file);

}  // namespace kz
