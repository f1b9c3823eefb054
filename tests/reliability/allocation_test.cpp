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
#include "platform/platform.h"

namespace kz::test {
namespace {

// A call's result and the bytes of its outputs (a list as its strings).
using Outcome = std::pair<std::int64_t, std::string>;

// What a failed call leaves in its outputs, by the export's contract.
enum Left { kNo, kKept, kEmpty, kZero, kBare };
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
T* fresh(T& output) {
  return static_cast<T*>(std::memset(&output, 0x7B, sizeof output));
}

template <class T>
std::string bytes_of(const T& output) {
  return std::string(reinterpret_cast<const char*>(&output), sizeof output);
}

// A list as its strings, each closed by '|', behind a '+' where it holds an
// array; the list is released.
template <class Ch>
struct Listed {
  StrList& list;
};
template <class Ch>
std::string bytes_of(const Listed<Ch>& listed) {
  const std::string mark = listed.list.strings != nullptr ? "+" : "";
  const std::basic_string<Ch> entries = take<Ch>(listed.list);
  return mark +
         std::string(reinterpret_cast<const char*>(entries.data()), entries.size() * sizeof(Ch));
}

template <class... T>
Outcome done(std::int64_t result, const T&... outputs) {
  return {result, (std::string() + ... + bytes_of(outputs))};
}

bool failed_as(const Row& row, const Outcome& got) {
  const auto& [result, bytes] = got;
  const std::size_t zeros = bytes.find_first_not_of('\0');
  const bool left = row.left == kBare   ? bytes.empty()
                    : row.left == kKept ? bytes.find_first_not_of('\x7B') == bytes.npos
                                        : zeros >= (row.left == kZero ? bytes.size() : row.unit);
  return left && (result == row.failure ||
                  (row.failure == kMinusOneOrZero && (result == 0 || result == -1)));
}

#define TX(ascii) text<Ch>(ascii).c_str()
// A row per export: ONE for an export without twin, TWO for a twin pair,
// A_ONLY and W_ONLY where one twin makes no allocation, NONE and NONE1
// where the table claims the call makes none. The arguments are the call
// and the outputs it leaves; a twin's call sees Ch, T = Twin<Ch>, an output
// o of 64 elements filled with the sentinel, and a list l (output: list).
// The names are made in TWINS, before a platform macro (CreateDirectory)
// can replace them.
// clang-format off
#define ONE(name, left, fails, ...) Row{#name, left, fails, 1, [&] { return done(__VA_ARGS__); }}
#define NONE1(name, ...) ONE(name, kNo, 0, ((void)(__VA_ARGS__), 0))
#define TWIN(name, Ch_, left, failure, ...) Row{name, left, failure, sizeof(Ch_), [&] {          \
    using Ch [[maybe_unused]] = Ch_; using T [[maybe_unused]] = Twin<Ch_>; Ch o[64]; StrList l{}; \
    [[maybe_unused]] const Listed<Ch> list{l}; return fresh(o), done(__VA_ARGS__); }}
#define TWINS(name, left_a, left_w, failure, ...) TWIN("KZ_" name "A", char, left_a, failure, \
    __VA_ARGS__), TWIN("KZ_" name "W", wchar, left_w, failure, __VA_ARGS__)
#define TWO(name, left, failure, ...) TWINS(#name, left, left, failure, __VA_ARGS__)
#define A_ONLY(name, left, failure, ...) TWINS(#name, left, kNo, failure, __VA_ARGS__)
#define W_ONLY(name, left, failure, ...) TWINS(#name, kNo, left, failure, __VA_ARGS__)
#define NONE(name, ...) TWINS(#name, kNo, kNo, 0, ((void)(__VA_ARGS__), 0))
// clang-format on

TEST(AllocationFailure, EveryExportFailsAsItsContractSays) {
  TempDir dir;
  const ScopedVariable journal_root("KZ_JOURNAL_PATH", dir.path().c_str());
  // Files the text-file rows read and write: each twin takes the route that
  // converts, so a narrow and a wide file of lines enough for every run.
  TextFileHandle *reads[2], *writes[2];
  for (const int wide : {0, 1}) {
    const std::string name = wide ? "w" : "n";
    TextFileHandle* file = KZ_TextFileOpenA(dir.path(name + ".txt").c_str(), "w", wide);
    for (int i = 0; i < 2000; ++i) KZ_TextFilePutsA(file, "abc");
    KZ_TextFileClose(file);
    reads[wide] = KZ_TextFileOpenA(dir.path(name + ".txt").c_str(), "r", wide);
    writes[wide] = KZ_TextFileOpenA(dir.path(name + "2.txt").c_str(), "a", wide);
  }
  StatusFileHandle* status = KZ_StatusCreateFileA("s", dir.path().c_str());
  ASSERT_TRUE(reads[0] && reads[1] && writes[0] && writes[1] && status);
  KZ_StatusSetStringA(status, "abc");
  const auto opened = [](TextFileHandle* file) { return KZ_TextFileClose(file), file != nullptr; };
  const auto created = [](StatusFileHandle* s) { return KZ_StatusEndFile(s, 0), s != nullptr; };
  // Inputs, and the outputs of the readers, filled with the sentinel by each call.
  DateRecord d1{2024, 1, 1}, d2{2024, 12, 31}, date;
  DateTimeRecord t1{2024, 1, 1, 0, 0, 0}, t2{2024, 12, 31, 0, 0, 0}, date_time;
  PointRecord point{1, 2}, xy;
  RectRecord rect{1, 2, 3, 4}, box;
  TimeRecord time{1, 2, 3}, hms;
  SYSTEMTIME clock = system_time(2024, 1, 2);
  FILETIME moment{0, 0x01DA0000};
  std::int32_t valid;
  std::uint64_t size = 0;
  const std::string selection("d\0a\0b\0", 7);
  // The narrow list goes through a wide buffer of 260 elements: this program's own command
  // line (a deep build folder, a long test filter) may not fit, and then nothing is allocated.
  const Left narrow_line = std::strlen(os::GetCommandLineA()) < 260 ? kBare : kNo;

  const std::vector<Row> rows = {
      NONE1(KZ_IsSJisMultiByteChar, KZ_IsSJisMultiByteChar("\x93\xFA")),
      NONE1(KZ_SJIS2UNICODE, KZ_SJIS2UNICODE("ab", nullptr, 0)),
      NONE1(KZ_UNICODE2SJIS, KZ_UNICODE2SJIS(text<wchar>("ab").c_str(), nullptr, 0)),
      NONE(DeleteStrList, (T::DeleteStrList(&l), 0)),
      NONE(StringCopyEx, T::StringCopyEx(o, TX("a,b"), Ch(','), 7, 1)),
      NONE(StringCopyExAfter, T::StringCopyExAfter(o, TX("a,b"), Ch(','), 7, 1)),
      NONE(GetCodeCount, T::GetCodeCount(TX("a,b"), Ch(','))),
      NONE(GetCodeLength, T::GetCodeLength(TX("a,b"), Ch(','))),
      TWO(StringSplit, kBare, 0, T::StringSplit(TX("a,b,c"), Ch(','), &l, 1), list),
      TWO(StringCSV, kBare, 0, T::StringCSV(TX("\"a\",\"b\""), &l, 1), list),
      NONE(StringTrimLeft, T::StringTrimLeft(o, TX(" a "), 8, Ch(' '))),
      NONE(StringTrimRight, T::StringTrimRight(o, TX(" a "), 8, Ch(' '))),
      NONE(StringTrim, T::StringTrim(o, TX(" a "), 8, Ch(' '))),
      A_ONLY(StringLengthCopy, kKept, 0, T::StringLengthCopy(TX("abc"), o, 2, 8), o),
      A_ONLY(StringGetQuoted, kEmpty, 0, T::StringGetQuoted(TX("x[a]"), o, 8, TX("["), TX("]")), o),
      NONE(StringZeroSuppress, T::StringZeroSuppress(o, TX("007"), 8)),
      TWO(SetDoublequote, kEmpty, 0, (T::SetDoublequote(TX("ab"), o, 8), 0), o),
      TWO(DelDoublequote, kEmpty, 0, (T::DelDoublequote(TX("\"a\""), o, 8), 0), o),
      A_ONLY(StringPassword, kKept, -1, T::StringPassword(7, TX("ab"), o, 16, 1), o),
      NONE(IsNumeric, T::IsNumeric(TX("12"))),
      NONE(StringSetDelimiter, T::StringSetDelimiter(TX("1234"), o, 7, Ch(','), 3)),
      TWO(StringCoinageInt, kBare, 0, T::StringCoinageInt(TX("1,2"))),
      TWO(StringCoinageDWord, kBare, 0, T::StringCoinageDWord(TX("1,2"))),
      TWO(StringCoinageLongLong, kBare, 0, T::StringCoinageLongLong(TX("1,2"))),
      TWO(StringCoinageULongLong, kBare, 0, T::StringCoinageULongLong(TX("1,2")) & 0xFF),
      TWO(CoinageStringInt, kKept, -1, T::CoinageStringInt(1234, o, 8), o),
      TWO(CoinageStringDWord, kKept, -1, T::CoinageStringDWord(12u, o, 8), o),
      TWO(CoinageStringLongLong, kKept, -1, T::CoinageStringLongLong(std::int64_t{12}, o, 8), o),
      TWO(CoinageStringULongLong, kKept, -1, T::CoinageStringULongLong(std::uint64_t{1}, o, 8), o),
      TWO(StringHex, kZero, 0, T::StringHex(TX("ffH"), fresh(valid)), valid),
      NONE(HexString, T::HexString(255u, o, 4, 1)),
      NONE1(KZ_XChgWord, KZ_XChgWord(0x1234)),
      NONE1(KZ_XChgDWord, KZ_XChgDWord(0x12345678)),
      TWO(StringPoint, kKept, 0, T::StringPoint(TX("1, 2"), fresh(xy), Ch(',')), xy),
      TWO(StringRect, kKept, 0, T::StringRect(TX("1,2,3,4"), fresh(box), Ch(',')), box),
      NONE(PointString, (T::PointString(&point, o, Ch(',')), 0)),
      NONE(RectString, (T::RectString(&rect, o, Ch(',')), 0)),
      NONE1(KZ_QueryDays, KZ_QueryDays(2024, 2)),
      NONE(QueryDayOfWeek, T::QueryDayOfWeek(&d1, nullptr, o, o + 32)),
      NONE1(KZ_AddSystemTime, KZ_AddSystemTime(&clock, 1000)),
      NONE1(KZ_SubSystemTime, KZ_SubSystemTime(&clock, 1000)),
      NONE(MonthToNumeric, T::MonthToNumeric(TX("Mar"))),
      NONE(MonthToString, T::MonthToString(3, o, 4)),
      NONE(DateString, T::DateString(&d1, o, Ch('/'))),
      NONE(CurrentDateString, T::CurrentDateString(o, Ch('/'))),
      NONE(TimeString, T::TimeString(&time, o)),
      NONE(CurrentTimeString, T::CurrentTimeString(o)),
      NONE(SystemTimeString, T::SystemTimeString(&clock, o, 1, Ch('/'), Ch(' '))),
      NONE(CurrentDateTimeString, T::CurrentDateTimeString(o, 1, Ch('/'), Ch(' '))),
      NONE(FileTimeString, T::FileTimeString(&moment, o, 1, Ch('/'), Ch(' '))),
      TWO(StringDate, kZero, 0, T::StringDate(TX("2024/1/2"), fresh(date), Ch('/')), date),
      TWO(StringTime, kZero, 0, T::StringTime(TX("1:2:3"), fresh(hms)), hms),
      TWO(StringDateTime, kZero, 0,
          T::StringDateTime(TX("2024/1/2 1:2:3"), fresh(date_time), Ch('/'), Ch(' ')), date_time),
      TWO(StringFileTime, kKept, 0,
          T::StringFileTime(TX("2024/1/2 1:2:3.4"), fresh(moment), Ch('/'), Ch(' ')), moment),
      NONE1(KZ_CheckDate, KZ_CheckDate(&d1, &d2, &d1)),
      NONE1(KZ_CheckCurrentDate, KZ_CheckCurrentDate(&d1, &d2)),
      NONE1(KZ_CheckDateTime, KZ_CheckDateTime(&t1, &t2, &t1)),
      NONE1(KZ_CheckCurrentDateTime, KZ_CheckCurrentDateTime(&t1, &t2)),
      TWO(CheckStringDate, kBare, -1,
          T::CheckStringDate(TX("2024-01-01"), TX("2025-01-01"), TX("2024-06-01"), 1)),
      TWO(CheckStringCurrentDate, kBare, -1,
          T::CheckStringCurrentDate(TX("2000-01-01"), TX("2999-12-31"), 1)),
      TWO(CheckStringDateTime, kBare, -1,
          T::CheckStringDateTime(TX("2024-01-01T00:00:00"), TX("2025-01-01T00:00:00"),
                                 TX("2024-06-01T00:00:00.5"), 1)),
      TWO(CheckStringCurrentDateTime, kBare, -1,
          T::CheckStringCurrentDateTime(TX("2000-01-01T00:00:00"), TX("2999-12-31T00:00:00"), 1)),
      NONE(GetDriveNumber, T::GetDriveNumber(TX("c:\\a"))),
      TWO(GetDriveName, kEmpty, -1, T::GetDriveName(TX("c:\\a"), o, 8), o),
      NONE(GetDirectoryName, T::GetDirectoryName(TX("c:\\a"), o, 8)),
      NONE(GetFileName, T::GetFileName(TX("c:\\a"), o, 8)),
      NONE(GetFileExt, T::GetFileExt(TX("a.b"), o, 8)),
      NONE(GetNotExtPath, T::GetNotExtPath(TX("a.b"), o, 8)),
      NONE(SplitPath, (T::SplitPath(TX("c:\\d\\n.e"), o, o + 16, o + 32, o + 48), 0)),
      NONE(CheckFile, T::CheckFile(dir.at<Ch>("n.txt").c_str())),
      NONE(CheckDirectory, T::CheckDirectory(dir.at<Ch>().c_str())),
      NONE(CreateDirectory, T::CreateDirectory(dir.at<Ch>("x").c_str())),
      NONE(GetFileSize, T::GetFileSize(dir.at<Ch>("n.txt").c_str(), &size)),
      NONE(GetFileTime, T::GetFileTime(dir.at<Ch>("n.txt").c_str(), &moment, nullptr, nullptr)),
      TWO(TextFileOpen, kBare, 0, opened(T::TextFileOpen(dir.at<Ch>("n.txt").c_str(), TX("r"), 0))),
      NONE1(KZ_TextFileClose, (KZ_TextFileClose(nullptr), 0)),
      TWO(TextFileGets, kKept, 0, T::TextFileGets(reads[sizeof(Ch) == 1], o, 8), o),
      TWO(TextFilePuts, kBare, 0, T::TextFilePuts(writes[sizeof(Ch) == 1], TX("a"))),
      NONE1(KZ_TextFileEof, KZ_TextFileEof(reads[0])),
      NONE1(KZ_TextFileError, KZ_TextFileError(reads[0])),
      NONE1(KZ_TextFileSeek, KZ_TextFileSeek(reads[0], 0, 1)),
      NONE1(KZ_TextFileHandle, KZ_TextFileHandle(reads[0]) != nullptr),
      TWO(JournalOut, kBare, 0,
          T::JournalOut(TX(sizeof(Ch) == 1 ? "a" : "w"), TX("m"), 64, sizeof(Ch) == 1, Ch('/'))),
      TWO(StatusCreateFile, kBare, 0, created(T::StatusCreateFile(TX("t"), dir.at<Ch>().c_str()))),
      NONE1(KZ_StatusEndFile, KZ_StatusEndFile(nullptr, 0)),
      W_ONLY(StatusSetString, kBare, 0, T::StatusSetString(status, TX("abc"))),
      NONE1(KZ_StatusSetData, KZ_StatusSetData(status, "abc", 3)),
      W_ONLY(StatusGetString, kKept, 0, T::StatusGetString(status, o, 8), o),
      NONE1(KZ_StatusGetData, KZ_StatusGetData(status, &size, 3)),
      TWO(StatusIsStringWait, kBare, 2, T::StatusIsStringWait(status, TX("abc"), 0)),
      ONE(KZ_StatusIsDataWait, kBare, 2, KZ_StatusIsDataWait(status, "abc", 3, 0)),
      TWO(CmdLineList, kBare, 0, T::CmdLineList(TX("a \"b c\" d"), &l), list),
      TWINS("GetCmdLine", narrow_line, kBare, 0, T::GetCmdLine(&l), list),
      TWO(GetCommand, kEmpty, 0, T::GetCommand(TX("d\\a.exe b"), o, 16), o),
      TWO(GetCommandDirectory, kEmpty, 0, T::GetCommandDirectory(TX("d\\a.exe b"), o, 16), o),
      TWO(GetCmdLineParam, kBare, 0, T::GetCmdLineParam(TX("a b c"), &l), list),
      NONE(SplitArg, (T::SplitArg(TX("a b"), o, o + 8), 0)),
      TWO(GetComnSelectFiles, kBare, kMinusOneOrZero, T::GetComnSelectFiles(TX(selection), 7, &l),
          list),
      NONE(GetComnSelectFileCount, T::GetComnSelectFileCount(TX(selection))),
  };

  std::set<std::string> named;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_TRUE(named.insert(row.name).second) << "two rows";
    alloc_faults::arm(LONG_MAX, false);
    const Outcome clean = row.call();
    const long made = alloc_faults::attempts();
    alloc_faults::disarm();
    EXPECT_EQ(made > 0, row.left != kNo) << made << " allocations";
    if (made == 0) continue;
    for_each_allocation_failure([&] {
      // A call that got by without the failed block gives what it gives
      // without failures.
      if (const Outcome got = row.call(); got != clean) {
        EXPECT_TRUE(failed_as(row, got)) << "result " << got.first << ", or outputs not as left";
      }
    });
  }
  // The rows name exactly the exports of the library's export list.
  std::ifstream map(KZ_EXPORT_MAP);
  const std::string exports(std::istreambuf_iterator<char>(map), {});
  const std::regex name("\n\\s*(KZ_\\w+);");
  EXPECT_EQ(named, std::set<std::string>(
                       std::sregex_token_iterator(exports.begin(), exports.end(), name, 1), {}));

  for (TextFileHandle* file : {reads[0], reads[1], writes[0], writes[1]}) KZ_TextFileClose(file);
  // An open that failed but kept its stream would still hold the file against a writer.
  EXPECT_TRUE(opened(KZ_TextFileOpenA(dir.path("n.txt").c_str(), "w", 0)));
  KZ_StatusEndFile(status, 0);
}

}  // namespace
}  // namespace kz::test
