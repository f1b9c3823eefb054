// Every family from eight threads at once in one process: the code page's
// tables on their first use, the allocator, text files, the journal, and a
// status file that every thread holds through a record of its own. Under
// ThreadSanitizer (scripts/tsan) a data race in the library is a report.
#include <algorithm>
#include <atomic>
#include <filesystem>
#include <thread>

#include "files.h"

namespace kz::test {
namespace {

// One round of every family through the twins of Ch; false where a result
// differs from what one thread alone gets.
template <class Ch>
bool every_family(const TempDir& dir, const std::string& me, StatusFileHandle* shared) {
  using Api = Twin<Ch>;
  const auto field = in<Ch>("\x83\x5c\x95\x5c\x82\xa0" + me);  // a trail byte 0x5C in each
  const auto fields = field + Ch(',') + field;
  Ch out[64];
  StrList list{};
  bool ok = Api::StringSplit(fields.c_str(), Ch(','), &list, 0) == 1 && list.count == 2 &&
            field == static_cast<const Ch*>(list.strings[1]);
  Api::DeleteStrList(&list);
  ok &= Api::CoinageStringInt(1234567, out, 64) == 9 && Api::StringCoinageInt(out) == 1234567;
  DateTimeRecord when{};
  ok &= Api::CurrentDateTimeString(out, 0, Ch('/'), Ch(' ')) == 19 &&
        Api::StringDateTime(out, &when, Ch('/'), Ch(' ')) != 0 && when.year >= 2024;
  ok &= Api::GetFileName(in<Ch>("C:\\d\\" + me + ".txt").c_str(), out, 64) == 4 + int(me.size());
  const auto path = dir.at<Ch>(me + ".txt");
  const int32_t wide = sizeof(Ch) == 2;
  TextFileHandle* file = Api::TextFileOpen(path.c_str(), text<Ch>("w").c_str(), wide);
  ok &= file != nullptr && Api::TextFilePuts(file, fields.c_str()) == 1;
  KZ_TextFileClose(file);
  file = Api::TextFileOpen(path.c_str(), text<Ch>("r").c_str(), wide);
  ok &= file != nullptr && Api::TextFileGets(file, out, 64) == 1 && fields == out;
  KZ_TextFileClose(file);
  ok &= Api::JournalOut(in<Ch>(me + ".log").c_str(), fields.c_str(), 64, wide, Ch('/')) == 1;
  ok &= Api::StatusSetString(shared, field.c_str()) != 0 && Api::StatusGetString(shared, out, 64);
  ok &= Api::CmdLineList((text<Ch>("p \"a b\" ") + field).c_str(), &list) == 1 && list.count == 3;
  Api::DeleteStrList(&list);
  return ok;
}

TEST(StressThreads, EveryFamilyRunsOnEightThreadsAtOnce) {
  TempDir dir;
  ScopedVariable root("KZ_JOURNAL_PATH", dir.path().c_str());
  const auto cwd = std::filesystem::current_path();
  std::atomic<int> failed{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t)
    threads.emplace_back([&dir, &failed, t] {
      const std::string me = std::to_string(t);
      StatusFileHandle* shared = KZ_StatusCreateFileA("shared", dir.path().c_str());
      for (int round = 0; round < 25; ++round)
        failed +=
            !(t % 2 ? every_family<wchar>(dir, me, shared) : every_family<char>(dir, me, shared));
      failed += KZ_StatusEndFile(shared, 0) == 0;
    });
  for (auto& thread : threads) thread.join();
  // Each journal call moves the process's current directory for a moment,
  // so calls on many threads may leave it in another call's directory.
  std::filesystem::current_path(cwd);
  EXPECT_EQ(failed, 0);
  for (int t = 0; t < 8; ++t) {  // every journal line is in its thread's file
    const std::string journal = read_bytes(dir.path(std::to_string(t) + ".log"));
    EXPECT_EQ(std::count(journal.begin(), journal.end(), '\n'), 25) << t;
  }
}

}  // namespace
}  // namespace kz::test
