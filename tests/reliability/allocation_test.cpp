// Allocation failure across the whole export surface: one row per export,
// either a call that reaches every allocation of the export, run with the
// Nth allocation failing (once, and from N on) until the call makes no Nth,
// or a call that the table claims makes none. The rows must name exactly
// the exports of the library's export list.
#include <climits>
#include <cstring>
#include <fstream>
#include <functional>
#include <regex>
#include <set>

#include "files.h"

namespace kz::test {
namespace {

// A call's result and the bytes of its outputs (a list as its strings).
struct Outcome {
  std::int64_t result = 0;
  std::string bytes;
  bool operator==(const Outcome&) const = default;
};

// What a failed call leaves in its outputs, by the export's contract.
enum Left { kNoAllocation, kAsItWas, kEmptied, kZeroed, kNothing };
constexpr std::int64_t kMinusOneOrZero = INT64_MIN;  // either result is a failure

struct Row {
  const char* name;
  Left left;
  std::int64_t failure;
  std::size_t unit;  // element size of the outputs
  std::function<Outcome()> call;
};

// Fills an output with the sentinel byte, so that "as it was" shows.
template <class T>
void fresh(T& output) {
  std::memset(&output, 0x7B, sizeof output);
}

template <class T>
std::string bytes_of(const T& output) {
  return std::string(reinterpret_cast<const char*>(&output), sizeof output);
}

// A filled list as its strings, each with its terminator, read when the
// outcome is made; the list is released. An empty list (count 0, no array)
// gives no bytes.
template <class Ch>
struct Listed {
  StrList& list;
};
template <class Ch>
std::string bytes_of(const Listed<Ch>& listed) {
  StrList& list = listed.list;
  std::string out = list.count == 0 && list.strings == nullptr ? "" : "+";
  for (int32_t i = 0; i < list.count; ++i) {
    const auto* entry = static_cast<const Ch*>(list.strings[i]);
    out.append(reinterpret_cast<const char*>(entry),
               (std::char_traits<Ch>::length(entry) + 1) * sizeof(Ch));
  }
  KZ_DeleteStrListW(&list);
  return out;
}

template <class... T>
Outcome done(std::int64_t result, const T&... outputs) {
  return {result, (std::string() + ... + bytes_of(outputs))};
}

::testing::AssertionResult failed_as(const Row& row, const Outcome& got) {
  const auto& b = got.bytes;
  const bool result = got.result == row.failure ||
                      (row.failure == kMinusOneOrZero && (got.result == 0 || got.result == -1));
  const bool left = row.left == kNothing   ? b.empty()
                    : row.left == kAsItWas ? b.find_first_not_of('\x7B') == std::string::npos
                    : row.left == kZeroed
                        ? b.find_first_not_of('\0') == std::string::npos
                        : b.size() >= row.unit && b.find_first_not_of('\0') >= row.unit;
  if (result && left) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << "result " << got.result << ", outputs not as the contract leaves them";
}

#define TX(ascii) text<Ch>(ascii).c_str()
#define KZ_ROW(name, left, failure, ...)                       \
  {                                                            \
#name, left, failure, 1, [&]() -> Outcome { __VA_ARGS__; } \
  }
#define KZ_TWIN_ROW(name, Ch_, left, failure, ...)              \
  {                                                             \
    "KZ_" #name, left, failure, sizeof(Ch_), [&]() -> Outcome { \
      using Ch [[maybe_unused]] = Ch_;                          \
      using T [[maybe_unused]] = Twin<Ch_>;                     \
      __VA_ARGS__;                                              \
    }                                                           \
  }
#define KZ_ROWS(name, left_a, left_w, failure, ...)         \
  KZ_TWIN_ROW(name##A, char, left_a, failure, __VA_ARGS__), \
      KZ_TWIN_ROW(name##W, wchar, left_w, failure, __VA_ARGS__)
constexpr Left kNo = kNoAllocation;

std::set<std::string> exported_names() {
  std::ifstream map(KZ_EXPORT_MAP);
  std::set<std::string> names;
  const std::regex line("^\\s*(KZ_\\w+);");
  for (std::string text; std::getline(map, text);)
    if (std::smatch m; std::regex_search(text, m, line)) names.insert(m[1]);
  return names;
}

TEST(AllocationFailure, EveryExportFailsAsItsContractSays) {
  TempDir dir;
  const ScopedVariable journal_root("KZ_JOURNAL_PATH", dir.path().c_str());
  // Files the text-file rows read and write: each twin takes the route that
  // converts, so a narrow and a wide file of lines enough for every run.
  for (const int wide : {0, 1}) {
    TextFileHandle* file = KZ_TextFileOpenA(dir.path(wide ? "w.txt" : "n.txt").c_str(), "w", wide);
    for (int i = 0; i < 2000; ++i) KZ_TextFilePutsA(file, "abc");
    KZ_TextFileClose(file);
  }
  TextFileHandle* narrow_in = KZ_TextFileOpenA(dir.path("n.txt").c_str(), "r", 0);
  TextFileHandle* wide_in = KZ_TextFileOpenA(dir.path("w.txt").c_str(), "r", 1);
  TextFileHandle* narrow_out = KZ_TextFileOpenA(dir.path("n2.txt").c_str(), "a", 0);
  TextFileHandle* wide_out = KZ_TextFileOpenA(dir.path("w2.txt").c_str(), "a", 1);
  StatusFileHandle* status = KZ_StatusCreateFileA("s", dir.path().c_str());
  ASSERT_TRUE(narrow_in && wide_in && narrow_out && wide_out && status);
  KZ_StatusSetStringA(status, "abc");
  const DateRecord d1{2024, 1, 1}, d2{2024, 12, 31};
  const DateTimeRecord t1{2024, 1, 1, 0, 0, 0}, t2{2024, 12, 31, 0, 0, 0};
  const FILETIME moment{0, 0x01DA0000};
  const std::string selection("d\0a\0b\0", 7);

  const std::vector<Row> rows = {
    KZ_ROW(KZ_IsSJisMultiByteChar, kNo, 0, return done(KZ_IsSJisMultiByteChar("\x93\xFA"))),
    KZ_ROW(KZ_SJIS2UNICODE, kNo, 0, wchar out[4]; return done(KZ_SJIS2UNICODE("ab", out, 4), out)),
    KZ_ROW(KZ_UNICODE2SJIS, kNo, 0, char out[4];
           return done(KZ_UNICODE2SJIS(text<wchar>("ab").c_str(), out, 4), out)),
    KZ_ROWS(DeleteStrList, kNo, kNo, 0, StrList l{}; T::DeleteStrList(&l); return done(l.count)),
    KZ_ROWS(StringCopyEx, kNo, kNo, 0, Ch out[8];
            return done(T::StringCopyEx(out, TX("a,b"), Ch(','), 7, 1), out)),
    KZ_ROWS(StringCopyExAfter, kNo, kNo, 0, Ch out[8];
            return done(T::StringCopyExAfter(out, TX("a,b"), Ch(','), 7, 1), out)),
    KZ_ROWS(GetCodeCount, kNo, kNo, 0, return done(T::GetCodeCount(TX("a,b"), Ch(',')))),
    KZ_ROWS(GetCodeLength, kNo, kNo, 0, return done(T::GetCodeLength(TX("a,b"), Ch(',')))),
    KZ_ROWS(StringSplit, kNothing, kNothing, 0, StrList l{};
            return done(T::StringSplit(TX("a,b,c"), Ch(','), &l, 1), Listed<Ch>{l})),
    KZ_ROWS(StringCSV, kNothing, kNothing, 0, StrList l{};
            return done(T::StringCSV(TX("\"a\",\"b\""), &l, 1), Listed<Ch>{l})),
    KZ_ROWS(StringTrimLeft, kNo, kNo, 0, Ch out[8];
            return done(T::StringTrimLeft(out, TX(" a "), 8, Ch(' ')), out)),
    KZ_ROWS(StringTrimRight, kNo, kNo, 0, Ch out[8];
            return done(T::StringTrimRight(out, TX(" a "), 8, Ch(' ')), out)),
    KZ_ROWS(StringTrim, kNo, kNo, 0, Ch out[8];
            return done(T::StringTrim(out, TX(" a "), 8, Ch(' ')), out)),
    KZ_ROWS(StringLengthCopy, kAsItWas, kNo, 0, Ch out[8]; fresh(out);
            return done(T::StringLengthCopy(TX("abc"), out, 2, 8), out)),
    KZ_ROWS(StringGetQuoted, kZeroed, kNo, 0, Ch out[8]; fresh(out);
            return done(T::StringGetQuoted(TX("x[ab]"), out, 8, TX("["), TX("]")), out)),
    KZ_ROWS(StringZeroSuppress, kNo, kNo, 0, Ch out[8];
            return done(T::StringZeroSuppress(out, TX("007"), 8), out)),
    KZ_ROWS(SetDoublequote, kEmptied, kEmptied, 0, Ch out[8]; fresh(out);
            T::SetDoublequote(TX("ab"), out, 8); return done(0, out)),
    KZ_ROWS(DelDoublequote, kEmptied, kEmptied, 0, Ch out[8]; fresh(out);
            T::DelDoublequote(TX("\"ab\""), out, 8); return done(0, out)),
    KZ_ROWS(StringPassword, kAsItWas, kNo, -1, Ch out[16]; fresh(out);
            return done(T::StringPassword(7, TX("ab"), out, 16, 1), out)),
    KZ_ROWS(IsNumeric, kNo, kNo, 0, return done(T::IsNumeric(TX("12")))),
    KZ_ROWS(StringSetDelimiter, kNo, kNo, 0, Ch out[8];
            return done(T::StringSetDelimiter(TX("1234"), out, 7, Ch(','), 3), out)),
    KZ_ROWS(StringCoinageInt, kNothing, kNothing, 0, return done(T::StringCoinageInt(TX("1,234")))),
    KZ_ROWS(StringCoinageDWord, kNothing, kNothing, 0,
            return done(T::StringCoinageDWord(TX("1,2")))),
    KZ_ROWS(StringCoinageLongLong, kNothing, kNothing, 0,
            return done(T::StringCoinageLongLong(TX("1,2")))),
    KZ_ROWS(StringCoinageULongLong, kNothing, kNothing, 0,
            return done(static_cast<std::int64_t>(T::StringCoinageULongLong(TX("1,2"))))),
    KZ_ROWS(CoinageStringInt, kAsItWas, kAsItWas, -1, Ch out[8]; fresh(out);
            return done(T::CoinageStringInt(1234, out, 8), out)),
    KZ_ROWS(CoinageStringDWord, kAsItWas, kAsItWas, -1, Ch out[8]; fresh(out);
            return done(T::CoinageStringDWord(1234u, out, 8), out)),
    KZ_ROWS(CoinageStringLongLong, kAsItWas, kAsItWas, -1, Ch out[8]; fresh(out);
            return done(T::CoinageStringLongLong(std::int64_t{1234}, out, 8), out)),
    KZ_ROWS(CoinageStringULongLong, kAsItWas, kAsItWas, -1, Ch out[8]; fresh(out);
            return done(T::CoinageStringULongLong(std::uint64_t{1234}, out, 8), out)),
    KZ_ROWS(StringHex, kZeroed, kZeroed, 0, std::int32_t valid; fresh(valid);
            return done(T::StringHex(TX("ffH"), &valid), valid)),
    KZ_ROWS(HexString, kNo, kNo, 0, Ch out[40]; return done(T::HexString(255u, out, 4, 1), out)),
    KZ_ROW(KZ_XChgWord, kNo, 0, return done(KZ_XChgWord(0x1234))),
    KZ_ROW(KZ_XChgDWord, kNo, 0, return done(KZ_XChgDWord(0x12345678))),
    KZ_ROWS(StringPoint, kAsItWas, kAsItWas, 0, PointRecord p; fresh(p);
            return done(T::StringPoint(TX("1, 2"), &p, Ch(',')), p)),
    KZ_ROWS(StringRect, kAsItWas, kAsItWas, 0, RectRecord r; fresh(r);
            return done(T::StringRect(TX("1,2,3,4"), &r, Ch(',')), r)),
    KZ_ROWS(PointString, kNo, kNo, 0, Ch out[32]; const PointRecord p{1, 2};
            T::PointString(&p, out, Ch(',')); return done(0, out)),
    KZ_ROWS(RectString, kNo, kNo, 0, Ch out[64]; const RectRecord r{1, 2, 3, 4};
            T::RectString(&r, out, Ch(',')); return done(0, out)),
    KZ_ROW(KZ_QueryDays, kNo, 0, return done(KZ_QueryDays(2024, 2))),
    KZ_ROWS(QueryDayOfWeek, kNo, kNo, 0, Ch en[32]; Ch ja[32]; uint16_t dow;
            return done(T::QueryDayOfWeek(&d1, &dow, en, ja), dow)),
    KZ_ROW(KZ_AddSystemTime, kNo, 0, SYSTEMTIME t = system_time(2024, 1, 1);
           return done(KZ_AddSystemTime(&t, 1000), t)),
    KZ_ROW(KZ_SubSystemTime, kNo, 0, SYSTEMTIME t = system_time(2024, 1, 1);
           return done(KZ_SubSystemTime(&t, 1000), t)),
    KZ_ROWS(MonthToNumeric, kNo, kNo, 0, return done(T::MonthToNumeric(TX("Mar")))),
    KZ_ROWS(MonthToString, kNo, kNo, 0, Ch out[4]; return done(T::MonthToString(3, out, 4), out)),
    KZ_ROWS(DateString, kNo, kNo, 0, Ch out[20]; return done(T::DateString(&d1, out, Ch('/')))),
    KZ_ROWS(CurrentDateString, kNo, kNo, 0, Ch out[20];
            return done(T::CurrentDateString(out, Ch('/')))),
    KZ_ROWS(TimeString, kNo, kNo, 0, Ch out[20]; const TimeRecord t{1, 2, 3};
            return done(T::TimeString(&t, out))),
    KZ_ROWS(CurrentTimeString, kNo, kNo, 0, Ch out[20]; return done(T::CurrentTimeString(out))),
    KZ_ROWS(SystemTimeString, kNo, kNo, 0, Ch out[48]; const SYSTEMTIME t = system_time(2024, 1, 2);
            return done(T::SystemTimeString(&t, out, 1, Ch('/'), Ch(' ')))),
    KZ_ROWS(CurrentDateTimeString, kNo, kNo, 0, Ch out[48];
            return done(T::CurrentDateTimeString(out, 1, Ch('/'), Ch(' ')))),
    KZ_ROWS(FileTimeString, kNo, kNo, 0, Ch out[48];
            return done(T::FileTimeString(&moment, out, 1, Ch('/'), Ch(' ')))),
    KZ_ROWS(StringDate, kZeroed, kZeroed, 0, DateRecord r; fresh(r);
            return done(T::StringDate(TX("2024/1/2"), &r, Ch('/')), r)),
    KZ_ROWS(StringTime, kZeroed, kZeroed, 0, TimeRecord r; fresh(r);
            return done(T::StringTime(TX("1:2:3"), &r), r)),
    KZ_ROWS(StringDateTime, kZeroed, kZeroed, 0, DateTimeRecord r; fresh(r);
            return done(T::StringDateTime(TX("2024/1/2 1:2:3"), &r, Ch('/'), Ch(' ')), r)),
    KZ_ROWS(StringFileTime, kAsItWas, kAsItWas, 0, FILETIME r; fresh(r);
            return done(T::StringFileTime(TX("2024/1/2 1:2:3.4"), &r, Ch('/'), Ch(' ')), r)),
    KZ_ROW(KZ_CheckDate, kNo, 0, return done(KZ_CheckDate(&d1, &d2, &d1))),
    KZ_ROW(KZ_CheckCurrentDate, kNo, 0, return done(KZ_CheckCurrentDate(&d1, &d2))),
    KZ_ROW(KZ_CheckDateTime, kNo, 0, return done(KZ_CheckDateTime(&t1, &t2, &t1))),
    KZ_ROW(KZ_CheckCurrentDateTime, kNo, 0, return done(KZ_CheckCurrentDateTime(&t1, &t2))),
    KZ_ROWS(
        CheckStringDate, kNothing, kNothing, -1,
        return done(T::CheckStringDate(TX("2024-01-01"), TX("2024-12-31"), TX("2024-06-01"), 1))),
    KZ_ROWS(CheckStringCurrentDate, kNothing, kNothing, -1,
            return done(T::CheckStringCurrentDate(TX("2000-01-01"), TX("2999-12-31"), 1))),
    KZ_ROWS(CheckStringDateTime, kNothing, kNothing, -1,
            return done(T::CheckStringDateTime(TX("2024-01-01T00:00:00"), TX("2024-12-31T00:00:00"),
                                               TX("2024-06-01T00:00:00.5"), 1))),
    KZ_ROWS(CheckStringCurrentDateTime, kNothing, kNothing, -1,
            return done(T::CheckStringCurrentDateTime(TX("2000-01-01T00:00:00"),
                                                      TX("2999-12-31T00:00:00"), 1))),
    KZ_ROWS(GetDriveNumber, kNo, kNo, 0, return done(T::GetDriveNumber(TX("c:\\a")))),
    KZ_ROWS(GetDriveName, kEmptied, kEmptied, -1, Ch out[8]; fresh(out);
            return done(T::GetDriveName(TX("c:\\a"), out, 8), out)),
    KZ_ROWS(GetDirectoryName, kNo, kNo, 0, Ch out[8];
            return done(T::GetDirectoryName(TX("c:\\a"), out, 8), out)),
    KZ_ROWS(GetFileName, kNo, kNo, 0, Ch out[8];
            return done(T::GetFileName(TX("c:\\a"), out, 8), out)),
    KZ_ROWS(GetFileExt, kNo, kNo, 0, Ch out[8]; return done(T::GetFileExt(TX("a.b"), out, 8), out)),
    KZ_ROWS(GetNotExtPath, kNo, kNo, 0, Ch out[8];
            return done(T::GetNotExtPath(TX("a.b"), out, 8), out)),
    KZ_ROWS(SplitPath, kNo, kNo, 0, Ch a[8]; Ch b[8]; Ch c[8]; Ch e[8];
            T::SplitPath(TX("c:\\d\\n.e"), a, b, c, e); return done(0, a, b, c, e)),
    KZ_ROWS(CheckFile, kNo, kNo, 0, return done(T::CheckFile(dir.at<Ch>("n.txt").c_str()))),
    KZ_ROWS(CheckDirectory, kNo, kNo, 0, return done(T::CheckDirectory(dir.at<Ch>().c_str()))),
    KZ_ROWS(CreateDirectory, kNo, kNo, 0, return done(T::CreateDirectory(dir.at<Ch>("x").c_str()))),
    KZ_ROWS(GetFileSize, kNo, kNo, 0, std::uint64_t size;
            return done(T::GetFileSize(dir.at<Ch>("n.txt").c_str(), &size))),
    KZ_ROWS(GetFileTime, kNo, kNo, 0, FILETIME a, b, c;
            return done(T::GetFileTime(dir.at<Ch>("n.txt").c_str(), &a, &b, &c))),
    KZ_ROWS(TextFileOpen, kNothing, kNothing, 0,
            TextFileHandle* f = T::TextFileOpen(dir.at<Ch>("n.txt").c_str(), TX("r"), 0);
            KZ_TextFileClose(f); return done(f != nullptr)),
    KZ_ROW(KZ_TextFileClose, kNo, 0, KZ_TextFileClose(nullptr); return done(0)),
    KZ_ROWS(TextFileGets, kAsItWas, kAsItWas, 0, Ch out[8]; fresh(out);
            return done(T::TextFileGets(sizeof(Ch) == 1 ? wide_in : narrow_in, out, 8), out)),
    KZ_ROWS(TextFilePuts, kNothing, kNothing, 0,
            return done(T::TextFilePuts(sizeof(Ch) == 1 ? wide_out : narrow_out, TX("abc")))),
    KZ_ROW(KZ_TextFileEof, kNo, 0, return done(KZ_TextFileEof(narrow_in))),
    KZ_ROW(KZ_TextFileError, kNo, 0, return done(KZ_TextFileError(narrow_in))),
    KZ_ROW(KZ_TextFileSeek, kNo, 0, return done(KZ_TextFileSeek(narrow_in, 0, 1))),
    KZ_ROW(KZ_TextFileHandle, kNo, 0, return done(KZ_TextFileHandle(narrow_in) != nullptr)),
    KZ_ROWS(JournalOut, kNothing, kNothing, 0,
            return done(T::JournalOut(TX(sizeof(Ch) == 1 ? "ja.log" : "jw.log"), TX("m"), 64,
                                      sizeof(Ch) == 1, Ch('/')))),
    KZ_ROWS(StatusCreateFile, kNothing, kNothing, 0,
            StatusFileHandle* s = T::StatusCreateFile(TX("t"), dir.at<Ch>().c_str());
            KZ_StatusEndFile(s, 0); return done(s != nullptr)),
    KZ_ROW(KZ_StatusEndFile, kNo, 0, return done(KZ_StatusEndFile(nullptr, 0))),
    KZ_ROWS(StatusSetString, kNo, kNothing, 0, return done(T::StatusSetString(status, TX("abc")))),
    KZ_ROW(KZ_StatusSetData, kNo, 0, return done(KZ_StatusSetData(status, "abc", 3))),
    KZ_ROWS(StatusGetString, kNo, kAsItWas, 0, Ch out[8]; fresh(out);
            return done(T::StatusGetString(status, out, 8), out)),
    KZ_ROW(KZ_StatusGetData, kNo, 0, char out[3];
           return done(KZ_StatusGetData(status, out, 3), out)),
    KZ_ROWS(StatusIsStringWait, kNothing, kNothing, 2,
            return done(T::StatusIsStringWait(status, TX("abc"), 0))),
    KZ_ROW(KZ_StatusIsDataWait, kNothing, 2, return done(KZ_StatusIsDataWait(status, "abc", 3, 0))),
    KZ_ROWS(CmdLineList, kNothing, kNothing, 0, StrList l{};
            return done(T::CmdLineList(TX("a \"b c\" d"), &l), Listed<Ch>{l})),
    KZ_ROWS(GetCmdLine, kNothing, kNothing, 0, StrList l{};
            return done(T::GetCmdLine(&l), Listed<Ch>{l})),
    KZ_ROWS(GetCommand, kEmptied, kEmptied, 0, Ch out[16]; fresh(out);
            return done(T::GetCommand(TX("d\\a.exe b"), out, 16), out)),
    KZ_ROWS(GetCommandDirectory, kEmptied, kEmptied, 0, Ch out[16]; fresh(out);
            return done(T::GetCommandDirectory(TX("d\\a.exe b"), out, 16), out)),
    KZ_ROWS(GetCmdLineParam, kNothing, kNothing, 0, StrList l{};
            return done(T::GetCmdLineParam(TX("a b c"), &l), Listed<Ch>{l})),
    KZ_ROWS(SplitArg, kNo, kNo, 0, Ch a[260]; Ch b[260]; T::SplitArg(TX("a b"), a, b);
            return done(0, a, b)),
    KZ_ROWS(GetComnSelectFiles, kNothing, kNothing, kMinusOneOrZero, StrList l{};
            return done(T::GetComnSelectFiles(TX(selection), 7, &l), Listed<Ch>{l})),
    KZ_ROWS(GetComnSelectFileCount, kNo, kNo, 0,
            return done(T::GetComnSelectFileCount(TX(selection)))),
  };

  std::set<std::string> named;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_TRUE(named.insert(row.name).second) << "two rows";
    alloc_faults::arm(LONG_MAX, false);
    const Outcome clean = row.call();
    const long made = alloc_faults::attempts();
    alloc_faults::disarm();
    if (row.left == kNoAllocation) {
      EXPECT_EQ(made, 0) << "allocates, but its row says it does not";
      continue;
    }
    EXPECT_GT(made, 0) << "its row reaches no allocation";
    for_each_allocation_failure([&] {
      const Outcome got = row.call();
      // A call that got by without the failed block must give what it gives
      // without failures.
      if (!(got == clean)) {
        EXPECT_TRUE(failed_as(row, got));
      }
    });
  }
  EXPECT_EQ(named, exported_names());

  KZ_TextFileClose(narrow_in);
  KZ_TextFileClose(wide_in);
  KZ_TextFileClose(narrow_out);
  KZ_TextFileClose(wide_out);
  KZ_StatusEndFile(status, 0);
}

}  // namespace
}  // namespace kz::test
