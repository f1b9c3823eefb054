// Files and status records shared between processes: the test program runs
// again as the helpers registered here. Eight processes at once on one
// journal, with one of them killed in the middle (the others go on, nothing
// is torn, and the killed process's hold on the file goes with it), and on a
// ring of status files. The short forms run in every test run;
// KZ_STRESS_LONG=1 runs the long forms (1,000 journal lines per process,
// 10,000 hand-offs) and the figures are printed.
#include <algorithm>
#include <cstdio>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "platform/platform.h"
#include "status/status_test_support.h"

namespace kz::test {
namespace {

constexpr int kProcesses = 8;
constexpr uint32_t kTimeoutMs = 200;

// status-hold DIR NAME MARK: sets "held", keeps the file 1.5 s, writes MARK
// and ends its record.
int hold_helper(int, char** argv) {
  StatusFileHandle* status = KZ_StatusCreateFileA(argv[2], argv[1]);
  if (status == nullptr || !KZ_StatusSetStringA(status, "held")) return 3;
  kz::os::Sleep(1500);
  write_bytes(argv[3], "");
  return KZ_StatusEndFile(status, 0) != 0 ? 0 : 4;
}

// stress-journal FILE INDEX LINES WIDE REPORT: appends LINES journal lines
// and notes in REPORT the number of each line whose call gave 1, as it goes.
int journal_helper(int, char** argv) {
  std::ofstream report(native(argv[5]), std::ios::binary);
  for (int k = 0; k < std::atoi(argv[3]); ++k) {
    const std::string message = "p" + std::string(argv[2]) + " " + std::to_string(k) + " ";
    if (KZ_JournalOutA(argv[1], (message + std::string(40, 'x')).c_str(), 128, std::atoi(argv[4]),
                       '/') == 1)
      report << k << '\n' << std::flush;
  }
  return 0;
}

// status-ring DIR INDEX HANDOFFS REPORT: a member of a token ring receives
// every hand-off k from INDEX on in steps of kProcesses in its file
// ring-(k % kProcesses) and passes k + 1 on in the next; reports "received
// timeouts".
int ring_helper(int, char** argv) {
  const int index = std::atoi(argv[2]), handoffs = std::atoi(argv[3]);
  const auto file = [&](int i) { return "ring-" + std::to_string(i % kProcesses); };
  HeldStatus mine(KZ_StatusCreateFileA(file(index).c_str(), argv[1]));
  HeldStatus theirs(KZ_StatusCreateFileA(file(index + 1).c_str(), argv[1]));
  if (mine == nullptr || theirs == nullptr) return 3;
  int received = 0, timeouts = 0;
  for (int k = index; k < handoffs; k += kProcesses, ++received) {
    const std::string expected = std::to_string(k);
    // A write in the same tick as the wait's reference time shows only at
    // the timeout; the value is then read to tell a late hand-off from a
    // lost one. A minute without it is a lost hand-off.
    for (int waits = 0;; ++waits) {
      const int32_t result = KZ_StatusIsStringWaitA(mine.get(), expected.c_str(), kTimeoutMs);
      if (result == 0) break;
      char value[32] = {};
      KZ_StatusGetStringA(mine.get(), value, sizeof value);
      timeouts += result == 1;
      if (result == 1 && expected == value) break;
      if (result == 2 || waits * kTimeoutMs > 60000) return 5;
    }
    if (k + 1 < handoffs && !KZ_StatusSetStringA(theirs.get(), std::to_string(k + 1).c_str()))
      return 5;
  }
  write_bytes(argv[4], std::to_string(received) + " " + std::to_string(timeouts));
  return 0;
}

const RegisterHelper kHelpers[] = {
    {"status-hold", hold_helper}, {"stress-journal", journal_helper}, {"status-ring", ring_helper}};

// Waits a minute at most until ready() holds.
template <class Ready>
bool await(Ready ready) {
  for (int tries = 0; tries < 6000 && !ready(); ++tries) kz::os::Sleep(10);
  return ready();
}

// Starts eight helpers, start(i) starting the i-th.
template <class Start>
std::vector<std::intptr_t> start_all(Start start) {
  std::vector<std::intptr_t> children;
  for (int i = 0; i < kProcesses; ++i) children.push_back(start(i));
  for (auto child : children) EXPECT_NE(child, -1);
  return children;
}

// The helper writes its mark last before it closes.
TEST(StatusCrossProcess, AnEndThatWaitsReturnsOnlyAfterTheOtherProcessClosed) {
  TempDir dir;
  StatusFileHandle* status = KZ_StatusCreateFileA("held", dir.path().c_str());
  ASSERT_NE(status, nullptr);
  const auto helper =
      start_this_program({"--kz-helper", "status-hold", dir.path(), "held", dir.path("closing")});
  ASSERT_EQ(KZ_StatusIsStringWaitA(status, "held", 30000), 0);
  EXPECT_NE(KZ_StatusEndFile(status, 1), 0);
  EXPECT_TRUE(std::filesystem::exists(native(dir.path("closing"))));
  EXPECT_FALSE(std::filesystem::exists(native(dir.path("held"))));
  EXPECT_EQ(wait_for(helper), 0);
}

// In both encodings, into a folder that the writers' race makes: every line
// is whole and comes once, in its writer's order; every line reported is
// there, and from a writer that was not killed only those.
TEST(StressProcesses, EightJournalWritersKeepEveryReportedLineWholeThroughAKill) {
  const int lines = std::getenv("KZ_STRESS_LONG") ? 1000 : 60, killed = kProcesses - 1;
  TempDir dir;
  ScopedVariable root("KZ_JOURNAL_PATH", dir.path().c_str());
  for (const int wide : {0, 1}) {
    const std::string log = "log" + std::to_string(wide) + "\\stress.log";
    const auto report = [&](int i) { return dir.path(std::to_string(wide * 10 + i)); };
    const auto start = std::chrono::steady_clock::now();
    auto writers = start_all([&](int i) {
      // The one to be killed would write on long after the others.
      return start_this_program({"--kz-helper", "stress-journal", log, std::to_string(i),
                                 std::to_string(i == killed ? 1000 * lines : lines),
                                 std::to_string(wide), report(i)});
    });
    // A minute at most until the one to be killed has written a quarter.
    const auto quarter = [&] {
      const std::string numbers = read_bytes(report(killed));
      return std::count(numbers.begin(), numbers.end(), '\n') >= lines / 4;
    };
    EXPECT_TRUE(await(quarter));
    kill_program(writers[killed]);
    EXPECT_EQ(wait_for(writers[killed]), -1);
    for (int i = 0; i < killed; ++i) EXPECT_EQ(wait_for(writers[i]), 0) << i;
    const std::string bytes = read_bytes(dir.path(log));
    EXPECT_EQ(bytes.rfind('\n'), bytes.size() - 1 - wide);  // no torn last line
    std::vector<std::set<int>> seen(kProcesses);            // the line numbers of each writer
    TextFileHandle* file = KZ_TextFileOpenA(dir.path(log).c_str(), "r", wide);
    const std::regex whole(R"(\d{4}/\d\d/\d\d \d\d:\d\d:\d\d > p(\d) (\d+) x{40})");
    char line[256];
    std::size_t in_file = 0;
    for (std::cmatch m; KZ_TextFileGetsA(file, line, 256) == 1;) {
      ASSERT_TRUE(std::regex_match(line, m, whole)) << line;
      const int i = std::stoi(m[1]), k = std::stoi(m[2]);
      EXPECT_TRUE(seen[i].empty() || k > *seen[i].rbegin()) << line;
      seen[i].insert(k), ++in_file;
    }
    KZ_TextFileClose(file);
    int reported = 0;
    for (int i = 0; i < kProcesses; ++i) {
      std::istringstream numbers(read_bytes(report(i)));
      int mine = 0;
      for (int k; numbers >> k; ++mine) EXPECT_EQ(seen[i].count(k), 1u) << i << " " << k;
      EXPECT_TRUE(i == killed || seen[i].size() == std::size_t(mine)) << i << ": " << mine;
      reported += mine;
    }
    // The killed writer's hold on the file went with it.
    EXPECT_EQ(KZ_JournalOutA(log.c_str(), "after", 64, wide, '/'), 1);
    std::printf(
        "[ stress   ] %d journal writers (wide %d) of %d lines, 1 killed after %d: %d given 1, "
        "%zu in the file, %lld ms\n",
        killed, wide, lines, lines / 4, reported, in_file, elapsed_ms(start));
  }
}

// Every member waits for each of its hand-offs in its own file and passes
// the next on. One member is killed half-way, and one started at the first
// hand-off it had not passed on takes its place; when all have ended, the
// last end removes every file.
TEST(StressProcesses, ATokenRingGoesOnWhenAMemberIsKilledAndLeavesNoFile) {
  const int handoffs = std::getenv("KZ_STRESS_LONG") ? 10000 : 400, killed = 3;
  TempDir dir, reports;
  const auto member = [&](int first) {
    return start_this_program({"--kz-helper", "status-ring", dir.path(), std::to_string(first),
                               std::to_string(handoffs),
                               reports.path(std::to_string(first % kProcesses))});
  };
  HeldStatus first(KZ_StatusCreateFileA("ring-0", dir.path().c_str()));
  HeldStatus held(KZ_StatusCreateFileA("ring-3", dir.path().c_str()));
  HeldStatus passed(KZ_StatusCreateFileA("ring-4", dir.path().c_str()));
  ASSERT_NE(KZ_StatusSetStringA(first.get(), "0"), 0);
  const auto start = std::chrono::steady_clock::now();
  auto members = start_all(member);
  const auto value = [](const HeldStatus& status) {
    char text[32] = {};
    KZ_StatusGetStringA(status.get(), text, sizeof text);
    return std::atoi(text);  // 0 for an empty file
  };
  EXPECT_TRUE(await([&] { return value(passed) >= handoffs / 2; }));
  kill_program(members[killed]);
  EXPECT_EQ(wait_for(members[killed]), -1);
  // The replacement starts behind the last hand-off passed on, or at the
  // one held when the kill came between the cut of the value and its write.
  const int resume = value(passed) != 0 ? value(passed) + kProcesses - 1 : value(held);
  members[killed] = member(resume);
  int timeouts = 0;
  for (int i = 0; i < kProcesses; ++i) {
    EXPECT_EQ(wait_for(members[i]), 0) << i;
    int got = -1, waits = -1;
    std::istringstream(read_bytes(reports.path(std::to_string(i)))) >> got >> waits;
    const int from = i == killed ? resume : i;
    EXPECT_EQ(got, (handoffs - from + kProcesses - 1) / kProcesses) << i;
    timeouts += waits;
  }
  first.reset(), held.reset(), passed.reset();
  EXPECT_TRUE(std::filesystem::is_empty(native(dir.path())));
  std::printf(
      "[ stress   ] %d hand-offs among %d processes, member %d killed at %d and replaced: %d "
      "waits timed out after %u ms, %lld ms\n",
      handoffs, kProcesses, killed, resume, timeouts, kTimeoutMs, elapsed_ms(start));
}

}  // namespace
}  // namespace kz::test
