// Files shared between processes: the test program runs again as a helper
// (main passes "--kz-helper"), which probes a file that this process holds,
// or writes a journal beside other helpers at the same time.
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <map>
#include <thread>

#include "files.h"
#include "platform/platform.h"
#include "twins.h"

namespace kz::test {

namespace {

void report(const char* path, const std::string& findings) {
  std::ofstream(native(path), std::ios::binary) << findings;
}

}  // namespace

// probe PATH RESULT: which of a reading open, a writing open, the size and
// the times succeed, as four digits.
// journal NAME COUNT TAG WIDE RESULT: COUNT journal lines "TAG line N";
// the number written.
int helper_main(int argc, char** argv) {
  if (argc == 3 && std::strcmp(argv[0], "probe") == 0) {
    std::string findings;
    for (const char* mode : {"r", "a"}) {
      TextFileHandle* file = KZ_TextFileOpenA(argv[1], mode, 0);
      findings += file != nullptr ? '1' : '0';
      KZ_TextFileClose(file);
    }
    FILETIME written;
    findings += KZ_GetFileSizeA(argv[1], nullptr) != 0xFFFFFFFF ? '1' : '0';
    findings += KZ_GetFileTimeA(argv[1], nullptr, nullptr, &written) != 0 ? '1' : '0';
    report(argv[2], findings);
    return 0;
  }
  if (argc == 6 && std::strcmp(argv[0], "journal") == 0) {
    const int count = std::atoi(argv[2]);
    int written = 0;
    for (int i = 0; i < count; ++i) {
      const std::string message = std::string(argv[3]) + " line " + std::to_string(i);
      written += KZ_JournalOutA(argv[1], message.c_str(), 128, std::atoi(argv[4]), '/');
    }
    report(argv[5], std::to_string(written));
    return 0;
  }
  return 2;
}

}  // namespace kz::test

namespace {

using namespace kz::test;

std::string probe(const TempDir& dir, const std::string& path) {
  const std::string result = dir.path("probe.result");
  run_helper({"probe", path, result});
  return read_bytes(result);
}

TEST(CrossProcess, AFileHeldForWritingIsClosedToOtherProcesses) {
  TempDir dir;
  const std::string path = dir.path("held.txt");
  write_bytes(path, "x\r\n");
  for (int32_t wide : {0, 1}) {
    TextFileHandle* held = KZ_TextFileOpenA(path.c_str(), "a", wide);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(probe(dir, path), "0000") << wide;
    KZ_TextFileClose(held);
  }
  // A reader shares with readers only; size and times open without sharing.
  TextFileHandle* reader =
      KZ_TextFileOpenW(dir.at<wchar>("held.txt").c_str(), text<wchar>("r").c_str(), 0);
  ASSERT_NE(reader, nullptr);
  EXPECT_EQ(probe(dir, path), "1000");
  KZ_TextFileClose(reader);
  EXPECT_EQ(probe(dir, path), "1111");
}

// Several processes write one journal at once: a line is lost only when its
// call gave 0, and no line is torn or mixed with another.
TEST(CrossProcess, ConcurrentJournalWritersLoseOnlyTheLinesTheyWereToldOf) {
  TempDir dir;
  const std::string previous_root = [] {
    char value[512] = {};
    kz::os::GetEnvironmentVariableA("KZ_JOURNAL_PATH", value, sizeof value);
    return std::string(value);
  }();
  kz::os::SetEnvironmentVariableA("KZ_JOURNAL_PATH", dir.path().c_str());
  constexpr int kWriters = 4;
  constexpr int kLines = 40;
  for (int32_t wide : {0, 1}) {
    const std::string name = wide == 1 ? "shared\\wide.log" : "shared\\narrow.log";
    std::vector<std::thread> writers;
    for (int w = 0; w < kWriters; ++w) {
      writers.emplace_back([&, w] {
        run_helper({"journal", name, std::to_string(kLines), "w" + std::to_string(w),
                    std::to_string(wide), dir.path("w" + std::to_string(w))});
      });
    }
    for (auto& writer : writers) writer.join();

    std::map<std::string, int> reported, found;
    for (int w = 0; w < kWriters; ++w)
      reported["w" + std::to_string(w)] =
          std::atoi(read_bytes(dir.path("w" + std::to_string(w))).c_str());
    TextFileHandle* file = KZ_TextFileOpenA(dir.path(name).c_str(), "r", wide);
    ASSERT_NE(file, nullptr);
    char line[128];
    int32_t whole;
    std::map<std::string, int> next;
    while ((whole = KZ_TextFileGetsA(file, line, 128)) == 1) {
      const std::string text = line;
      const auto mark = text.find(" > ");
      ASSERT_EQ(mark, 19u) << text;
      const std::string message = text.substr(mark + 3);
      const auto space = message.find(" line ");
      ASSERT_NE(space, std::string::npos) << text;
      const std::string tag = message.substr(0, space);
      // Each writer's lines come in its own order.
      EXPECT_GE(std::atoi(message.c_str() + space + 6), next[tag]) << text;
      next[tag] = std::atoi(message.c_str() + space + 6) + 1;
      ++found[tag];
    }
    EXPECT_EQ(KZ_TextFileEof(file), 1);
    KZ_TextFileClose(file);
    int total = 0;
    for (const auto& [tag, count] : reported) {
      EXPECT_EQ(found[tag], count) << tag;
      total += count;
    }
    EXPECT_GT(total, 0);
  }
  kz::os::SetEnvironmentVariableA("KZ_JOURNAL_PATH",
                                  previous_root.empty() ? nullptr : previous_root.c_str());
}

}  // namespace
