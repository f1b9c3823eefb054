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
// Upper-case a text in place by the system's rules and give it back. The
// wide form maps the small letters of ASCII, Latin-1, Greek, Cyrillic and
// the full-width forms; the narrow form maps ASCII letters and leaves every
// double-byte character as it is.
char* CharUpperA(char* text);
WCHAR* CharUpperW(WCHAR* text);

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

// ---- Formatting (win32/format.cpp, posix/format.cpp) ----------------------
// The user32 formatters: %[-][0][#][width][.precision][h|l] with d, i, u, x,
// X, c, s and %%, where s and c take the call's own width. They write at
// most 1024 elements, terminator included, and give the count written
// without the terminator. In wsprintfA, %c takes the char promoted to int
// and writes its low 8 bits.
int wsprintfW(WCHAR* out, const WCHAR* format, ...);
int wsprintfA(char* out, const char* format, ...);

// ---- Runtime conversions (portable: radix.cpp, numbers.cpp, compare.cpp) ---
// Number text in radix 2 to 36 (radix.cpp): lower-case letters, a sign
// only in radix 10 (any other radix shows the bits unsigned). kERANGE with
// an empty buffer when the text does not fit size; kEINVAL for a null
// buffer, a size of 0 or a radix out of range.
errno_t _itow_s(int value, WCHAR* buffer, std::size_t size, int radix);
errno_t _itoa_s(int value, char* buffer, std::size_t size, int radix);
errno_t _ultow_s(std::uint32_t value, WCHAR* buffer, std::size_t size, int radix);
errno_t _ultoa_s(std::uint32_t value, char* buffer, std::size_t size, int radix);
errno_t _i64tow_s(std::int64_t value, WCHAR* buffer, std::size_t size, int radix);
errno_t _i64toa_s(std::int64_t value, char* buffer, std::size_t size, int radix);
errno_t _ui64tow_s(std::uint64_t value, WCHAR* buffer, std::size_t size, int radix);
errno_t _ui64toa_s(std::uint64_t value, char* buffer, std::size_t size, int radix);
// Number parses (numbers.cpp), as the current Windows runtime does them:
// leading white space, one sign, then digits up to the first other element;
// no digits give 0. Wide text skips the Unicode white space (U+3000, U+00A0,
// U+0085, U+1680, U+2000 to U+200A, U+2028, U+2029, U+202F, U+205F, not a
// byte-order mark) and reads the decimal digits of other scripts, full-width
// ones among them; a full-width minus is no sign. Narrow text sees bytes
// only. Values out of range give the limit of the type on its sign's side.
int _wtoi(const WCHAR* text);
int atoi(const char* text);
std::int64_t _wtoi64(const WCHAR* text);
std::int64_t _atoi64(const char* text);
// Unsigned: out of range gives UINT64_MAX whatever the sign; in range, a
// leading minus negates the value modulo 2 to the 64th.
std::uint64_t _wcstoui64(const WCHAR* text, WCHAR** end, int radix);
std::uint64_t _strtoui64(const char* text, char** end, int radix);
// long is 32 bits, as on Windows. Radix 16 (or 0) takes a 0x before the
// digits (a 0x with no digit behind it is no number); letters are ASCII of
// either case. *end is set behind the number, or to text when there is
// none; values out of range clamp and still consume every digit.
std::int32_t wcstol(const WCHAR* text, WCHAR** end, int radix);
std::int32_t strtol(const char* text, char** end, int radix);
// _wcsicmp and _stricmp (compare.cpp): whole-text comparisons that fold
// the ASCII letters to lower case; 0 means equal, otherwise the sign of the
// first folded difference.
int _wcsicmp(const WCHAR* a, const WCHAR* b);
int _stricmp(const char* a, const char* b);

// ---- Time (time.cpp) -------------------------------------------------------
// The proleptic Gregorian calendar from 1601-01-01 to 30827-12-31 and a
// FILETIME of 100-nanosecond ticks since its start.
using WORD = std::uint16_t;
using LONG = std::int32_t;

// The local wall clock, milliseconds included; it cannot fail.
void GetLocalTime(SYSTEMTIME* time);
// No zone step; the day of week is ignored. 0 for a year outside 1601 to
// 30827, a month outside 1 to 12, a day the month does not have, an hour
// above 23, a minute or second above 59 or milliseconds above 999.
BOOL SystemTimeToFileTime(const SYSTEMTIME* system_time, FILETIME* file_time);
// No zone step; fills all eight fields. 0 for a value with the top bit set,
// and then the record stays as it was.
BOOL FileTimeToSystemTime(const FILETIME* file_time, SYSTEMTIME* system_time);
// UTC to local time and back, by the zone offset in force at the moment of
// the call (not the one of the moment converted); on POSIX a change of TZ
// counts from the next call. FileTimeToLocalFileTime gives 0 for a value
// with the top bit set and for a moment whose local form would leave the
// count, and then local stays as it was; LocalFileTimeToFileTime wraps as
// the system's does.
BOOL FileTimeToLocalFileTime(const FILETIME* utc, FILETIME* local);
BOOL LocalFileTimeToFileTime(const FILETIME* local, FILETIME* utc);
// -1, 0 or 1 as the first moment is earlier than, equal to or later than
// the second.
LONG CompareFileTime(const FILETIME* first, const FILETIME* second);

// ---- Process: the command line (process.cpp) ------------------------------
// The process's command line as one text; it belongs to the process and is
// never released. On POSIX it is rebuilt from the real arguments, each
// quoted so that CommandLineToArgvW gives it back unchanged, except that
// the program element has its slashes turned into backslashes and cannot
// hold a double quote (it loses any); the narrow form is
// the wide one in the ANSI code page with Windows' best fit and default
// character.
const WCHAR* GetCommandLineW();
const char* GetCommandLineA();
// Splits a line by the platform's rule into one block that holds a
// null-terminated array of the elements and their texts, and gives the
// element count in *count; null when the block cannot be had or line is
// null. The program element runs from a leading double quote to the next
// one, or else up to the first blank or tab, and takes backslashes and any
// other quote literally. Later elements follow the backslash-and-quote rule:
// 2n backslashes before a quote give n and the quote opens or closes
// quoting, 2n + 1 give n and a literal quote, other backslashes are literal,
// and inside quotes a doubled quote gives one literal quote and ends the
// quoting. Only blank and tab separate. An empty line gives one element,
// the path of the running program.
WCHAR** CommandLineToArgvW(const WCHAR* line, int* count);
// Releases a block of CommandLineToArgvW; gives null.
void* LocalFree(void* block);
// The full path of the running program (module must be null), in the
// layer's Windows form: on POSIX the real path with every slash turned
// into a backslash. Writes at most size elements and gives the length; of
// a path that does not fit with its terminator, the first size elements
// are written, unterminated, and the result is size.
DWORD GetModuleFileNameW(void* module, WCHAR* file_name, DWORD size);

}  // namespace kz::os
