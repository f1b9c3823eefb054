// The exports that come as twins, by element type, so one typed test runs
// a table of cases through both: Twin<Ch>::StringSplit is KZ_StringSplitA
// for char and KZ_StringSplitW for the wide type. It needs nothing but the
// public header, so the fuzz targets share it.
#pragma once

#include "kz_basis.h"

namespace kz::test {

using wchar = KZ_WCHAR;

template <class Ch>
struct Twin;

#define KZ_TWIN(name, suffix)          \
  template <class... Args>             \
  static auto name(Args... args) {     \
    return KZ_##name##suffix(args...); \
  }

#define KZ_TWINS(suffix)                  \
  KZ_TWIN(StringCopyEx, suffix)           \
  KZ_TWIN(StringCopyExAfter, suffix)      \
  KZ_TWIN(GetCodeCount, suffix)           \
  KZ_TWIN(GetCodeLength, suffix)          \
  KZ_TWIN(StringSplit, suffix)            \
  KZ_TWIN(StringCSV, suffix)              \
  KZ_TWIN(DeleteStrList, suffix)          \
  KZ_TWIN(StringTrimLeft, suffix)         \
  KZ_TWIN(StringTrimRight, suffix)        \
  KZ_TWIN(StringTrim, suffix)             \
  KZ_TWIN(StringZeroSuppress, suffix)     \
  KZ_TWIN(StringLengthCopy, suffix)       \
  KZ_TWIN(StringGetQuoted, suffix)        \
  KZ_TWIN(SetDoublequote, suffix)         \
  KZ_TWIN(DelDoublequote, suffix)         \
  KZ_TWIN(StringPassword, suffix)         \
  KZ_TWIN(QueryDayOfWeek, suffix)         \
  KZ_TWIN(MonthToNumeric, suffix)         \
  KZ_TWIN(MonthToString, suffix)          \
  KZ_TWIN(DateString, suffix)             \
  KZ_TWIN(TimeString, suffix)             \
  KZ_TWIN(SystemTimeString, suffix)       \
  KZ_TWIN(FileTimeString, suffix)         \
  KZ_TWIN(CurrentDateString, suffix)      \
  KZ_TWIN(CurrentTimeString, suffix)      \
  KZ_TWIN(CurrentDateTimeString, suffix)  \
  KZ_TWIN(StringDate, suffix)             \
  KZ_TWIN(StringTime, suffix)             \
  KZ_TWIN(StringDateTime, suffix)         \
  KZ_TWIN(StringFileTime, suffix)         \
  KZ_TWIN(CheckStringDate, suffix)        \
  KZ_TWIN(CheckStringDateTime, suffix)    \
  KZ_TWIN(CheckStringCurrentDate, suffix) \
  KZ_TWIN(IsNumeric, suffix)              \
  KZ_TWIN(StringSetDelimiter, suffix)     \
  KZ_TWIN(CoinageStringInt, suffix)       \
  KZ_TWIN(CoinageStringDWord, suffix)     \
  KZ_TWIN(CoinageStringLongLong, suffix)  \
  KZ_TWIN(CoinageStringULongLong, suffix) \
  KZ_TWIN(StringCoinageInt, suffix)       \
  KZ_TWIN(StringCoinageDWord, suffix)     \
  KZ_TWIN(StringCoinageLongLong, suffix)  \
  KZ_TWIN(StringCoinageULongLong, suffix) \
  KZ_TWIN(HexString, suffix)              \
  KZ_TWIN(StringHex, suffix)              \
  KZ_TWIN(PointString, suffix)            \
  KZ_TWIN(RectString, suffix)             \
  KZ_TWIN(StringPoint, suffix)            \
  KZ_TWIN(StringRect, suffix)             \
  KZ_TWIN(CheckStringCurrentDateTime, suffix)

// Paths, file queries, text files and the journal.
#define KZ_FILE_TWINS(suffix)       \
  KZ_TWIN(GetDriveNumber, suffix)   \
  KZ_TWIN(GetDriveName, suffix)     \
  KZ_TWIN(GetDirectoryName, suffix) \
  KZ_TWIN(GetFileName, suffix)      \
  KZ_TWIN(GetFileExt, suffix)       \
  KZ_TWIN(GetNotExtPath, suffix)    \
  KZ_TWIN(SplitPath, suffix)        \
  KZ_TWIN(CheckFile, suffix)        \
  KZ_TWIN(CheckDirectory, suffix)   \
  KZ_TWIN(CreateDirectory, suffix)  \
  KZ_TWIN(GetFileSize, suffix)      \
  KZ_TWIN(GetFileTime, suffix)      \
  KZ_TWIN(TextFileOpen, suffix)     \
  KZ_TWIN(TextFileGets, suffix)     \
  KZ_TWIN(TextFilePuts, suffix)     \
  KZ_TWIN(JournalOut, suffix)

// Status files and their waits.
#define KZ_STATUS_TWINS(suffix)     \
  KZ_TWIN(StatusCreateFile, suffix) \
  KZ_TWIN(StatusSetString, suffix)  \
  KZ_TWIN(StatusGetString, suffix)  \
  KZ_TWIN(StatusIsStringWait, suffix)

// Command lines and selections.
#define KZ_COMMAND_TWINS(suffix)       \
  KZ_TWIN(CmdLineList, suffix)         \
  KZ_TWIN(GetCmdLine, suffix)          \
  KZ_TWIN(GetCmdLineParam, suffix)     \
  KZ_TWIN(GetCommand, suffix)          \
  KZ_TWIN(GetCommandDirectory, suffix) \
  KZ_TWIN(SplitArg, suffix)            \
  KZ_TWIN(GetComnSelectFiles, suffix)  \
  KZ_TWIN(GetComnSelectFileCount, suffix)

template <>
struct Twin<char> {
  KZ_TWINS(A)
  KZ_FILE_TWINS(A)
  KZ_STATUS_TWINS(A)
  KZ_COMMAND_TWINS(A)
};

template <>
struct Twin<wchar> {
  KZ_TWINS(W)
  KZ_FILE_TWINS(W)
  KZ_STATUS_TWINS(W)
  KZ_COMMAND_TWINS(W)
};

#undef KZ_STATUS_TWINS
#undef KZ_COMMAND_TWINS
#undef KZ_FILE_TWINS
#undef KZ_TWINS
#undef KZ_TWIN

}  // namespace kz::test
