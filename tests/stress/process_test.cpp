// Eight processes at once on one journal file and on a ring of status
// files, with one of them killed in the middle: the others go on, nothing is
// torn, and the killed process's hold on the files goes with it. The short
// forms run in every test run; KZ_STRESS_LONG=1 runs the long forms (1,000
// journal lines per process, 10,000 hand-offs) and the figures are printed.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "files.h"
#include "platform/platform.h"

namespace kz::test {
namespace {

constexpr int kProcesses = 8;
constexpr uint32_t kTimeoutMs = 200;

bool long_form() { return std::getenv("KZ_STRESS_LONG") != nullptr; }

// Polls until ready() or a minute has passed.
template <class Ready>
bool await(Ready ready) {
  for (int tries = 0; tries < 6000 && !ready(); ++tries) kz::os::Sleep(10);
  return ready();
}

// stress-journal INDEX LINES REPORT: appends LINES journal lines and notes
// in REPORT the number of each line whose call gave 1, as it goes.
int journal_helper(int argc, char** argv) {
  if (argc != 4) return 2;
  std::ofstream report(native(argv[3]), std::ios::binary);
  for (int k = 0; k < std::atoi(argv[2]); ++k) {
    const std::string message =
        "p" + std::string(argv[1]) + " " + std::to_string(k) + " " + std::string(40, 'x');
    if (KZ_JournalOutA("stress.log", message.c_str(), 128, 0, '/') == 1)
      report << k << '\n' << std::flush;
  }
  return 0;
}

const RegisterHelper kJournal("stress-journal", journal_helper);

// Starts eight helpers, start(i) starting the i-th.
template <class Start>
std::vector<std::intptr_t> start_all(Start start) {
  std::vector<std::intptr_t> children;
  for (int i = 0; i < kProcesses; ++i) children.push_back(start(i));
  for (auto child : children) EXPECT_NE(child, -1);
  return children;
}

long long elapsed(std::chrono::steady_clock::time_point since) {
  const auto span = std::chrono::steady_clock::now() - since;
  return std::chrono::duration_cast<std::chrono::milliseconds>(span).count();
}

TEST(StressProcesses, EightJournalWritersKeepEveryReportedLineWholeThroughAKill) {
  const int lines = long_form() ? 1000 : 60, killed = kProcesses - 1;
  TempDir dir;
  ScopedVariable root("KZ_JOURNAL_PATH", dir.path().c_str());
  const auto report = [&](int i) { return dir.path("report-" + std::to_string(i)); };
  const auto start = std::chrono::steady_clock::now();
  auto writers = start_all([&](int i) {
    // The one to be killed would write on long after the others.
    const int count = i == killed ? 1000 * lines : lines;
    return start_this_program(
        {"--kz-helper", "stress-journal", std::to_string(i), std::to_string(count), report(i)});
  });
  EXPECT_TRUE(await([&] {
    const std::string numbers = read_bytes(report(killed));
    return std::count(numbers.begin(), numbers.end(), '\n') >= lines / 4;
  }));
  kill_program(writers[killed]);
  EXPECT_EQ(wait_for(writers[killed]), -1);
  for (int i = 0; i < killed; ++i) EXPECT_EQ(wait_for(writers[i]), 0) << i;
  // Every line is whole and comes once; every line reported is there.
  std::map<std::string, int> seen;
  std::istringstream journal(read_bytes(dir.path("stress.log")));
  const std::regex whole(R"(\d{4}/\d\d/\d\d \d\d:\d\d:\d\d > (p\d \d+) x{40}\r?)");
  std::smatch match;
  for (std::string line; std::getline(journal, line);)
    ++seen[std::regex_match(line, match, whole) ? match.str(1) : "torn: " + line];
  int reported = 0;
  for (int i = 0; i < kProcesses; ++i) {
    std::istringstream numbers(read_bytes(report(i)));
    for (int k; numbers >> k; ++reported)
      EXPECT_EQ(seen["p" + std::to_string(i) + " " + std::to_string(k)], 1);
  }
  for (const auto& [line, times] : seen) EXPECT_EQ(times, 1) << line;
  // The killed writer's hold on the file went with it.
  EXPECT_EQ(KZ_JournalOutA("stress.log", "after", 64, 0, '/'), 1);
  std::printf(
      "[ stress   ] %d journal writers of %d lines and 1 killed after %d: %d lines given 1, "
      "%zu in the file, %lld ms\n",
      kProcesses - 1, lines, lines / 4, reported, seen.size(), elapsed(start));
}

// The members are the status tests' ring helper ("status-ring DIR INDEX
// PROCESSES HANDOFFS TIMEOUT REPORT"), which starts at hand-off INDEX and
// uses the file ring-(INDEX % PROCESSES): started with the first hand-off
// that a killed member had not passed on, it takes the member's place.
TEST(StressProcesses, ATokenRingGoesOnWhenAMemberIsKilledAndLeavesNoFile) {
  const int handoffs = long_form() ? 10000 : 400, killed = 3;
  TempDir dir, reports;
  const auto member = [&](int first_handoff) {
    return start_this_program({"--kz-helper", "status-ring", dir.path(),
                               std::to_string(first_handoff), std::to_string(kProcesses),
                               std::to_string(handoffs), std::to_string(kTimeoutMs),
                               reports.path(std::to_string(first_handoff % kProcesses))});
  };
  StatusFileHandle* first = KZ_StatusCreateFileA("ring-0", dir.path().c_str());
  StatusFileHandle* held = KZ_StatusCreateFileA("ring-3", dir.path().c_str());
  StatusFileHandle* passed = KZ_StatusCreateFileA("ring-4", dir.path().c_str());
  ASSERT_NE(KZ_StatusSetStringA(first, "0"), 0);
  const auto start = std::chrono::steady_clock::now();
  auto members = start_all(member);
  const auto value = [](StatusFileHandle* status) {
    char text[32] = {};
    KZ_StatusGetStringA(status, text, sizeof text);
    return std::atoi(text);  // 0 for an empty file
  };
  EXPECT_TRUE(await([&] { return value(passed) >= handoffs / 2; }));
  kill_program(members[killed]);
  EXPECT_EQ(wait_for(members[killed]), -1);
  // The replacement starts behind the last hand-off passed on, or at the
  // one held when the kill came between the cut of the value and its write.
  const int resume = value(passed) != 0 ? value(passed) + kProcesses - 1 : value(held);
  members[killed] = member(resume);
  int received = 0, timeouts = 0;
  for (int i = 0; i < kProcesses; ++i) {
    EXPECT_EQ(wait_for(members[i]), 0) << i;
    int got = -1, waits = -1;
    std::istringstream(read_bytes(reports.path(std::to_string(i)))) >> got >> waits;
    const int from = i == killed ? resume : i;
    EXPECT_EQ(got, (handoffs - from + kProcesses - 1) / kProcesses) << i;
    received += got;
    timeouts += waits;
  }
  for (StatusFileHandle* status : {first, held, passed}) KZ_StatusEndFile(status, 0);
  EXPECT_TRUE(std::filesystem::is_empty(native(dir.path())));
  std::printf(
      "[ stress   ] %d hand-offs among %d processes, member %d killed at %d and replaced, "
      "%d received by the others and the replacement, %d waits timed out after %u ms, "
      "%lld ms\n",
      handoffs, kProcesses, killed, resume, received, timeouts, kTimeoutMs, elapsed(start));
}

}  // namespace
}  // namespace kz::test
