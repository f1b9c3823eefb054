// The exports that come as twins, by element type, so one typed test runs
// a table of cases through both: Twin<Ch>::StringSplit is KZ_StringSplitA
// for char and KZ_StringSplitW for the wide type. It needs nothing but the
// public header, so the fuzz targets share it.
#pragma once

#include "kz_basis.h"

namespace kz::test {

using wchar = KZ_WCHAR;

// Every name that has an A and a W export, family by family: strings,
// numbers and dates; paths, file queries, text files and the journal;
// status files; command lines and selections.
// clang-format off
#define KZ_TWIN_NAMES(X)                                                                        \
  X(StringCopyEx) X(StringCopyExAfter) X(GetCodeCount) X(GetCodeLength) X(StringSplit)          \
  X(StringCSV) X(DeleteStrList) X(StringTrimLeft) X(StringTrimRight) X(StringTrim)              \
  X(StringZeroSuppress) X(StringLengthCopy) X(StringGetQuoted) X(SetDoublequote)                \
  X(DelDoublequote) X(StringPassword) X(QueryDayOfWeek) X(MonthToNumeric) X(MonthToString)      \
  X(DateString) X(TimeString) X(SystemTimeString) X(FileTimeString) X(CurrentDateString)        \
  X(CurrentTimeString) X(CurrentDateTimeString) X(StringDate) X(StringTime) X(StringDateTime)   \
  X(StringFileTime) X(CheckStringDate) X(CheckStringDateTime) X(CheckStringCurrentDate)         \
  X(CheckStringCurrentDateTime) X(IsNumeric) X(StringSetDelimiter) X(CoinageStringInt)          \
  X(CoinageStringDWord) X(CoinageStringLongLong) X(CoinageStringULongLong)                      \
  X(StringCoinageInt) X(StringCoinageDWord) X(StringCoinageLongLong)                            \
  X(StringCoinageULongLong) X(HexString) X(StringHex) X(PointString) X(RectString)              \
  X(StringPoint) X(StringRect)                                                                  \
  X(GetDriveNumber) X(GetDriveName) X(GetDirectoryName) X(GetFileName) X(GetFileExt)            \
  X(GetNotExtPath) X(SplitPath) X(CheckFile) X(CheckDirectory) X(CreateDirectory)               \
  X(GetFileSize) X(GetFileTime) X(TextFileOpen) X(TextFileGets) X(TextFilePuts) X(JournalOut)   \
  X(StatusCreateFile) X(StatusSetString) X(StatusGetString) X(StatusIsStringWait)               \
  X(CmdLineList) X(GetCmdLine) X(GetCmdLineParam) X(GetCommand) X(GetCommandDirectory)          \
  X(SplitArg) X(GetComnSelectFiles) X(GetComnSelectFileCount)
// clang-format on

// Each name is pasted straight into the export's, never expanded first:
// the Windows headers define some of them (CreateDirectory) as macros.
#define KZ_TWIN(name)                \
  template <class... Args>           \
  static auto name(Args... args) {   \
    if constexpr (sizeof(Ch) == 1) { \
      return KZ_##name##A(args...);  \
    } else {                         \
      return KZ_##name##W(args...);  \
    }                                \
  }

template <class Ch>
struct Twin {
  KZ_TWIN_NAMES(KZ_TWIN)
};

#undef KZ_TWIN
#undef KZ_TWIN_NAMES

}  // namespace kz::test
