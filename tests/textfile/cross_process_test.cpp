// Files shared between processes: the test program runs again as a helper
// that probes a file this process holds, or writes a journal beside other
// helpers at the same time.
#include <cstdlib>
#include <cstring>
#include <map>
#include <thread>

#include "files.h"

namespace {

using namespace kz::test;

// probe PATH REPORT: which of a reading open, a writing open, the size and
// the times succeed, as four digits.
int probe(int argc, char** argv) {
  if (argc != 3) return 2;
  std::string findings;
  for (const char* mode : {"r", "a"}) {
    TextFileHandle* file = KZ_TextFileOpenA(argv[1], mode, 0);
    findings += file != nullptr ? '1' : '0';
    KZ_TextFileClose(file);
  }
  FILETIME written;
  findings += KZ_GetFileSizeA(argv[1], nullptr) != 0xFFFFFFFF ? '1' : '0';
  findings += KZ_GetFileTimeA(argv[1], nullptr, nullptr, &written) != 0 ? '1' : '0';
  write_bytes(argv[2], findings);
  return 0;
}

// journal NAME COUNT TAG WIDE REPORT: COUNT journal lines "TAG line N";
// reports how many calls said they wrote.
int journal(int argc, char** argv) {
  if (argc != 6) return 2;
  int written = 0;
  for (int i = 0; i < std::atoi(argv[2]); ++i) {
    const std::string message = std::string(argv[3]) + " line " + std::to_string(i);
    written += KZ_JournalOutA(argv[1], message.c_str(), 128, std::atoi(argv[4]), '/');
  }
  write_bytes(argv[5], std::to_string(written));
  return 0;
}

const RegisterHelper kProbe("probe", probe);
const RegisterHelper kJournal("journal", journal);

// A writer, narrow or wide, shares with no process; a reader with readers,
// while size and times open without sharing.
TEST(CrossProcess, AFileHeldForWritingIsClosedToOtherProcesses) {
  TempDir dir;
  const std::string path = dir.path("held.txt"), result = dir.path("probe.result");
  write_bytes(path, "x\r\n");
  const std::tuple<const char*, int32_t, const char*> cases[] = {
      {"a", 0, "0000"}, {"a", 1, "0000"}, {"r", 0, "1000"}, {nullptr, 0, "1111"}};
  for (const auto& [mode, wide, findings] : cases) {
    TextFileHandle* held = mode ? KZ_TextFileOpenA(path.c_str(), mode, wide) : nullptr;
    EXPECT_EQ(helper_status({"probe", path, result}), 0);
    EXPECT_EQ(read_bytes(result), findings) << mode << wide;
    KZ_TextFileClose(held);
  }
}

// Several processes write one journal at once: a line is lost only when its
// call gave 0, and no line is torn or mixed with another.
TEST(CrossProcess, ConcurrentJournalWritersLoseOnlyTheLinesTheyWereToldOf) {
  TempDir dir;
  const ScopedVariable root("KZ_JOURNAL_PATH", dir.path().c_str());
  const std::string tags[] = {"w0", "w1", "w2", "w3"};
  for (int32_t wide : {0, 1}) {
    const std::string name = wide == 1 ? "shared\\wide.log" : "shared\\narrow.log";
    std::vector<std::thread> writers;
    for (const std::string& tag : tags)
      writers.emplace_back([&, tag] {
        EXPECT_EQ(helper_status({"journal", name, "40", tag, std::to_string(wide), dir.path(tag)}),
                  0);
      });
    for (auto& writer : writers) writer.join();
    std::map<std::string, int> found, next;
    TextFileHandle* file = KZ_TextFileOpenA(dir.path(name).c_str(), "r", wide);
    ASSERT_NE(file, nullptr);
    char line[128];
    while (KZ_TextFileGetsA(file, line, 128) == 1) {
      char tag[8];
      int number = -1;
      // A stamp of 19 characters, the mark, the message and nothing else.
      ASSERT_EQ(std::sscanf(line + 19, " > %7s line %d", tag, &number), 2) << line;
      ASSERT_EQ(std::strlen(line), 19 + 3 + std::strlen(tag) + 6 + std::to_string(number).size());
      EXPECT_GE(number, next[tag]) << line;  // each writer's lines in its own order
      next[tag] = number + 1;
      ++found[tag];
    }
    EXPECT_EQ(KZ_TextFileEof(file), 1);
    KZ_TextFileClose(file);
    int total = 0;
    for (const std::string& tag : tags) {
      EXPECT_EQ(found[tag], std::atoi(read_bytes(dir.path(tag)).c_str())) << tag;
      total += found[tag];
    }
    EXPECT_GT(total, 0);
  }
}

}  // namespace
