// Code page conversion: the real Win32 and runtime calls.
#include <mbctype.h>
#include <mbstring.h>

#include "platform/platform.h"

namespace kz::os {

int MultiByteToWideChar(UINT code_page, DWORD flags, const char* src, int src_length, WCHAR* dst,
                        int dst_size) {
  return ::MultiByteToWideChar(code_page, flags, src, src_length, dst, dst_size);
}

int WideCharToMultiByte(UINT code_page, DWORD flags, const WCHAR* src, int src_length, char* dst,
                        int dst_size, const char* default_char, BOOL* used_default) {
  return ::WideCharToMultiByte(code_page, flags, src, src_length, dst, dst_size, default_char,
                               used_default);
}

// The runtime starts with the ANSI code page as its multibyte code page, so
// this answers by code page 932 on the target without the library setting
// anything; the code page test compares it with the tables for every value.
int _ismbclegal(unsigned int c) { return ::_ismbclegal(c); }

}  // namespace kz::os

namespace kz::os {

char* CharUpperA(char* text) { return ::CharUpperA(text); }
WCHAR* CharUpperW(WCHAR* text) { return ::CharUpperW(text); }

}  // namespace kz::os
