// Files and directories: the real Win32 API.
#include "platform/platform.h"

namespace kz::os {

HANDLE FindFirstFileA(const char* path, WIN32_FIND_DATAA* data) {
  return ::FindFirstFileA(path, data);
}
HANDLE FindFirstFileW(const WCHAR* path, WIN32_FIND_DATAW* data) {
  return ::FindFirstFileW(path, data);
}
BOOL FindClose(HANDLE find) { return ::FindClose(find); }

DWORD GetCurrentDirectoryA(DWORD size, char* buffer) {
  return ::GetCurrentDirectoryA(size, buffer);
}
DWORD GetCurrentDirectoryW(DWORD size, WCHAR* buffer) {
  return ::GetCurrentDirectoryW(size, buffer);
}
BOOL SetCurrentDirectoryA(const char* path) { return ::SetCurrentDirectoryA(path); }
BOOL SetCurrentDirectoryW(const WCHAR* path) { return ::SetCurrentDirectoryW(path); }

BOOL CreateDirectoryA(const char* path, void* security) {
  return ::CreateDirectoryA(path, static_cast<SECURITY_ATTRIBUTES*>(security));
}
BOOL CreateDirectoryW(const WCHAR* path, void* security) {
  return ::CreateDirectoryW(path, static_cast<SECURITY_ATTRIBUTES*>(security));
}

HANDLE CreateFileA(const char* path, DWORD access, DWORD share, void* security, DWORD disposition,
                   DWORD flags, HANDLE template_file) {
  return ::CreateFileA(path, access, share, static_cast<SECURITY_ATTRIBUTES*>(security),
                       disposition, flags, template_file);
}
HANDLE CreateFileW(const WCHAR* path, DWORD access, DWORD share, void* security, DWORD disposition,
                   DWORD flags, HANDLE template_file) {
  return ::CreateFileW(path, access, share, static_cast<SECURITY_ATTRIBUTES*>(security),
                       disposition, flags, template_file);
}

DWORD GetFileSize(HANDLE file, DWORD* high) {
  return ::GetFileSize(file, reinterpret_cast<LPDWORD>(high));
}
BOOL GetFileSizeEx(HANDLE file, std::int64_t* size) {
  LARGE_INTEGER whole;
  if (!::GetFileSizeEx(file, &whole)) return 0;
  *size = whole.QuadPart;
  return 1;
}
BOOL GetFileTime(HANDLE file, FILETIME* creation, FILETIME* last_access, FILETIME* last_write) {
  return ::GetFileTime(file, creation, last_access, last_write);
}
BOOL CloseHandle(HANDLE object) { return ::CloseHandle(object); }

}  // namespace kz::os
