// Every size argument and fixed limit with buffers that end where a
// protected page begins: a write or read one element too far stops the
// test. Sizes go around what the call needs (needed + 1, needed,
// needed - 1, 1, 0); a fixed limit (260 elements, and the short ones) is
// met with texts of limit - 1, limit, limit + 1 and 32,767 elements.
#include <climits>
#include <functional>

#include "files.h"
#include "reliability/guard.h"

namespace kz::test {
namespace {

constexpr std::int64_t kFits = INT64_MIN;        // below the need: size - 1 elements
constexpr std::int64_t kWidest = INT64_MIN + 1;  // no size argument: run at needed only

template <class Ch>
struct SizeRow {
  const char* name;
  const char* source;  // placed so that its terminator ends in front of the guard
  int32_t needed;      // the size the whole result needs
  std::int64_t below;  // result for a size from 1 to needed - 1
  std::int64_t at_zero;
  std::function<std::int64_t(Ch* dest, int32_t size, const Ch* source)> call;
};

inline int32_t convert(const wchar* s, char* d, int32_t n) { return KZ_UNICODE2SJIS(s, d, n); }
inline int32_t convert(const char* s, wchar* d, int32_t n) { return KZ_SJIS2UNICODE(s, d, n); }

#define TX(ascii) text<Ch>(ascii).c_str()
// clang-format off
#define SIZED(name, source, needed, below, at_zero, ...) SizeRow<Ch>{name, source, needed, below, \
    at_zero, [&]([[maybe_unused]] Ch* d, [[maybe_unused]] int32_t n,                             \
                 [[maybe_unused]] const Ch* s) -> std::int64_t { return __VA_ARGS__; }}
// clang-format on

template <class Ch>
struct LimitRow {
  const char* name;
  std::size_t limit;    // elements, terminator included
  std::string head;     // the text, with zeros put in at its "*" (the letter t at a "#")
  int32_t extra;        // elements of the text that the limit does not count
  std::int64_t within;  // result for a text of limit - 1 elements
  std::int64_t beyond;  // and for a longer one
  std::function<std::int64_t(const Ch* text)> call;
};

// clang-format off
#define LIMITED(name, limit, head, extra, within, beyond, ...) LimitRow<Ch>{name, limit, head, \
    extra, within, beyond, [&](const Ch* s) -> std::int64_t { return __VA_ARGS__; }}
// clang-format on

KZ_TWIN_SUITE(GuardedBuffers);

TYPED_TEST(GuardedBuffers, NoCallTouchesAnythingPastItsBuffersOrBeyondAFixedLimit) {
  using Ch = TypeParam;
  using T = Twin<Ch>;
  using Other = std::conditional_t<sizeof(Ch) == 1, wchar, char>;
  TempDir dir;
  const ScopedVariable journal_root("KZ_JOURNAL_PATH", dir.path().c_str());
  StatusFileHandle* status = KZ_StatusCreateFileA("s", dir.path().c_str());
  StatusFileHandle* data = KZ_StatusCreateFileA("d", dir.path().c_str());
  KZ_StatusSetStringA(status, "abc");
  write_bytes(dir.path("g.txt"), "abc\r\n");
  const auto first_line = [&](Ch* d, int32_t n) {
    TextFileHandle* file = KZ_TextFileOpenA(dir.path("g.txt").c_str(), "r", 0);
    const int32_t got = T::TextFileGets(file, d, n);
    return KZ_TextFileClose(file), got;
  };
  const auto filled = [](const Ch* d, int32_t n) -> std::int64_t { return n > 0 && d[0] != 0; };
  // The last n bytes in front of the guard, and a value of 4 of them.
  const auto tail = [](Ch* d, int32_t n) { return reinterpret_cast<char*>(d + n) - n; };
  KZ_StatusSetData(data, "{{{{", 4);
  const Guarded<Other> other(text<Other>("abc"));
  const Guarded<Ch> japanese(32);
  const PointRecord least_point{INT_MIN, INT_MIN};
  const RectRecord least_rect{INT_MIN, INT_MIN, INT_MIN, INT_MIN};
  const DateRecord widest_date{65535, 65535, 65535}, wednesday{2024, 1, 3};
  const TimeRecord widest_time{65535, 65535, 65535};
  const SYSTEMTIME widest_clock = system_time(65535, 65535, 65535, 65535, 65535, 65535, 65535);
  const std::vector<SizeRow<Ch>> sized = {
      SIZED("KZ_SJIS2UNICODE/KZ_UNICODE2SJIS", "", 4, 1, 5, convert(other.get(), d, n)),
      SIZED("StringCopyEx", "abc", 4, kFits, 0,
            n > 0 ? T::StringCopyEx(d, s, Ch(','), n - 1, 0) : 0),  // dst[0] is always written
      SIZED("StringCopyExAfter", "a,bc", 3, 0, 0, T::StringCopyExAfter(d, s, Ch(','), n, 0)),
      SIZED("StringTrimLeft", " abc ", 5, 0, 0, T::StringTrimLeft(d, s, n, Ch(' '))),
      SIZED("StringTrimRight", " abc ", 5, 0, 0, T::StringTrimRight(d, s, n, Ch(' '))),
      SIZED("StringTrim", " abc ", 5, 0, 0, T::StringTrim(d, s, n, Ch(' '))),
      SIZED("StringZeroSuppress", "007", 2, 0, 0, T::StringZeroSuppress(d, s, n)),
      SIZED("StringLengthCopy", "abcd", 4, 0, 0, T::StringLengthCopy(s, d, 3, n)),
      SIZED("StringGetQuoted", "x[abc]", 4, 0, 0, T::StringGetQuoted(s, d, n, TX("["), TX("]"))),
      SIZED("SetDoublequote", "ab", 5, 0, 0, (T::SetDoublequote(s, d, n), filled(d, n))),
      SIZED("DelDoublequote", "\"ab\"", 5, 0, 0, (T::DelDoublequote(s, d, n), filled(d, n))),
      SIZED("StringPassword", "a", 5, -1, -1, T::StringPassword(7, s, d, n, 1)),
      SIZED("StringSetDelimiter", "1234", 6, -1, -1,
            T::StringSetDelimiter(s, d, n - 1, Ch(','), 3)),
      SIZED("CoinageStringInt", "", 6, -1, -1, T::CoinageStringInt(1234, d, n - 1)),
      SIZED("CoinageStringDWord", "", 6, -1, -1, T::CoinageStringDWord(1234u, d, n - 1)),
      SIZED("CoinageStringLongLong", "", 6, -1, -1, T::CoinageStringLongLong(1234ll, d, n - 1)),
      SIZED("CoinageStringULongLong", "", 6, -1, -1, T::CoinageStringULongLong(1234ull, d, n - 1)),
      SIZED("MonthToString", "", 4, 0, 0, T::MonthToString(3, d, n)),
      SIZED("GetDriveName", "c:\\d", 2, -1, -1, T::GetDriveName(s, d, n)),
      SIZED("GetDirectoryName", "c:\\d\\n", 7, -1, -1, T::GetDirectoryName(s, d, n)),
      SIZED("GetFileName", "c:\\d\\n.e", 4, -1, -1, T::GetFileName(s, d, n)),
      SIZED("GetFileExt", "d\\n.ext", 4, -1, -1, T::GetFileExt(s, d, n)),
      SIZED("GetNotExtPath", "d\\n.e", 4, -1, -1, T::GetNotExtPath(s, d, n)),
      SIZED("TextFileGets", "", 5, 1, 0, first_line(d, n)),
      SIZED("JournalOut", "m", 24, 0, 0, T::JournalOut(TX("j"), s, n, 0, Ch('/'))),
      SIZED("StatusGetString", "", 4, 1, 0, T::StatusGetString(status, d, n)),
      SIZED("KZ_StatusGetData", "", 3, 1, 1, KZ_StatusGetData(status, tail(d, n), n)),
      // A wait for more bytes than the file's 4 does not match at once.
      SIZED("KZ_StatusIsDataWait", "", 5, 0, 0, KZ_StatusIsDataWait(data, tail(d, n), n, 0)),
      SIZED("KZ_StatusSetData", "", 4, 1, 1, KZ_StatusSetData(status, tail(d, n), n)),
      SIZED("GetCommand", "d\\a.exe b", 10, 0, 0, T::GetCommand(s, d, n)),
      SIZED("GetCommandDirectory", "d\\a.exe b", 10, 0, 0, T::GetCommandDirectory(s, d, n)),
      SIZED("HexString", "", 35, kWidest, 0, T::HexString(~0u, d, 32, 1)),
      SIZED("PointString", "", 25, kWidest, 0, (T::PointString(&least_point, d, Ch(',')), 0)),
      SIZED("RectString", "", 51, kWidest, 0, (T::RectString(&least_rect, d, Ch(',')), 0)),
      SIZED("DateString", "", 18, kWidest, 0, T::DateString(&widest_date, d, Ch('/'))),
      SIZED("TimeString", "", 18, kWidest, 0, T::TimeString(&widest_time, d)),
      SIZED("SystemTimeString", "", 42, kWidest, 0,
            T::SystemTimeString(&widest_clock, d, 1, Ch('/'), Ch(' '))),
      SIZED("QueryDayOfWeek", "", 32, kWidest, 0,
            T::QueryDayOfWeek(&wednesday, nullptr, d, japanese.get())),
  };
  for (const SizeRow<Ch>& row : sized) {
    SCOPED_TRACE(row.name);
    std::pair<std::int64_t, std::basic_string<Ch>> whole;  // result and text with room to spare
    for (const int32_t size : {row.needed + 1, row.needed, row.needed - 1, 1, 0}) {
      if (row.below == kWidest && size < row.needed) break;
      const Guarded<Ch> source(text<Ch>(row.source)), dest(static_cast<std::size_t>(size));
      const std::pair got{row.call(dest.get(), size, source.get()), dest.text()};
      if (size > row.needed)
        whole = got;
      else if (size == row.needed)
        EXPECT_EQ(got, whole);
      else
        EXPECT_EQ(got.first, size == 0 ? row.at_zero : row.below == kFits ? size - 1 : row.below);
    }
  }
  KZ_StatusEndFile(status, 0);
  KZ_StatusEndFile(data, 0);

  // Texts of limit - 1, limit, limit + 1 and 32,767 elements.
  constexpr bool narrow = sizeof(Ch) == 1;
  const std::string in_dir = dir.path() + "\\";
  // A file of 259 elements that the file rows find; the directory rows
  // make one of 259 with its trailing backslash.
  write_bytes(in_dir + "f" + std::string(258 - in_dir.size(), '0'), "abc");
  const Guarded<Ch> drive(3), directory(260), name(260), extension(260), command(260);
  StrList list{};
  DateTimeRecord date_time;
  FILETIME moment;
  const auto made = [&](int32_t result) { return T::DeleteStrList(&list), result; };
  const auto created = [](StatusFileHandle* s) { return KZ_StatusEndFile(s, 0), s != nullptr; };
  const auto opened = [](TextFileHandle* file) { return KZ_TextFileClose(file), file != nullptr; };
  const auto command_of = [](const Ch* s) {
    const auto size = std::char_traits<Ch>::length(s) + 1;
    const Guarded<Ch> out(size);
    return T::GetCommand(s, out.get(), static_cast<int32_t>(size));
  };
  // A variable holds at most 32,767 elements with its terminator.
  const auto under = [&](const char* variable, const Ch* value) {
    const std::size_t length = std::min<std::size_t>(std::char_traits<Ch>::length(value), 32766);
    return ScopedVariable(variable, std::string(length, 'r').c_str());
  };
  const std::vector<LimitRow<Ch>> limited = {
      LIMITED("GetDriveNumber", 260, "c:*", 0, 3, -1, T::GetDriveNumber(s)),
      LIMITED("SplitPath", 260, "c:*", 2, 1, 0,
              (T::SplitPath(s, drive.get(), directory.get(), name.get(), extension.get()),
               name.get()[0] != 0)),
      LIMITED("SplitArg", 260, "*", 0, 1, 0,
              (T::SplitArg(s, command.get(), name.get()), command.get()[0] != 0)),
      LIMITED("CmdLineList", 260, "*", 0, 1, !narrow, made(T::CmdLineList(s, &list))),
      LIMITED("GetCmdLineParam", 260, "x *", 0, 1, !narrow, made(T::GetCmdLineParam(s, &list))),
      LIMITED("GetCommand", 260, "*", 0, 1, !narrow, command_of(s)),
      LIMITED("JournalOut", 260, "*", -int32_t(in_dir.size()), 1, 0,
              T::JournalOut(s, TX("m"), 64, 0, Ch('/'))),
      LIMITED("JournalOut root", 260, "*", 0, 0, 0,
              (under("KZ_JOURNAL_PATH", s), T::JournalOut(TX("j"), TX("m"), 64, 0, Ch('/')))),
      LIMITED("StatusCreateFile", 260, "*", -int32_t(in_dir.size()), 1, 0,
              created(T::StatusCreateFile(s, dir.at<Ch>().c_str()))),
      LIMITED("StatusCreateFile dir", 260, "*", 0, 0, 0, created(T::StatusCreateFile(TX("t"), s))),
      LIMITED("StatusCreateFile Temp", 260, "*", 0, 0, 0,
              (under("Temp", s), created(T::StatusCreateFile(TX("t"), nullptr)))),
      LIMITED("TextFileOpen mode", 31, "r#", 0, 1, 0,
              opened(T::TextFileOpen(dir.at<Ch>("f").c_str(), s, 0))),
      LIMITED("CreateDirectory", 260, in_dir + "*\\", 0, 1, 0, T::CreateDirectory(s)),
      LIMITED("CheckDirectory", 260, in_dir + "*\\", 0, 1, 0, T::CheckDirectory(s)),
      LIMITED("CheckFile", 260, in_dir + "f*", 0, 1, 0, T::CheckFile(s)),
      LIMITED("GetFileSize", 260, in_dir + "f*", 0, 3, 0xFFFFFFFF, T::GetFileSize(s, nullptr)),
      LIMITED("GetFileTime", 260, in_dir + "f*", 0, 1, 0,
              T::GetFileTime(s, nullptr, nullptr, &moment) != 0),
      LIMITED("StringDateTime", 32, "2024/1/*2 1:2:3", 6, 1, 0,
              T::StringDateTime(s, &date_time, Ch('/'), Ch(' '))),
      LIMITED("CheckStringDate", 23, "2024-01-0*1", 0, 1, -1,
              T::CheckStringDate(s, TX("2025-01-01"), TX("2024-06-01"), 1)),
  };
  write_bytes(dir.path("f"), "");
  for (const LimitRow<Ch>& row : limited) {
    SCOPED_TRACE(row.name);
    for (const std::size_t length : {row.limit - 1, row.limit, row.limit + 1, std::size_t{32767}}) {
      std::string ascii = row.head;
      const std::size_t at = ascii.find_first_of("*#");
      const std::size_t fill = length + static_cast<std::size_t>(row.extra) - (ascii.size() - 1);
      ascii.replace(at, 1, std::string(fill, ascii[at] == '*' ? '0' : 't'));
      const Guarded<Ch> source(text<Ch>(ascii));
      EXPECT_EQ(row.call(source.get()), length < row.limit ? row.within : row.beyond) << length;
    }
  }
}

}  // namespace
}  // namespace kz::test
