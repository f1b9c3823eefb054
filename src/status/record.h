// The record behind a StatusFileHandle and the transfers that the waits
// share with the getters: the family's internals.
//
// A status file holds one value and nothing else: no header, no length, no
// terminator. It always holds narrow bytes; the wide twins convert. Each
// process has its own record and its own file position, and every transfer
// starts by going to offset 0.
#pragma once

#include <cstdint>

#include "frame/text.h"
#include "platform/platform.h"

struct StatusFileHandle {
  kz::os::HANDLE file;
  char path[260];  // directory, backslash, name: always narrow
};

namespace kz {

// The fixed limit of the directory, the name and the whole path, with the
// terminator.
inline constexpr int32_t kStatusPathLimit = 260;

// Opens (or creates) the status file name in directory, or in "Temp" when
// directory is null. Null for a null name, a path over the limit, a missing
// "Temp", a failed open or a failed allocation.
StatusFileHandle* status_create(const char* name, const char* directory);

// Replaces the whole value with size bytes; nonzero when all went in.
int32_t status_set(StatusFileHandle* status, const void* data, uint32_t size);

// Reads at most size bytes from offset 0; *done tells how many came.
// Nonzero when the read worked.
int32_t status_read(StatusFileHandle* status, void* out, uint32_t size, os::DWORD* done);

}  // namespace kz
