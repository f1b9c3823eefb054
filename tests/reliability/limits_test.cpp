// Every size argument and fixed limit with buffers that end where a
// protected page begins: a write or read one element too far stops the
// test. Sizes go around what the call needs (needed + 1, needed,
// needed - 1, 1, 0); fixed limits of 260 elements are met with texts of
// 259, 260, 261 and 32,767 elements.
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

template <class Ch>
using Other = std::conditional_t<sizeof(Ch) == 1, wchar, char>;

KZ_TWIN_SUITE(GuardedSizes);

TYPED_TEST(GuardedSizes, NoCallWritesOrReadsPastItsBuffers) {
  using Ch = TypeParam;
  using T = Twin<Ch>;
  TempDir dir;
  const ScopedVariable journal_root("KZ_JOURNAL_PATH", dir.path().c_str());
  const auto filled = [](const Ch* d, int32_t n) -> std::int64_t { return n > 0 && d[0] != 0; };
  StatusFileHandle* status = KZ_StatusCreateFileA("s", dir.path().c_str());
  KZ_StatusSetStringA(status, "abc");
  const std::vector<SizeRow<Ch>> rows = {
      {"code conversion", "", 4, 1, 5,
       [](Ch* d, int32_t n, const Ch*) -> std::int64_t {
         const Guarded<Other<Ch>> s(text<Other<Ch>>("abc"));
         if constexpr (sizeof(Ch) == 1)
           return KZ_UNICODE2SJIS(s.get(), d, n);
         else
           return KZ_SJIS2UNICODE(s.get(), d, n);
       }},
      {"StringCopyEx", "abc", 4, kFits, 0,
       [](Ch* d, int32_t n, const Ch* s) {
         return n > 0 ? T::StringCopyEx(d, s, Ch(','), n - 1, 0) : 0;
       }},
      {"StringCopyExAfter", "a,bc", 3, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringCopyExAfter(d, s, Ch(','), n, 0); }},
      {"StringTrimLeft", " abc ", 5, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringTrimLeft(d, s, n, Ch(' ')); }},
      {"StringTrimRight", " abc ", 5, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringTrimRight(d, s, n, Ch(' ')); }},
      {"StringTrim", " abc ", 5, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringTrim(d, s, n, Ch(' ')); }},
      {"StringZeroSuppress", "007", 2, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringZeroSuppress(d, s, n); }},
      {"StringLengthCopy", "abcd", 4, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringLengthCopy(s, d, 3, n); }},
      {"StringGetQuoted", "x[abc]", 4, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) {
         return T::StringGetQuoted(s, d, n, text<Ch>("[").c_str(), text<Ch>("]").c_str());
       }},
      {"SetDoublequote", "ab", 5, 0, 0,
       [&](Ch* d, int32_t n, const Ch* s) { return T::SetDoublequote(s, d, n), filled(d, n); }},
      {"DelDoublequote", "\"ab\"", 5, 0, 0,
       [&](Ch* d, int32_t n, const Ch* s) { return T::DelDoublequote(s, d, n), filled(d, n); }},
      {"StringPassword", "a", 5, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) { return T::StringPassword(7, s, d, n, 1); }},
      {"StringSetDelimiter", "1234", 6, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) {
         return T::StringSetDelimiter(s, d, n - 1, Ch(','), 3);
       }},
      {"CoinageStringInt", "", 6, -1, -1,
       [](Ch* d, int32_t n, const Ch*) { return T::CoinageStringInt(1234, d, n - 1); }},
      {"CoinageStringDWord", "", 6, -1, -1,
       [](Ch* d, int32_t n, const Ch*) { return T::CoinageStringDWord(1234u, d, n - 1); }},
      {"CoinageStringLongLong", "", 6, -1, -1,
       [](Ch* d, int32_t n, const Ch*) { return T::CoinageStringLongLong(1234ll, d, n - 1); }},
      {"CoinageStringULongLong", "", 6, -1, -1,
       [](Ch* d, int32_t n, const Ch*) { return T::CoinageStringULongLong(1234ull, d, n - 1); }},
      {"MonthToString", "", 4, 0, 0,
       [](Ch* d, int32_t n, const Ch*) { return T::MonthToString(3, d, n); }},
      {"GetDriveName", "c:\\d", 2, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetDriveName(s, d, n); }},
      {"GetDirectoryName", "c:\\d\\n", 7, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetDirectoryName(s, d, n); }},
      {"GetFileName", "c:\\d\\n.e", 4, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetFileName(s, d, n); }},
      {"GetFileExt", "d\\n.ext", 4, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetFileExt(s, d, n); }},
      {"GetNotExtPath", "d\\n.e", 4, -1, -1,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetNotExtPath(s, d, n); }},
      {"GetCommand", "d\\a.exe b", 10, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetCommand(s, d, n); }},
      {"GetCommandDirectory", "d\\a.exe b", 10, 0, 0,
       [](Ch* d, int32_t n, const Ch* s) { return T::GetCommandDirectory(s, d, n); }},
      {"StatusGetString", "", 4, 1, 0,
       [&](Ch* d, int32_t n, const Ch*) { return T::StatusGetString(status, d, n); }},
      {"JournalOut", "m", 24, 0, 0,
       [](Ch*, int32_t n, const Ch* s) {
         return T::JournalOut(text<Ch>("j").c_str(), s, n, 0, Ch('/'));
       }},
      {"HexString", "", 35, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) { return T::HexString(~0u, d, 32, 1); }},
      {"PointString", "", 25, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) {
         const PointRecord p{INT_MIN, INT_MIN};
         return T::PointString(&p, d, Ch(',')), 0;
       }},
      {"RectString", "", 51, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) {
         const RectRecord r{INT_MIN, INT_MIN, INT_MIN, INT_MIN};
         return T::RectString(&r, d, Ch(',')), 0;
       }},
      {"DateString", "", 18, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) {
         const DateRecord r{65535, 65535, 65535};
         return T::DateString(&r, d, Ch('/'));
       }},
      {"TimeString", "", 18, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) {
         const TimeRecord r{65535, 65535, 65535};
         return T::TimeString(&r, d);
       }},
      {"SystemTimeString", "", 42, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) {
         const SYSTEMTIME t = system_time(65535, 65535, 65535, 65535, 65535, 65535, 65535);
         return T::SystemTimeString(&t, d, 1, Ch('/'), Ch(' '));
       }},
      {"QueryDayOfWeek", "", 32, kWidest, 0,
       [](Ch* d, int32_t, const Ch*) {
         const DateRecord r{2024, 1, 3};
         Guarded<Ch> japanese(32);
         return T::QueryDayOfWeek(&r, nullptr, d, japanese.get());
       }},
  };
  for (const SizeRow<Ch>& row : rows) {
    SCOPED_TRACE(row.name);
    std::int64_t whole = 0;
    std::basic_string<Ch> whole_text;
    for (const int32_t size : {row.needed + 1, row.needed, row.needed - 1, 1, 0}) {
      if (row.below == kWidest && size < row.needed) break;
      const Guarded<Ch> source(text<Ch>(row.source)), dest(static_cast<std::size_t>(size));
      const std::int64_t got = row.call(dest.get(), size, source.get());
      if (size > row.needed) {
        whole = got;
        whole_text = dest.text();
      } else if (size == row.needed) {
        EXPECT_EQ(got, whole);
        EXPECT_TRUE(dest.text() == whole_text);
      } else {
        EXPECT_EQ(got, size == 0            ? row.at_zero
                       : row.below == kFits ? size - 1
                                            : row.below)
            << "size " << size;
      }
    }
  }
  KZ_StatusEndFile(status, 0);
}

template <class Ch>
struct LimitRow {
  const char* name;
  const char* head;     // the text is head, then "a" up to its length
  std::size_t extra;    // elements of the text that the limit does not count
  std::int64_t within;  // result for a text of up to 259 elements
  std::int64_t beyond;  // and for a longer one
  std::function<std::int64_t(const Ch* text)> call;
};

KZ_TWIN_SUITE(GuardedLimits);

TYPED_TEST(GuardedLimits, TextsBeyondTheFixedLimitFailWithoutTouchingAnythingOutside) {
  using Ch = TypeParam;
  using T = Twin<Ch>;
  constexpr bool narrow = sizeof(Ch) == 1;
  const auto list = [](int32_t made, StrList& l) {
    T::DeleteStrList(&l);
    return made;
  };
  const std::vector<LimitRow<Ch>> rows = {
      {"GetDriveNumber", "c:", 0, 3, -1, [](const Ch* s) { return T::GetDriveNumber(s); }},
      {"SplitPath", "c:", 2, 1, 0,
       [](const Ch* s) {
         const Guarded<Ch> drive(3), directory(260), name(260), extension(260);
         T::SplitPath(s, drive.get(), directory.get(), name.get(), extension.get());
         return name.get()[0] != 0;
       }},
      {"SplitArg", "", 0, 1, 0,
       [](const Ch* s) {
         const Guarded<Ch> command(260), arguments(260);
         T::SplitArg(s, command.get(), arguments.get());
         return command.get()[0] != 0;
       }},
      {"CmdLineList", "", 0, 1, narrow ? 0 : 1,
       [&](const Ch* s) {
         StrList l{};
         return list(T::CmdLineList(s, &l), l);
       }},
      {"GetCmdLineParam", "x ", 0, 1, narrow ? 0 : 1,
       [&](const Ch* s) {
         StrList l{};
         return list(T::GetCmdLineParam(s, &l), l);
       }},
      {"GetCommand", "", 0, 1, narrow ? 0 : 1,
       [](const Ch* s) {
         const auto size = static_cast<int32_t>(std::char_traits<Ch>::length(s) + 1);
         const Guarded<Ch> name(static_cast<std::size_t>(size));
         return T::GetCommand(s, name.get(), size);
       }},
  };
  for (const LimitRow<Ch>& row : rows) {
    SCOPED_TRACE(row.name);
    for (const std::size_t length : {259, 260, 261, 32767}) {
      std::string ascii = row.head;
      ascii.resize(length + row.extra, 'a');
      const Guarded<Ch> source(text<Ch>(ascii));
      EXPECT_EQ(row.call(source.get()), length < 260 ? row.within : row.beyond) << length;
    }
  }
}

}  // namespace
}  // namespace kz::test
