/*
 * KZ_Basis: string, number, date, path, file, journal, status-file and
 * command-line facilities for Japanese-locale Windows desktops.
 *
 * Every operation is a flat C function. Almost all of them come as twins:
 * the A form works on narrow text in the system's multibyte code page
 * (Shift-JIS, code page 932), the W form on 16-bit wide text.
 *
 * Conventions shared by every family:
 *  - An element is one byte of narrow text or one 16-bit unit of wide text.
 *    Every length, size, limit and count is in elements of its own text.
 *  - A size argument is the capacity of the caller's buffer in elements,
 *    terminator included. Text is never cut to fit: the caller gives room
 *    for the whole result. Where a buffer is too small the library neither
 *    reads nor writes outside it and gives the function's failure or empty
 *    result instead.
 *  - Flags are 32-bit integers: 0 is off, anything else is on.
 *  - Results are 32-bit integers: 1 and 0 for done and not done, a length
 *    without the terminator, or -1 where 0 is a valid answer.
 *  - The caller owns every buffer and record it passes. Only the contents
 *    of a StrList, a TextFileHandle and a StatusFileHandle outlive a call,
 *    and each is released by its own operation.
 */
#ifndef KZ_BASIS_H
#define KZ_BASIS_H

/* The version of this header and the library it belongs to. A release that
 * only adds exports raises MINOR; one that changes an export raises MAJOR. */
#define KZ_BASIS_VERSION_MAJOR 1
#define KZ_BASIS_VERSION_MINOR 0
#define KZ_BASIS_VERSION_PATCH 0

#include <stdint.h>
#include <stdio.h>

#ifdef _WIN32
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
typedef wchar_t KZ_WCHAR;
#else
#ifdef __cplusplus
typedef char16_t KZ_WCHAR;
#else
typedef uint_least16_t KZ_WCHAR; /* the type that C11 calls char16_t */
#endif
/* The platform's calendar record and moment, laid out as on Windows. */
typedef struct _SYSTEMTIME {
  uint16_t wYear;
  uint16_t wMonth;
  uint16_t wDayOfWeek; /* 0 for Sunday up to 6 for Saturday */
  uint16_t wDay;
  uint16_t wHour;
  uint16_t wMinute;
  uint16_t wSecond;
  uint16_t wMilliseconds;
} SYSTEMTIME;
/* 100-nanosecond ticks since 1601-01-01 00:00:00, low half first. */
typedef struct _FILETIME {
  uint32_t dwLowDateTime;
  uint32_t dwHighDateTime;
} FILETIME;
#endif

/* KZ_API marks the exports. Users of the static archive (the library's own
 * tests) define KZ_STATIC. */
#if defined(KZ_STATIC)
#define KZ_API
#elif defined(_WIN32)
#ifdef KZ_BUILDING
#define KZ_API /* the module definition file names the exports */
#else
#define KZ_API __declspec(dllimport)
#endif
#else
#define KZ_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Records --------------------------------------------------------- */

/* A variable list of texts. The library fills it; the array and every
 * string are the library's allocations, released only by
 * KZ_DeleteStrListW or KZ_DeleteStrListA. A list filled by a W operation
 * holds KZ_WCHAR strings, one filled by an A operation char strings.
 * An empty list has count 0 and a null array. */
typedef struct StrList {
  int32_t count;
  void** strings;
} StrList;

typedef struct DateRecord {
  uint16_t year;
  uint16_t month;
  uint16_t day;
} DateRecord;

typedef struct TimeRecord {
  uint16_t hour;
  uint16_t minute;
  uint16_t second;
} TimeRecord;

typedef struct DateTimeRecord {
  uint16_t year;
  uint16_t month;
  uint16_t day;
  uint16_t hour;
  uint16_t minute;
  uint16_t second;
} DateTimeRecord;

typedef struct PointRecord {
  int32_t x;
  int32_t y;
} PointRecord;

typedef struct RectRecord {
  int32_t left;
  int32_t top;
  int32_t right;
  int32_t bottom;
} RectRecord;

/* Opaque handles: an open text file and an open status file. */
typedef struct TextFileHandle TextFileHandle;
typedef struct StatusFileHandle StatusFileHandle;

/* ---- Shift-JIS scanning and code conversion --------------------------
 * KZ_IsSJisMultiByteChar: 1 when the two bytes at p form a legal pair of
 * the multibyte code page, else 0; a byte before the terminator is never
 * half of a pair.
 * The conversions zero-fill the whole destination (size elements) first.
 * Result: -1 for an empty source, otherwise the platform conversion's count
 * (terminator included) plus 1: "abc" gives 5, a failed conversion 1. A
 * size of 0 asks for the needed size (plus 1) and writes nothing. */
KZ_API int32_t KZ_IsSJisMultiByteChar(const char* p);
KZ_API int32_t KZ_SJIS2UNICODE(const char* src, KZ_WCHAR* dst, int32_t size);
KZ_API int32_t KZ_UNICODE2SJIS(const KZ_WCHAR* src, char* dst, int32_t size);

/* ---- String lists -----------------------------------------------------
 * Free every string and the array, and leave the list empty. Safe on an
 * empty list; never on a record that no operation filled. */
KZ_API void KZ_DeleteStrListW(StrList* list);
KZ_API void KZ_DeleteStrListA(StrList* list);

/* ---- Delimited scanning and copying -----------------------------------
 * KZ_StringCopyEx: copy src up to the delimiter into dst, scanning at most
 * limit source positions; dst must hold limit + 1 elements. With quotes on,
 * a double quote flips the quote state and is dropped, and a delimiter
 * inside quotes is copied. Result: elements in dst.
 * KZ_StringCopyExAfter: the same scan, then copy what stands behind the
 * stop into dst, with limit as its capacity. Result: elements in dst. A
 * scan that reaches the end of src leaves dst empty; a limit below 1
 * leaves dst untouched and gives 0.
 * KZ_GetCodeCount: how often code stands in text (the A form skips bytes in
 * lead position). KZ_GetCodeLength: index of the first code, else the
 * length of text. */
KZ_API int32_t KZ_StringCopyExW(KZ_WCHAR* dst, const KZ_WCHAR* src, KZ_WCHAR delimiter,
                                int32_t limit, int32_t quotes);
KZ_API int32_t KZ_StringCopyExA(char* dst, const char* src, char delimiter, int32_t limit,
                                int32_t quotes);
KZ_API int32_t KZ_StringCopyExAfterW(KZ_WCHAR* dst, const KZ_WCHAR* src, KZ_WCHAR delimiter,
                                     int32_t limit, int32_t quotes);
KZ_API int32_t KZ_StringCopyExAfterA(char* dst, const char* src, char delimiter, int32_t limit,
                                     int32_t quotes);
KZ_API int32_t KZ_GetCodeCountW(const KZ_WCHAR* text, KZ_WCHAR code);
KZ_API int32_t KZ_GetCodeCountA(const char* text, char code);
KZ_API int32_t KZ_GetCodeLengthW(const KZ_WCHAR* text, KZ_WCHAR code);
KZ_API int32_t KZ_GetCodeLengthA(const char* text, char code);

/* ---- String splitting -------------------------------------------------
 * Cut text at the delimiter into list (one owned string per field; the
 * count is the number of delimiters plus one). Result: 1 with a filled
 * list, 0 with an empty one (empty text or no memory). KZ_StringCSV splits
 * at commas. With quotes on, the step from field to field is fixed by the
 * text's first element: texts that are neither all plain nor all quoted
 * give entries that begin too early or late, and a field that would begin
 * behind the end of the text is an empty entry. */
KZ_API int32_t KZ_StringSplitW(const KZ_WCHAR* text, KZ_WCHAR delimiter, StrList* list,
                               int32_t quotes);
KZ_API int32_t KZ_StringSplitA(const char* text, char delimiter, StrList* list, int32_t quotes);
KZ_API int32_t KZ_StringCSVW(const KZ_WCHAR* text, StrList* list, int32_t quotes);
KZ_API int32_t KZ_StringCSVA(const char* text, StrList* list, int32_t quotes);

/* ---- Trimming and extraction ------------------------------------------
 * The trims drop trim elements from the left, the right or both ends of
 * src into dst (size elements); a text of trim elements alone keeps one
 * element under the right trim. KZ_StringZeroSuppress drops leading zeros.
 * Result: length of dst.
 * KZ_StringLengthCopy copies count elements (characters in the A form)
 * into dst; refused (result 0) unless count < size.
 * KZ_StringGetQuoted extracts what stands between the first open and the
 * next close (texts of one element); result: its length, or 0. */
KZ_API int32_t KZ_StringTrimLeftW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size, KZ_WCHAR trim);
KZ_API int32_t KZ_StringTrimLeftA(char* dst, const char* src, int32_t size, char trim);
KZ_API int32_t KZ_StringTrimRightW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size, KZ_WCHAR trim);
KZ_API int32_t KZ_StringTrimRightA(char* dst, const char* src, int32_t size, char trim);
KZ_API int32_t KZ_StringTrimW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size, KZ_WCHAR trim);
KZ_API int32_t KZ_StringTrimA(char* dst, const char* src, int32_t size, char trim);
KZ_API int32_t KZ_StringZeroSuppressW(KZ_WCHAR* dst, const KZ_WCHAR* src, int32_t size);
KZ_API int32_t KZ_StringZeroSuppressA(char* dst, const char* src, int32_t size);
KZ_API int32_t KZ_StringLengthCopyW(const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t count,
                                    int32_t size);
KZ_API int32_t KZ_StringLengthCopyA(const char* src, char* dst, int32_t count, int32_t size);
KZ_API int32_t KZ_StringGetQuotedW(const KZ_WCHAR* text, KZ_WCHAR* out, int32_t size,
                                   const KZ_WCHAR* open, const KZ_WCHAR* close);
KZ_API int32_t KZ_StringGetQuotedA(const char* text, char* out, int32_t size, const char* open,
                                   const char* close);

/* ---- Double-quote handling --------------------------------------------
 * A text with a double quote anywhere counts as quoted. Set adds quotes to
 * an unquoted text; Del drops the first and last element of a quoted one.
 * src and dst may be the same buffer; both must fit size elements, else
 * dst becomes the empty text (so it does when no working memory is had). */
KZ_API void KZ_SetDoublequoteW(const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t size);
KZ_API void KZ_SetDoublequoteA(const char* src, char* dst, int32_t size);
KZ_API void KZ_DelDoublequoteW(const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t size);
KZ_API void KZ_DelDoublequoteA(const char* src, char* dst, int32_t size);

/* ---- Password text ----------------------------------------------------
 * mask on: every 16-bit unit XOR key becomes four base-36 digits.
 * mask off: the reverse. Result: length of the (wide) result, or -1 when
 * it does not fit size (the W form then leaves dst empty, the A form
 * untouched; the A form also gives -1 when it has no working memory). */
KZ_API int32_t KZ_StringPasswordW(uint16_t key, const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t size,
                                  int32_t mask);
KZ_API int32_t KZ_StringPasswordA(uint16_t key, const char* src, char* dst, int32_t size,
                                  int32_t mask);

/* ---- Digit grouping and coinage text ----------------------------------
 * KZ_IsNumeric: 1 when every element is a digit 0 to 9 (the empty text
 * too), else 0.
 * KZ_StringSetDelimiter puts delimiter into source every `group` elements
 * from the right. size bounds where a source element may start, so
 * destination needs size + 1 elements (size + 2 for a group of 1, which
 * also writes a delimiter on its last step). Result: the grouped length,
 * or -1 when group < 1 or when it does not fit (destination empty). The
 * W form groups any text (a minus sign is one element: "-,123,456"); the
 * A form gives -1 for a source that is not all digits and leaves
 * destination untouched.
 * KZ_CoinageString*: the value in groups of three with commas, through
 * KZ_StringSetDelimiter with the same size rule; -1 with an empty
 * destination when the plain decimal text does not fit size elements, and
 * -1 when working memory fails. Negative values fail in the A forms.
 * KZ_StringCoinage*: the text without any comma, parsed as the runtime
 * does (leading white space, one sign, digits; the W forms also take
 * Unicode spaces and digits of other scripts). No number gives 0, and a
 * value out of range the type's limit; DWord keeps the low 32 bits of a
 * 64-bit parse, ULongLong negates a leading minus modulo 2^64. */
KZ_API int32_t KZ_IsNumericW(const KZ_WCHAR* text);
KZ_API int32_t KZ_IsNumericA(const char* text);
KZ_API int32_t KZ_StringSetDelimiterW(const KZ_WCHAR* source, KZ_WCHAR* destination, int32_t size,
                                      KZ_WCHAR delimiter, int32_t group);
KZ_API int32_t KZ_StringSetDelimiterA(const char* source, char* destination, int32_t size,
                                      char delimiter, int32_t group);
KZ_API int32_t KZ_StringCoinageIntW(const KZ_WCHAR* text);
KZ_API int32_t KZ_StringCoinageIntA(const char* text);
KZ_API uint32_t KZ_StringCoinageDWordW(const KZ_WCHAR* text);
KZ_API uint32_t KZ_StringCoinageDWordA(const char* text);
KZ_API int64_t KZ_StringCoinageLongLongW(const KZ_WCHAR* text);
KZ_API int64_t KZ_StringCoinageLongLongA(const char* text);
KZ_API uint64_t KZ_StringCoinageULongLongW(const KZ_WCHAR* text);
KZ_API uint64_t KZ_StringCoinageULongLongA(const char* text);
KZ_API int32_t KZ_CoinageStringIntW(int32_t value, KZ_WCHAR* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringIntA(int32_t value, char* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringDWordW(uint32_t value, KZ_WCHAR* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringDWordA(uint32_t value, char* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringLongLongW(int64_t value, KZ_WCHAR* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringLongLongA(int64_t value, char* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringULongLongW(uint64_t value, KZ_WCHAR* destination, int32_t size);
KZ_API int32_t KZ_CoinageStringULongLongA(uint64_t value, char* destination, int32_t size);

/* ---- Hexadecimal text and byte swapping -------------------------------
 * KZ_HexString writes value in lower-case digits, at least `width` of them
 * (0 to 32; 0 means as many as needed), in style 0 "ff", 1 "0xff", 2 "xff",
 * 3 "ffH", 4 "$ff" or 5 "#ff"; destination needs 35 elements. Result 1, or
 * 0 with destination untouched for a width or style out of range.
 * KZ_StringHex reads any of those notations (one mark is taken away) as a
 * signed 32-bit value: text above 0x7FFFFFFF gives 0x7FFFFFFF. *valid
 * becomes 1 when the whole text was read, else 0 (also when working memory
 * fails, with the result 0).
 * KZ_XChgWord, KZ_XChgDWord: the value's bytes in reverse order. */
KZ_API int32_t KZ_StringHexW(const KZ_WCHAR* text, int32_t* valid);
KZ_API int32_t KZ_StringHexA(const char* text, int32_t* valid);
KZ_API int32_t KZ_HexStringW(uint32_t value, KZ_WCHAR* destination, int32_t width, int32_t style);
KZ_API int32_t KZ_HexStringA(uint32_t value, char* destination, int32_t width, int32_t style);
KZ_API uint16_t KZ_XChgWord(uint16_t value);
KZ_API uint32_t KZ_XChgDWord(uint32_t value);

/* ---- Point and rectangle text -----------------------------------------
 * The writers give "x, y" and "left, top, right, bottom" with the caller's
 * delimiter in place of the comma; they need 25 elements for a point and
 * 51 for a rectangle. The readers drop every blank, split at the delimiter
 * (double quotes around fields are taken away) and read each field as a
 * leading integer, 0 when it holds none. Result 1 when a point had exactly
 * two fields or a rectangle at least four; else 0 and the record stays as
 * it was. A blank as the delimiter therefore never reads back. */
KZ_API int32_t KZ_StringPointW(const KZ_WCHAR* text, PointRecord* point, KZ_WCHAR delimiter);
KZ_API int32_t KZ_StringPointA(const char* text, PointRecord* point, char delimiter);
KZ_API int32_t KZ_StringRectW(const KZ_WCHAR* text, RectRecord* rect, KZ_WCHAR delimiter);
KZ_API int32_t KZ_StringRectA(const char* text, RectRecord* rect, char delimiter);
KZ_API void KZ_PointStringW(const PointRecord* point, KZ_WCHAR* destination, KZ_WCHAR delimiter);
KZ_API void KZ_PointStringA(const PointRecord* point, char* destination, char delimiter);
KZ_API void KZ_RectStringW(const RectRecord* rect, KZ_WCHAR* destination, KZ_WCHAR delimiter);
KZ_API void KZ_RectStringA(const RectRecord* rect, char* destination, char delimiter);

/* ---- Calendar queries, names and time arithmetic ----------------------
 * KZ_QueryDays: days of the month by a table whose leap year is every
 * fourth year; -1 for a year below 1960 or a bad month.
 * KZ_QueryDayOfWeek: each output may be null; name buffers hold 32
 * elements. KZ_MonthToString needs 4 elements. The arithmetic adds or
 * subtracts milliseconds and refills every field of the record. */
KZ_API int32_t KZ_QueryDays(uint16_t year, uint16_t month);
KZ_API int32_t KZ_QueryDayOfWeekW(const DateRecord* date, uint16_t* day_of_week, KZ_WCHAR* english,
                                  KZ_WCHAR* japanese);
KZ_API int32_t KZ_QueryDayOfWeekA(const DateRecord* date, uint16_t* day_of_week, char* english,
                                  char* japanese);
KZ_API int32_t KZ_AddSystemTime(SYSTEMTIME* time, uint32_t milliseconds);
KZ_API int32_t KZ_SubSystemTime(SYSTEMTIME* time, uint32_t milliseconds);
KZ_API int32_t KZ_MonthToNumericW(const KZ_WCHAR* name);
KZ_API int32_t KZ_MonthToNumericA(const char* name);
KZ_API int32_t KZ_MonthToStringW(int32_t month, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_MonthToStringA(int32_t month, char* out, int32_t size);

/* ---- Date and time to text --------------------------------------------
 * Layouts: date "YYYY?MM?DD" (11 elements), time "hh:mm:ss" (9),
 * date-time with the separator (20), with ".mmm" (24); fields wider than
 * the layout are written in full (at most 18, 18, 36 and 42 elements).
 * Result: elements written, terminator not counted; KZ_FileTimeString
 * gives 0 when the moment cannot be converted and writes nothing. */
KZ_API int32_t KZ_DateStringW(const DateRecord* date, KZ_WCHAR* out, KZ_WCHAR delimiter);
KZ_API int32_t KZ_DateStringA(const DateRecord* date, char* out, char delimiter);
KZ_API int32_t KZ_CurrentDateStringW(KZ_WCHAR* out, KZ_WCHAR delimiter);
KZ_API int32_t KZ_CurrentDateStringA(char* out, char delimiter);
KZ_API int32_t KZ_TimeStringW(const TimeRecord* time, KZ_WCHAR* out);
KZ_API int32_t KZ_TimeStringA(const TimeRecord* time, char* out);
KZ_API int32_t KZ_CurrentTimeStringW(KZ_WCHAR* out);
KZ_API int32_t KZ_CurrentTimeStringA(char* out);
KZ_API int32_t KZ_SystemTimeStringW(const SYSTEMTIME* time, KZ_WCHAR* out, int32_t milliseconds,
                                    KZ_WCHAR delimiter, KZ_WCHAR separator);
KZ_API int32_t KZ_SystemTimeStringA(const SYSTEMTIME* time, char* out, int32_t milliseconds,
                                    char delimiter, char separator);
KZ_API int32_t KZ_CurrentDateTimeStringW(KZ_WCHAR* out, int32_t milliseconds, KZ_WCHAR delimiter,
                                         KZ_WCHAR separator);
KZ_API int32_t KZ_CurrentDateTimeStringA(char* out, int32_t milliseconds, char delimiter,
                                         char separator);
KZ_API int32_t KZ_FileTimeStringW(const FILETIME* time, KZ_WCHAR* out, int32_t milliseconds,
                                  KZ_WCHAR delimiter, KZ_WCHAR separator);
KZ_API int32_t KZ_FileTimeStringA(const FILETIME* time, char* out, int32_t milliseconds,
                                  char delimiter, char separator);

/* ---- Text to date and time --------------------------------------------
 * Tolerant readers: missing fields stay 0, surplus fields are ignored, no
 * range is tested except by KZ_StringFileTime, whose text is local time
 * and whose FILETIME is UTC. */
KZ_API int32_t KZ_StringDateW(const KZ_WCHAR* text, DateRecord* date, KZ_WCHAR delimiter);
KZ_API int32_t KZ_StringDateA(const char* text, DateRecord* date, char delimiter);
KZ_API int32_t KZ_StringTimeW(const KZ_WCHAR* text, TimeRecord* time);
KZ_API int32_t KZ_StringTimeA(const char* text, TimeRecord* time);
KZ_API int32_t KZ_StringDateTimeW(const KZ_WCHAR* text, DateTimeRecord* datetime,
                                  KZ_WCHAR delimiter, KZ_WCHAR separator);
KZ_API int32_t KZ_StringDateTimeA(const char* text, DateTimeRecord* datetime, char delimiter,
                                  char separator);
KZ_API int32_t KZ_StringFileTimeW(const KZ_WCHAR* text, FILETIME* time, KZ_WCHAR delimiter,
                                  KZ_WCHAR separator);
KZ_API int32_t KZ_StringFileTimeA(const char* text, FILETIME* time, char delimiter, char separator);

/* ---- Date range checks -------------------------------------------------
 * Result: 1 inside, 0 outside, -1 for a point that does not convert. The
 * text forms read "YYYY-MM-DD" and "YYYY-MM-DDThh:mm:ss[.mmm]"; a date text
 * holds at most 22 characters. */
KZ_API int32_t KZ_CheckDate(const DateRecord* start, const DateRecord* end,
                            const DateRecord* target);
KZ_API int32_t KZ_CheckCurrentDate(const DateRecord* start, const DateRecord* end);
KZ_API int32_t KZ_CheckDateTime(const DateTimeRecord* start, const DateTimeRecord* end,
                                const DateTimeRecord* target);
KZ_API int32_t KZ_CheckCurrentDateTime(const DateTimeRecord* start, const DateTimeRecord* end);
KZ_API int32_t KZ_CheckStringDateW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                   const KZ_WCHAR* target, int32_t inclusive);
KZ_API int32_t KZ_CheckStringDateA(const char* start, const char* end, const char* target,
                                   int32_t inclusive);
KZ_API int32_t KZ_CheckStringCurrentDateW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                          int32_t inclusive);
KZ_API int32_t KZ_CheckStringCurrentDateA(const char* start, const char* end, int32_t inclusive);
KZ_API int32_t KZ_CheckStringDateTimeW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                       const KZ_WCHAR* target, int32_t inclusive);
KZ_API int32_t KZ_CheckStringDateTimeA(const char* start, const char* end, const char* target,
                                       int32_t inclusive);
KZ_API int32_t KZ_CheckStringCurrentDateTimeW(const KZ_WCHAR* start, const KZ_WCHAR* end,
                                              int32_t inclusive);
KZ_API int32_t KZ_CheckStringCurrentDateTimeA(const char* start, const char* end,
                                              int32_t inclusive);

/* ---- Path dissection ----------------------------------------------------
 * Results: length of the text in out, or -1 for a null or empty path. */
KZ_API int32_t KZ_GetDriveNumberW(const KZ_WCHAR* path);
KZ_API int32_t KZ_GetDriveNumberA(const char* path);
KZ_API int32_t KZ_GetDriveNameW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_GetDriveNameA(const char* path, char* out, int32_t size);
KZ_API int32_t KZ_GetDirectoryNameW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_GetDirectoryNameA(const char* path, char* out, int32_t size);
KZ_API int32_t KZ_GetFileNameW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_GetFileNameA(const char* path, char* out, int32_t size);
KZ_API int32_t KZ_GetFileExtW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_GetFileExtA(const char* path, char* out, int32_t size);
KZ_API int32_t KZ_GetNotExtPathW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_GetNotExtPathA(const char* path, char* out, int32_t size);
KZ_API void KZ_SplitPathW(const KZ_WCHAR* path, KZ_WCHAR* drive, KZ_WCHAR* directory,
                          KZ_WCHAR* name, KZ_WCHAR* extension);
KZ_API void KZ_SplitPathA(const char* path, char* drive, char* directory, char* name,
                          char* extension);

/* ---- File system queries ----------------------------------------------- */
KZ_API int32_t KZ_CheckFileW(const KZ_WCHAR* path);
KZ_API int32_t KZ_CheckFileA(const char* path);
KZ_API int32_t KZ_CheckDirectoryW(const KZ_WCHAR* path);
KZ_API int32_t KZ_CheckDirectoryA(const char* path);
KZ_API int32_t KZ_CreateDirectoryW(const KZ_WCHAR* path);
KZ_API int32_t KZ_CreateDirectoryA(const char* path);
KZ_API uint32_t KZ_GetFileSizeW(const KZ_WCHAR* path, uint64_t* size);
KZ_API uint32_t KZ_GetFileSizeA(const char* path, uint64_t* size);
KZ_API int32_t KZ_GetFileTimeW(const KZ_WCHAR* path, FILETIME* creation, FILETIME* last_access,
                               FILETIME* last_write);
KZ_API int32_t KZ_GetFileTimeA(const char* path, FILETIME* creation, FILETIME* last_access,
                               FILETIME* last_write);

/* ---- Text file ----------------------------------------------------------
 * wide: 0 for a narrow file, nonzero for UTF-16 with a byte-order mark. */
KZ_API TextFileHandle* KZ_TextFileOpenW(const KZ_WCHAR* path, const KZ_WCHAR* mode, int32_t wide);
KZ_API TextFileHandle* KZ_TextFileOpenA(const char* path, const char* mode, int32_t wide);
KZ_API void KZ_TextFileClose(TextFileHandle* file);
KZ_API int32_t KZ_TextFileGetsW(TextFileHandle* file, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_TextFileGetsA(TextFileHandle* file, char* out, int32_t size);
KZ_API int32_t KZ_TextFilePutsW(TextFileHandle* file, const KZ_WCHAR* text);
KZ_API int32_t KZ_TextFilePutsA(TextFileHandle* file, const char* text);
KZ_API int32_t KZ_TextFileEof(TextFileHandle* file);
KZ_API int32_t KZ_TextFileError(TextFileHandle* file);
KZ_API int32_t KZ_TextFileSeek(TextFileHandle* file, int32_t offset, int32_t origin);
KZ_API FILE* KZ_TextFileHandle(TextFileHandle* file);

/* ---- Journal ------------------------------------------------------------ */
KZ_API int32_t KZ_JournalOutW(const KZ_WCHAR* file_name, const KZ_WCHAR* message,
                              uint32_t line_size, int32_t wide, KZ_WCHAR delimiter);
KZ_API int32_t KZ_JournalOutA(const char* file_name, const char* message, uint32_t line_size,
                              int32_t wide, char delimiter);

/* ---- Status files -------------------------------------------------------
 * A status file is directory\name (the directory null: the variable
 * "Temp"), shared by every process that creates it with the same names; it
 * holds one value as raw narrow bytes, without terminator. The record is
 * the caller's from KZ_StatusCreateFile* to a KZ_StatusEndFile that gives
 * nonzero; the last process to end removes the file, and with wait set
 * KZ_StatusEndFile returns only once the file is gone. A set replaces the
 * whole value; the string getters read at most size bytes and give at most
 * size - 1 of them. Waits give 0 on a match, 1 when no change came within
 * the timeout (milliseconds, 0xFFFFFFFF for none), 2 on failure. Other
 * results: nonzero done, 0 not done; null for no record. */
KZ_API StatusFileHandle* KZ_StatusCreateFileW(const KZ_WCHAR* file_name, const KZ_WCHAR* directory);
KZ_API StatusFileHandle* KZ_StatusCreateFileA(const char* file_name, const char* directory);
KZ_API int32_t KZ_StatusEndFile(StatusFileHandle* status, int32_t wait);
KZ_API int32_t KZ_StatusSetStringW(StatusFileHandle* status, const KZ_WCHAR* text);
KZ_API int32_t KZ_StatusSetStringA(StatusFileHandle* status, const char* text);
KZ_API int32_t KZ_StatusSetData(StatusFileHandle* status, const void* data, uint32_t size);
KZ_API int32_t KZ_StatusGetStringW(StatusFileHandle* status, KZ_WCHAR* out, int32_t size);
KZ_API int32_t KZ_StatusGetStringA(StatusFileHandle* status, char* out, int32_t size);
KZ_API int32_t KZ_StatusGetData(StatusFileHandle* status, void* out, uint32_t size);
KZ_API int32_t KZ_StatusIsStringWaitW(StatusFileHandle* status, const KZ_WCHAR* expected,
                                      uint32_t timeout);
KZ_API int32_t KZ_StatusIsStringWaitA(StatusFileHandle* status, const char* expected,
                                      uint32_t timeout);
KZ_API int32_t KZ_StatusIsDataWait(StatusFileHandle* status, const void* expected, uint32_t size,
                                   uint32_t timeout);

/* ---- Command line and selection lists ----------------------------------
 * KZ_CmdLineList: split line by the platform's rule into list, the command
 * first (KZ_GetCmdLine: the process's own line). An empty line gives one
 * element, the running program's path. The narrow forms work through wide
 * text: the line must fit 259 wide elements and each element 259 bytes.
 * KZ_GetCmdLineParam: the same list without the command (the command alone
 * gives 1 and an empty list with a null array). Result: 1 with a filled
 * list; 0 when a limit is passed or memory runs out, and then the list
 * holds nothing to release.
 * KZ_GetCommand, KZ_GetCommandDirectory: the file name or the directory of
 * the command into out; size must hold the whole line, not only the
 * command. Result: 1 when the line split (out may still be empty), 0 with
 * out empty otherwise.
 * KZ_SplitArg: cut text (at most 259 elements) into the command, without
 * its quotes, and the rest of the line as it stands; each output that is
 * not null must hold 260 elements and is emptied first.
 * KZ_GetComnSelectFileCount: the number of files in a file dialog's
 * selection buffer (one path, or a directory and names, NUL-separated and
 * ended by two NULs), looking at its first 260 elements only; -1 for a
 * null or empty selection. KZ_GetComnSelectFiles: their full paths into
 * list, taking names that begin before position size. Result: the count
 * stored; -1 for a null or empty selection or no memory for the array,
 * 0 when a path cannot be stored (list then empty). */
KZ_API int32_t KZ_CmdLineListW(const KZ_WCHAR* line, StrList* list);
KZ_API int32_t KZ_CmdLineListA(const char* line, StrList* list);
KZ_API int32_t KZ_GetCmdLineW(StrList* list);
KZ_API int32_t KZ_GetCmdLineA(StrList* list);
KZ_API int32_t KZ_GetCommandW(const KZ_WCHAR* line, KZ_WCHAR* name, int32_t size);
KZ_API int32_t KZ_GetCommandA(const char* line, char* name, int32_t size);
KZ_API int32_t KZ_GetCommandDirectoryW(const KZ_WCHAR* line, KZ_WCHAR* directory, int32_t size);
KZ_API int32_t KZ_GetCommandDirectoryA(const char* line, char* directory, int32_t size);
KZ_API int32_t KZ_GetCmdLineParamW(const KZ_WCHAR* line, StrList* list);
KZ_API int32_t KZ_GetCmdLineParamA(const char* line, StrList* list);
KZ_API void KZ_SplitArgW(const KZ_WCHAR* text, KZ_WCHAR* command, KZ_WCHAR* arguments);
KZ_API void KZ_SplitArgA(const char* text, char* command, char* arguments);
KZ_API int32_t KZ_GetComnSelectFilesW(const KZ_WCHAR* selection, int32_t size, StrList* list);
KZ_API int32_t KZ_GetComnSelectFilesA(const char* selection, int32_t size, StrList* list);
KZ_API int32_t KZ_GetComnSelectFileCountW(const KZ_WCHAR* selection);
KZ_API int32_t KZ_GetComnSelectFileCountA(const char* selection);

#ifdef __cplusplus
}
#endif

#endif /* KZ_BASIS_H */
