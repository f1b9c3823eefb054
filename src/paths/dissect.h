// Path dissection written once over the element type. The exports of
// dissect.cpp are one line each around these, and the command-line family
// takes the name and directory of a command through file_name and
// directory_name.
//
// Only three elements mean anything here: the backslash ends a directory,
// the colon ends a drive and the dot begins an extension. A forward slash is
// an ordinary element. The narrow forms step over both bytes of a
// double-byte character without comparing them, so a trail byte 0x5C is
// never taken for a backslash.
#pragma once

#include <cstdint>

#include "frame/text.h"

namespace kz {

// The fixed limit of paths and of SplitPath's directory, name and extension
// buffers, terminator included.
inline constexpr int32_t kPathLimit = 260;
// SplitPath's drive buffer: two elements and the terminator.
inline constexpr int32_t kDriveLimit = 3;

// 1 for drive A (or a), 3 for C and so on: the first element upper-cased
// minus 0x40, read signed in narrow text. -1 for a null or empty path, a
// path whose element 1 is no colon, or one of kPathLimit elements or more.
template <class Ch>
int32_t drive_number(const Ch* path);

// The text before the first colon, double quotes dropped. -1 (out emptied)
// for a null or empty path, a path without a colon, or a drive text that
// does not fit size.
template <class Ch>
int32_t drive_name(const Ch* path, Ch* out, int32_t size);

// The elements before the last backslash; empty when there is none or it
// is the first element. -1 with out untouched for a null or empty path or a
// path of size elements or more. out may be path itself.
template <class Ch>
int32_t directory_name(const Ch* path, Ch* out, int32_t size);

// Everything behind the last backslash or colon; the whole path when it has
// neither (a bare command name stays whole). -1 (out emptied) for a null or
// empty path or a name that does not fit size.
template <class Ch>
int32_t file_name(const Ch* path, Ch* out, int32_t size);

// Everything behind the last dot; empty with result 0 when there is none.
// -1 (out emptied) for a null or empty path or a result that does not fit.
template <class Ch>
int32_t file_ext(const Ch* path, Ch* out, int32_t size);

// The elements before the last dot; the whole path when there is none. -1
// (out emptied) for a null or empty path or a result that does not fit.
template <class Ch>
int32_t not_ext_path(const Ch* path, Ch* out, int32_t size);

// Drive (the first two elements, as they stand), directory (from element 2
// up to the last backslash), name and extension (either side of the last
// dot behind the directory). drive holds kDriveLimit elements, the others
// kPathLimit each. All four are emptied first; a null or empty path, or a
// piece of kPathLimit elements or more, leaves them empty.
template <class Ch>
void split_path(const Ch* path, Ch* drive, Ch* directory, Ch* name, Ch* extension);

}  // namespace kz
