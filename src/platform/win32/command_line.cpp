// The process's command line: the real Win32 calls.
#include "platform/platform.h"
// shellapi.h needs the declarations of windows.h before it.
#include <shellapi.h>

namespace kz::os {

const WCHAR* GetCommandLineW() { return ::GetCommandLineW(); }

const char* GetCommandLineA() { return ::GetCommandLineA(); }

WCHAR** CommandLineToArgvW(const WCHAR* line, int* count) {
  return ::CommandLineToArgvW(line, count);
}

void* LocalFree(void* block) { return ::LocalFree(block); }

DWORD GetModuleFileNameW(void* module, WCHAR* file_name, DWORD size) {
  return ::GetModuleFileNameW(static_cast<HMODULE>(module), file_name, size);
}

}  // namespace kz::os
