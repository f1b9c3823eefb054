// What the POSIX files, streams and environment share: Windows paths made
// into native ones, UTF-8 to and from 16-bit text, and the share modes of
// open files.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/platform.h"

namespace kz::os::posix {

inline constexpr std::size_t kNativePathMax = 4096;

// A file handle is its descriptor, moved clear of null and of the invalid
// handle.
inline constexpr std::intptr_t kDescriptorBias = 0x1000;
inline HANDLE handle_of(int fd) { return reinterpret_cast<HANDLE>(fd + kDescriptorBias); }
inline int descriptor_of(HANDLE handle) {
  const auto value = reinterpret_cast<std::intptr_t>(handle);
  return value >= kDescriptorBias ? static_cast<int>(value - kDescriptorBias) : -1;
}

// UTF-16 to UTF-8 and back. Each gives the length written without the
// terminator, or -1 when out cannot hold the text and a terminator. Unpaired
// surrogates and malformed UTF-8 become U+FFFD.
long to_utf8(const WCHAR* text, char* out, std::size_t capacity);
long from_utf8(const char* text, WCHAR* out, std::size_t capacity);

// A Windows path as a native one: "\" and "/" separate, and a leading drive
// letter with its colon names the root when a separator follows it and the
// current directory when none does. Narrow paths are code page 932. False
// when the path does not fit kNativePathMax.
bool native_path(const WCHAR* path, char (&out)[kNativePathMax]);
bool native_path(const char* path, char (&out)[kNativePathMax]);

// Takes the share lock of an open file: access is what this open does
// (kGenericRead, kGenericWrite), share what it lets others do. False when
// another open, in any process, holds an access this one does not share or
// denies one this one takes. The lock goes with the descriptor's close.
bool take_share(int fd, DWORD access, DWORD share);

// Whether an open of the file that fd names holds its share lock, in any
// process. Call it between lock_shares and unlock_shares so that no open
// can take its lock meanwhile.
bool open_anywhere(int fd);
bool lock_shares(int fd);
void unlock_shares(int fd);

}  // namespace kz::os::posix
