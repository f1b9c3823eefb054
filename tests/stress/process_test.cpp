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

// Member index of a ring: receives every hand-off k from `from` on with
// k % kProcesses == index in ring-index, and passes k + 1 to the next member.
// A set in the same tick as the wait's start shows only at the timeout, so
// a timed-out wait reads the value before it counts as late.
std::pair<int, int> ring_member(const char* dir, int index, int handoffs, int from) {
  const auto file = [](int i) { return "ring-" + std::to_string(i % kProcesses); };
  StatusFileHandle* mine = KZ_StatusCreateFileA(file(index).c_str(), dir);
  StatusFileHandle* next = KZ_StatusCreateFileA(file(index + 1).c_str(), dir);
  int received = 0, timeouts = 0;
  for (int k = from; k < handoffs; k += kProcesses) {
    const std::string expected = std::to_string(k);
    for (int waits = 0;; ++waits) {
      const int32_t result = KZ_StatusIsStringWaitA(mine, expected.c_str(), kTimeoutMs);
      char value[32] = {};
      KZ_StatusGetStringA(mine, value, sizeof value);
      timeouts += result == 1;
      if (result == 0 || expected == value) break;
      if (waits * kTimeoutMs > 60000) return {received, -1};
    }
    ++received;
    if (k + 1 < handoffs) KZ_StatusSetStringA(next, std::to_string(k + 1).c_str());
  }
  KZ_StatusEndFile(next, 0);
  KZ_StatusEndFile(mine, 0);
  return {received, timeouts};
}

// stress-ring DIR INDEX HANDOFFS REPORT: a ring member that reports
// "received timeouts".
int ring_helper(int argc, char** argv) {
  if (argc != 5) return 2;
  const int index = std::atoi(argv[2]);
  const auto [received, timeouts] = ring_member(argv[1], index, std::atoi(argv[3]), index);
  std::ofstream(native(argv[4]), std::ios::binary) << received << ' ' << timeouts;
  return timeouts < 0 ? 5 : 0;
}

const RegisterHelper kJournal("stress-journal", journal_helper);
const RegisterHelper kRing("stress-ring", ring_helper);

// Starts the helpers, arguments(i) giving the i-th one's.
template <class Arguments>
std::vector<std::intptr_t> start_all(Arguments arguments) {
  std::vector<std::intptr_t> children;
  for (int i = 0; i < kProcesses; ++i) children.push_back(start_this_program(arguments(i)));
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
  auto writers = start_all([&](int i) -> std::vector<std::string> {
    // The one to be killed would write on long after the others.
    const int count = i == killed ? 1000 * lines : lines;
    return {"--kz-helper", "stress-journal", std::to_string(i), std::to_string(count), report(i)};
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

TEST(StressProcesses, ATokenRingGoesOnWhenAMemberIsKilledAndLeavesNoFile) {
  const int handoffs = long_form() ? 10000 : 400, killed = 3;
  TempDir dir, reports;
  const std::string path = dir.path();
  const char* directory = path.c_str();
  StatusFileHandle* first = KZ_StatusCreateFileA("ring-0", directory);
  StatusFileHandle* passed = KZ_StatusCreateFileA("ring-4", directory);  // the killed one's out
  ASSERT_NE(KZ_StatusSetStringA(first, "0"), 0);
  const auto start = std::chrono::steady_clock::now();
  auto members = start_all([&](int i) -> std::vector<std::string> {
    return {"--kz-helper",
            "stress-ring",
            path,
            std::to_string(i),
            std::to_string(handoffs),
            reports.path(std::to_string(i))};
  });
  const auto value = [](StatusFileHandle* status) {
    char text[32] = {};
    KZ_StatusGetStringA(status, text, sizeof text);
    return std::string(text);
  };
  EXPECT_TRUE(await([&] { return std::atoi(value(passed).c_str()) >= handoffs / 2; }));
  kill_program(members[killed]);
  EXPECT_EQ(wait_for(members[killed]), -1);
  // This process takes the killed member's place from the hand-off it had
  // not passed on: behind the last one it passed, or the one it holds when
  // the kill came between its cut and its write.
  const std::string out = value(passed);
  StatusFileHandle* held = KZ_StatusCreateFileA("ring-3", directory);
  const int resume =
      out.empty() ? std::atoi(value(held).c_str()) : std::atoi(out.c_str()) + kProcesses - 1;
  KZ_StatusEndFile(held, 0);
  const auto [taken_over, late] = ring_member(directory, killed, handoffs, resume);
  EXPECT_EQ(taken_over, (handoffs - resume + kProcesses - 1) / kProcesses);
  int timeouts = late;
  for (int i = 0; i < kProcesses; ++i) {
    if (i == killed) continue;
    EXPECT_EQ(wait_for(members[i]), 0) << i;
    int got = -1, waits = -1;
    std::istringstream(read_bytes(reports.path(std::to_string(i)))) >> got >> waits;
    EXPECT_EQ(got, (handoffs - i + kProcesses - 1) / kProcesses) << i;
    timeouts += waits;
  }
  KZ_StatusEndFile(first, 0);
  KZ_StatusEndFile(passed, 0);
  EXPECT_TRUE(std::filesystem::is_empty(native(dir.path())));
  std::printf(
      "[ stress   ] %d hand-offs among %d processes, 1 killed at %d and taken over, "
      "%d waits timed out after %u ms, %lld ms\n",
      handoffs, kProcesses, resume, timeouts, kTimeoutMs, elapsed(start));
}

}  // namespace
}  // namespace kz::test
