// The file system queries written once over the element type, for the
// families above: the journal tests and creates its directory with
// check_directory and create_directory, and the status files look for a
// file with check_file.
#pragma once

#include <cstdint>

#include "frame/text.h"

namespace kz {

// 1 when the path finds something: a file, a directory, or an entry that
// its wildcards match.
template <class Ch>
int32_t check_file(const Ch* path);

// 1 when the path can be made the current directory. The process's current
// directory changes for the length of the call and is then set back.
template <class Ch>
int32_t check_directory(const Ch* path);

// Creates every missing level of the path, one backslash at a time. 1 only
// when the last level was made by this call; 0 when it was there already,
// could not be made, or the path has 260 elements or more.
template <class Ch>
int32_t create_directory(const Ch* path);

// The low 32 bits of the file's size, the whole in *size when given;
// 0xFFFFFFFF when the file cannot be opened for reading without sharing.
template <class Ch>
uint32_t file_size(const Ch* path, uint64_t* size);

// The file's three times (UTC); nonzero on success. Null pointers are not
// wanted. Fails like file_size.
template <class Ch>
int32_t file_time(const Ch* path, FILETIME* creation, FILETIME* last_access, FILETIME* last_write);

}  // namespace kz
