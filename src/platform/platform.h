// The operating-system boundary. Every Win32 and runtime operation that the
// library relies on is declared here under its own name, in kz::os, so that a
// reader who knows the Win32 call knows what the library expects of it.
//
//   win32/  forwards each operation to the real API;
//   posix/  reproduces the behaviour the library relies on;
//   the files directly in this folder are portable implementations that
//   serve both builds, where Windows runtimes differ by version from what
//   the library needs (bounded copies, number parsing and formatting).
#pragma once

#include <cstddef>
#include <cstdint>

#include "kz_basis.h"

namespace kz::os {

using WCHAR = KZ_WCHAR;
using BOOL = int;
using UINT = unsigned int;
using DWORD = std::uint32_t;
using errno_t = int;

inline constexpr errno_t kEINVAL = 22;
inline constexpr errno_t kERANGE = 34;

// ---- Text: code page conversion (text.cpp) --------------------------------
// Code page 0 is the system's ANSI code page; on POSIX it is always 932.
inline constexpr UINT kAnsiCodePage = 0;  // CP_ACP

int MultiByteToWideChar(UINT code_page, DWORD flags, const char* src, int src_length, WCHAR* dst,
                        int dst_size);
int WideCharToMultiByte(UINT code_page, DWORD flags, const WCHAR* src, int src_length, char* dst,
                        int dst_size, const char* default_char, BOOL* used_default);
// Nonzero when the high byte of c is a lead byte and the low byte a trail
// byte of the process's multibyte code page.
int _ismbclegal(unsigned int c);

// ---- Bounded copies (portable: bounded.cpp) -------------------------------
// On success they return 0. A destination too small for the result is left
// empty (its first element the terminator) and they return kERANGE; a null
// argument or a size of 0 returns kEINVAL. They never write past size.
errno_t wcscpy_s(WCHAR* dst, std::size_t size, const WCHAR* src);
errno_t strcpy_s(char* dst, std::size_t size, const char* src);
errno_t wcsncpy_s(WCHAR* dst, std::size_t size, const WCHAR* src, std::size_t count);
errno_t strncpy_s(char* dst, std::size_t size, const char* src, std::size_t count);
errno_t wcscat_s(WCHAR* dst, std::size_t size, const WCHAR* src);
errno_t strcat_s(char* dst, std::size_t size, const char* src);

// ---- Runtime conversions (portable: numbers.cpp) --------------------------
// Number text of 16-bit wide text in radix 2 to 36 (radix.cpp). _itow_s
// writes lower-case letters, a sign only in radix 10, and returns kERANGE
// with an empty buffer when the digits do not fit size. wcstol takes
// leading white space, a sign and digits of either case (radix 0 guesses,
// radix 16 takes a "0x"), clamps to the limits of Windows' 32-bit long, and
// sets *end behind the number, or to text when there is none.
errno_t _itow_s(int value, WCHAR* buffer, std::size_t size, int radix);
std::int32_t wcstol(const WCHAR* text, WCHAR** end, int radix);

// ---- Time (time.cpp) -------------------------------------------------------

}  // namespace kz::os
