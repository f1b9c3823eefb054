// The process environment: the real Win32 API.
#include "platform/platform.h"

namespace kz::os {

DWORD GetEnvironmentVariableA(const char* name, char* buffer, DWORD size) {
  return ::GetEnvironmentVariableA(name, buffer, size);
}
DWORD GetEnvironmentVariableW(const WCHAR* name, WCHAR* buffer, DWORD size) {
  return ::GetEnvironmentVariableW(name, buffer, size);
}
BOOL SetEnvironmentVariableA(const char* name, const char* value) {
  return ::SetEnvironmentVariableA(name, value);
}
BOOL SetEnvironmentVariableW(const WCHAR* name, const WCHAR* value) {
  return ::SetEnvironmentVariableW(name, value);
}

}  // namespace kz::os
