// Transfers on an open file handle and the removal of a file: the real
// Win32 API.
#include "platform/platform.h"

namespace kz::os {

DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD method) {
  ::LONG whole_high = high != nullptr ? *high : 0;
  const DWORD low =
      ::SetFilePointer(file, distance, high != nullptr ? &whole_high : nullptr, method);
  if (high != nullptr) *high = whole_high;
  return low;
}
BOOL SetEndOfFile(HANDLE file) { return ::SetEndOfFile(file); }
BOOL WriteFile(HANDLE file, const void* data, DWORD count, DWORD* done, void* overlapped) {
  ::DWORD written = 0;
  const BOOL ok = ::WriteFile(file, data, count, &written, static_cast<OVERLAPPED*>(overlapped));
  if (done != nullptr) *done = written;
  return ok;
}
BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* done, void* overlapped) {
  ::DWORD got = 0;
  const BOOL ok = ::ReadFile(file, buffer, count, &got, static_cast<OVERLAPPED*>(overlapped));
  if (done != nullptr) *done = got;
  return ok;
}
BOOL FlushFileBuffers(HANDLE file) { return ::FlushFileBuffers(file); }
BOOL DeleteFileA(const char* path) { return ::DeleteFileA(path); }

}  // namespace kz::os
