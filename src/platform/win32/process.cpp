// The process environment: the real Win32 API.
//
// Wine's GetEnvironmentVariableA counts a double-byte character of the value
// as one element and cuts the copy short; Windows counts bytes. The narrow
// form is made from the wide one here, so that every system gives bytes.
#include "platform/platform.h"

namespace kz::os {

DWORD GetEnvironmentVariableA(const char* name, char* buffer, DWORD size) {
  WCHAR wide_name[260];
  WCHAR wide_value[4096];
  if (::MultiByteToWideChar(CP_ACP, 0, name, -1, wide_name, 260) == 0) return 0;
  const DWORD units = ::GetEnvironmentVariableW(wide_name, wide_value, 4096);
  if (units == 0) return 0;
  if (units >= 4096) return 2 * units;  // a bound on the bytes needed
  char narrow[2 * 4096];
  const int bytes =
      ::WideCharToMultiByte(CP_ACP, 0, wide_value, -1, narrow, sizeof narrow, nullptr, nullptr);
  if (bytes <= 0) return 0;
  const auto length = static_cast<DWORD>(bytes - 1);
  if (size <= length) return length + 1;
  for (DWORD i = 0; i <= length; ++i) buffer[i] = narrow[i];
  return length;
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
