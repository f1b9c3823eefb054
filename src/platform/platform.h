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
#include <cstdio>

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
// The POSIX layer converts in one of several ways with the same results (a
// plain one, and one per vector instruction set the processor runs) and
// takes the last, the widest. Tests switch to each in turn to compare it with
// a model: use_code_page_path gives the way's name, or null past the count.
// The Windows build has one way, the platform's own.
int code_page_path_count();
const char* use_code_page_path(int path);

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

// ---- Files and directories (files.cpp) -------------------------------------
// Paths are Windows paths. On POSIX "\" and "/" both separate, and a leading
// drive letter with its colon names the root ("C:\x" is "/x", "C:x" is "x"
// in the current directory); narrow paths are code page 932, and names reach
// the file system as UTF-8.
using HANDLE = void*;
inline HANDLE const kInvalidHandle = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(-1));
inline constexpr DWORD kGenericRead = 0x80000000;
inline constexpr DWORD kGenericWrite = 0x40000000;
inline constexpr DWORD kFileShareRead = 1;
inline constexpr DWORD kFileShareWrite = 2;
inline constexpr DWORD kCreateAlways = 2;
inline constexpr DWORD kOpenExisting = 3;
inline constexpr DWORD kOpenAlways = 4;
inline constexpr DWORD kFileAttributeDirectory = 0x10;

#ifdef _WIN32
using WIN32_FIND_DATAA = ::WIN32_FIND_DATAA;
using WIN32_FIND_DATAW = ::WIN32_FIND_DATAW;
#else
struct WIN32_FIND_DATAA {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime, ftLastAccessTime, ftLastWriteTime;
  DWORD nFileSizeHigh, nFileSizeLow, dwReserved0, dwReserved1;
  char cFileName[260];
  char cAlternateFileName[14];
};
struct WIN32_FIND_DATAW {
  DWORD dwFileAttributes;
  FILETIME ftCreationTime, ftLastAccessTime, ftLastWriteTime;
  DWORD nFileSizeHigh, nFileSizeLow, dwReserved0, dwReserved1;
  WCHAR cFileName[260];
  WCHAR cAlternateFileName[14];
};
#endif

// The first entry that matches; "*" and "?" may stand in the last
// component. kInvalidHandle when nothing matches, and for a path that ends
// in a separator.
HANDLE FindFirstFileA(const char* path, WIN32_FIND_DATAA* data);
HANDLE FindFirstFileW(const WCHAR* path, WIN32_FIND_DATAW* data);
BOOL FindClose(HANDLE find);
// The current directory as a full path with a drive ("C:\home\x" on POSIX).
// Gives its length; when size cannot hold it, the size needed with the
// terminator, and the buffer is not written.
DWORD GetCurrentDirectoryA(DWORD size, char* buffer);
DWORD GetCurrentDirectoryW(DWORD size, WCHAR* buffer);
// Nonzero when the current directory is now path; on failure it stays.
BOOL SetCurrentDirectoryA(const char* path);
BOOL SetCurrentDirectoryW(const WCHAR* path);
// Nonzero only when a new directory came into being (security is unused).
BOOL CreateDirectoryA(const char* path, void* security);
BOOL CreateDirectoryW(const WCHAR* path, void* security);
// Opens a file with the access (kGenericRead, kGenericWrite) and the share
// mode (what others may do while it is open) the caller asks for, across
// threads and processes: an open fails when it would take an access that
// another open does not share, or deny one that another open holds. A
// directory cannot be opened. Gives kInvalidHandle on failure.
HANDLE CreateFileA(const char* path, DWORD access, DWORD share, void* security, DWORD disposition,
                   DWORD flags, HANDLE template_file);
HANDLE CreateFileW(const WCHAR* path, DWORD access, DWORD share, void* security, DWORD disposition,
                   DWORD flags, HANDLE template_file);
// The low 32 bits of the size (the high ones in *high when given);
// 0xFFFFFFFF on failure.
DWORD GetFileSize(HANDLE file, DWORD* high);
BOOL GetFileSizeEx(HANDLE file, std::int64_t* size);
// The three times as UTC FILETIMEs; a null pointer is not wanted.
BOOL GetFileTime(HANDLE file, FILETIME* creation, FILETIME* last_access, FILETIME* last_write);
BOOL CloseHandle(HANDLE object);

// ---- Process environment (process.cpp) ------------------------------------
// Names match without regard to case. Gives the length of the value, or
// the size needed with the terminator when size cannot hold it (buffer not
// written), or 0 when the variable is not set. On POSIX a process always
// has "TEMP" and "TMP", as on Windows: when unset they read as TMPDIR, else
// /tmp.
DWORD GetEnvironmentVariableA(const char* name, char* buffer, DWORD size);
DWORD GetEnvironmentVariableW(const WCHAR* name, WCHAR* buffer, DWORD size);
// Sets a variable, or removes it when value is null.
BOOL SetEnvironmentVariableA(const char* name, const char* value);
BOOL SetEnvironmentVariableW(const WCHAR* name, const WCHAR* value);

// ---- Runtime streams (streams.cpp) ------------------------------------------
// fopen_s and _wfopen_s take a runtime mode: "r", "w" or "a", optionally
// "+", then "t" (text, the default) or "b", then optionally ",ccs=UNICODE",
// ",ccs=UTF-16LE" or ",ccs=UTF-8". They give 0 and the stream, or an error
// number. A stream open for writing shares its file with no one, one open
// for reading shares it with readers only, as CreateFile's share modes.
//   Text mode stores a line end as CR LF and reads CR LF as one newline.
//   With ccs the stream carries 16-bit text, UTF-16LE on disk: a byte-order
//   mark is written on a file opened for writing that is empty, and read
//   (and then honoured) on one that is not; a file without one is UTF-16LE.
// On POSIX the FILE is a real C stream: a caller can use it with the C
// library directly, and its byte offsets are those of the file.
errno_t fopen_s(FILE** stream, const char* path, const char* mode);
errno_t _wfopen_s(FILE** stream, const WCHAR* path, const WCHAR* mode);
// Reads at most size - 1 elements up to and with a newline and terminates;
// null when nothing was read. On a stream without ccs, fgetws takes each
// byte as one unit and fputws writes units below 256 as one byte; a larger
// unit ends the write there, without the error mark.
char* fgets(char* buffer, int size, FILE* stream);
WCHAR* fgetws(WCHAR* buffer, int size, FILE* stream);
int fputs(const char* text, FILE* stream);
int fputws(const WCHAR* text, FILE* stream);
int feof(FILE* stream);
int ferror(FILE* stream);
int fseek(FILE* stream, long offset, int origin);
int fclose(FILE* stream);

// ---- File transfers (file_io.cpp) ------------------------------------------
// Reads and writes at a handle's own position, as CreateFile gave it.
inline constexpr DWORD kFileBegin = 0;  // FILE_BEGIN
inline constexpr DWORD kInvalidSetFilePointer = 0xFFFFFFFF;
inline constexpr DWORD kFileAttributeTemporary = 0x100;

// Moves the position to distance (with *high as its upper 32 bits when
// given) from the start, the position or the end (0, 1, 2). Gives the low
// 32 bits of the new position, kInvalidSetFilePointer on failure.
DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD method);
// The file ends at the position: cut there or grown with zeros.
BOOL SetEndOfFile(HANDLE file);
// Nonzero when all count bytes went in at the position; *done tells how many.
BOOL WriteFile(HANDLE file, const void* data, DWORD count, DWORD* done, void* overlapped);
// Nonzero when the read worked, also when fewer bytes than count or none
// were there; *done tells how many came.
BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* done, void* overlapped);
// Nonzero when what was written has reached the file.
BOOL FlushFileBuffers(HANDLE file);
// Nonzero when the file is gone. No open of this library shares delete, so
// the call fails while any process still holds the file open.
BOOL DeleteFileA(const char* path);

// ---- Change notification and waiting (notify.cpp) ------------------------
// A change handle watches one directory (never its subtree) and is
// signalled when a file in it gets a new last write time. It stays
// signalled until FindNextChangeNotification re-arms it; changes that come
// after the signal and before the re-arm are kept, so the next wait
// returns at once. A directory that is not there gives kInvalidHandle.
inline constexpr DWORD kFileNotifyChangeLastWrite = 0x10;
inline constexpr DWORD kInfinite = 0xFFFFFFFF;
inline constexpr DWORD kWaitObject0 = 0;
inline constexpr DWORD kWaitAbandoned = 0x80;
inline constexpr DWORD kWaitTimeout = 258;
inline constexpr DWORD kWaitFailed = 0xFFFFFFFF;

HANDLE FindFirstChangeNotificationA(const char* directory, BOOL subtree, DWORD filter);
BOOL FindNextChangeNotification(HANDLE change);
BOOL FindCloseChangeNotification(HANDLE change);
// Waits for a change handle to be signalled: kWaitObject0 when it is,
// kWaitTimeout when timeout milliseconds passed first (kInfinite waits
// without end), kWaitFailed for a handle that is no change handle.
DWORD WaitForSingleObject(HANDLE object, DWORD timeout);
// Pauses the calling thread for that many milliseconds.
void Sleep(DWORD milliseconds);

// ---- Process: the command line (command_line.cpp) ------------------------
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
