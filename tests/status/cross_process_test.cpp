// Status files between processes: the test program runs again as helper
// processes (registered below) that share a file by name and directory,
// write values on a schedule, hold a file for a while, or pass a token
// around a ring.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <future>

#include "platform/platform.h"
#include "status/status_test_support.h"

namespace kz::test {
namespace {

void report(const char* path, const std::string& findings) {
  std::ofstream(native(path), std::ios::binary) << findings;
}

// status-share DIR NAME REPORT: reports the value it finds, then sets its
// own and ends without waiting.
int share_helper(int argc, char** argv) {
  if (argc != 4) return 2;
  StatusFileHandle* status = KZ_StatusCreateFileA(argv[2], argv[1]);
  if (status == nullptr) return 3;
  char value[64];
  KZ_StatusGetStringA(status, value, sizeof value);
  KZ_StatusSetStringA(status, "from the helper");
  report(argv[3], value);
  return KZ_StatusEndFile(status, 0) != 0 ? 0 : 4;
}

// status-write DIR NAME MARKER (PAUSE VALUE)...: sets each value after its
// pause in milliseconds, then writes MARKER (unless "-") and ends.
int write_helper(int argc, char** argv) {
  if (argc < 4 || argc % 2 != 0) return 2;
  StatusFileHandle* status = KZ_StatusCreateFileA(argv[2], argv[1]);
  if (status == nullptr) return 3;
  for (int i = 4; i + 1 < argc; i += 2) {
    kz::os::Sleep(static_cast<kz::os::DWORD>(std::atoi(argv[i])));
    KZ_StatusSetStringA(status, argv[i + 1]);
  }
  if (std::strcmp(argv[3], "-") != 0) report(argv[3], "written");
  return KZ_StatusEndFile(status, 0) != 0 ? 0 : 4;
}

// status-ring DIR INDEX PROCESSES HANDOFFS TIMEOUT REPORT: one member of a
// token ring. Member i receives every hand-off number k with k % PROCESSES
// == i in its own file ring-i and passes k + 1 on in ring-(i + 1). Reports
// "received timeouts".
int ring_helper(int argc, char** argv) {
  if (argc != 7) return 2;
  const int index = std::atoi(argv[2]), processes = std::atoi(argv[3]);
  const int handoffs = std::atoi(argv[4]);
  const auto timeout = static_cast<uint32_t>(std::atoi(argv[5]));
  const std::string own = "ring-" + std::to_string(index);
  const std::string next = "ring-" + std::to_string((index + 1) % processes);
  StatusFileHandle* mine = KZ_StatusCreateFileA(own.c_str(), argv[1]);
  StatusFileHandle* theirs = KZ_StatusCreateFileA(next.c_str(), argv[1]);
  if (mine == nullptr || theirs == nullptr) return 3;
  int received = 0, timeouts = 0, failures = 0;
  for (int k = index; k < handoffs && failures == 0; k += processes) {
    const std::string expected = std::to_string(k);
    // A write in the same tick as the wait's reference time shows only at
    // the timeout; the value is then read to tell a late hand-off from a
    // lost one. A minute without it is a lost hand-off.
    for (int waits = 0;; ++waits) {
      const int32_t result = KZ_StatusIsStringWaitA(mine, expected.c_str(), timeout);
      if (result == 0) break;
      char value[32] = {};
      KZ_StatusGetStringA(mine, value, sizeof value);
      if (result == 1) ++timeouts;
      if (result == 1 && expected == value) break;
      if (result == 2 || static_cast<long long>(waits) * timeout > 60000) {
        ++failures;
        break;
      }
    }
    if (failures != 0) break;
    ++received;
    if (k + 1 < handoffs && !KZ_StatusSetStringA(theirs, std::to_string(k + 1).c_str())) ++failures;
  }
  KZ_StatusEndFile(theirs, 0);
  KZ_StatusEndFile(mine, 0);
  report(argv[6], std::to_string(received) + " " + std::to_string(timeouts));
  return failures == 0 ? 0 : 5;
}

const RegisterHelper kShare("status-share", share_helper);
const RegisterHelper kWrite("status-write", write_helper);
const RegisterHelper kRing("status-ring", ring_helper);

// A helper started on a thread of its own; finish() gives its exit status.
std::future<int> start_helper(std::vector<std::string> arguments) {
  return std::async(std::launch::async, [arguments] { return helper_status(arguments); });
}

bool exists(const std::string& library_path) {
  return std::filesystem::exists(native(library_path));
}

TEST(StatusCrossProcess, TwoProcessesShareOneFileAndTheLastEndRemovesIt) {
  TempDir dir;
  StatusFileHandle* status = KZ_StatusCreateFileA("shared", dir.path().c_str());
  ASSERT_NE(status, nullptr);
  ASSERT_NE(KZ_StatusSetStringA(status, "from the test"), 0);
  run_helper({"status-share", dir.path(), "shared", dir.path("report")});
  EXPECT_EQ(read_bytes(dir.path("report")), "from the test");
  // The helper's end left the file to this process, with the helper's value.
  char value[64];
  ASSERT_NE(KZ_StatusGetStringA(status, value, sizeof value), 0);
  EXPECT_STREQ(value, "from the helper");
  ASSERT_TRUE(exists(dir.path("shared")));
  EXPECT_NE(KZ_StatusEndFile(status, 0), 0);
  EXPECT_FALSE(exists(dir.path("shared")));
}

TEST(StatusCrossProcess, AnEndThatWaitsReturnsOnlyAfterTheOtherProcessClosed) {
  TempDir dir;
  StatusFileHandle* status = KZ_StatusCreateFileA("held", dir.path().c_str());
  ASSERT_NE(status, nullptr);
  auto helper = start_helper(
      {"status-write", dir.path(), "held", dir.path("closing"), "0", "held", "1500", "still held"});
  ASSERT_EQ(KZ_StatusIsStringWaitA(status, "held", 30000), 0);
  EXPECT_NE(KZ_StatusEndFile(status, 1), 0);
  // The helper marks its last step before it closes.
  EXPECT_TRUE(exists(dir.path("closing")));
  EXPECT_FALSE(exists(dir.path("held")));
  EXPECT_EQ(helper.get(), 0);
}

TEST(StatusCrossProcess, AWaitEndsWhenAnotherProcessSetsTheValueAfterAnotherOne) {
  TempDir dir;
  HeldStatus status(KZ_StatusCreateFileA("handoff", dir.path().c_str()));
  ASSERT_NE(status.get(), nullptr);
  auto helper =
      start_helper({"status-write", dir.path(), "handoff", "-", "200", "not yet", "200", "ready"});
  EXPECT_EQ(KZ_StatusIsStringWaitA(status.get(), "ready", 30000), 0);
  char value[16];
  KZ_StatusGetStringA(status.get(), value, sizeof value);
  EXPECT_STREQ(value, "ready");
  EXPECT_EQ(helper.get(), 0);
}

TEST(StatusCrossProcess, ChangesEveryHalfTimeoutKeepTheWaitUntilTheyStop) {
  TempDir dir;
  TempDir marks;  // outside the watched directory
  HeldStatus status(KZ_StatusCreateFileW(widen("busy").c_str(), dir.at<wchar>().c_str()));
  ASSERT_NE(status.get(), nullptr);
  constexpr uint32_t kTimeout = 1000;
  std::vector<std::string> arguments = {"status-write", dir.path(), "busy", marks.path("done")};
  // The first value waits for the helper to start; the rest come every half
  // timeout.
  for (int i = 0; i < 6; ++i) {
    arguments.push_back(i == 0 ? "0" : std::to_string(kTimeout / 2));
    arguments.push_back("busy " + std::to_string(i));
  }
  auto helper = start_helper(arguments);
  // Until the helper's first value the wait could time out on a slow start:
  // it begins once the file has changed.
  ASSERT_EQ(KZ_StatusIsStringWaitA(status.get(), "busy 0", 30000), 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsStringWaitW(status.get(), widen("never").c_str(), kTimeout), 1);
  // The last change comes about two and a half timeouts after the first
  // value, and the wait then runs one more timeout; the clock starts a little
  // after the first value was written, so allow half a timeout for that.
  EXPECT_GE(elapsed_ms(start), 3 * kTimeout);
  EXPECT_TRUE(exists(marks.path("done")));
  EXPECT_EQ(helper.get(), 0);
}

TEST(StatusCrossProcess, AWaitTimesOutWhenNothingComes) {
  TempDir dir;
  HeldStatus status(KZ_StatusCreateFileA("silent", dir.path().c_str()));
  ASSERT_NE(status.get(), nullptr);
  run_helper({"status-write", dir.path(), "silent", "-", "0", "other"});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsDataWait(status.get(), "expected", 8, 300), 1);
  EXPECT_GE(elapsed_ms(start), 300);
}

// Eight processes pass a token around through status files. The short form
// runs here; KZ_STATUS_STRESS_HANDOFFS sets the count for the long form.
TEST(StatusStress, ATokenRingLosesAndDoublesNoHandOff) {
  constexpr int kProcesses = 8;
  constexpr int kTimeoutMs = 200;
  const char* configured = std::getenv("KZ_STATUS_STRESS_HANDOFFS");
  const int handoffs = configured != nullptr ? std::atoi(configured) : 400;
  TempDir dir;
  TempDir reports;
  {
    // The first hand-off is waiting in ring-0 before anyone starts.
    HeldStatus first(KZ_StatusCreateFileA("ring-0", dir.path().c_str()));
    ASSERT_NE(first.get(), nullptr);
    ASSERT_NE(KZ_StatusSetStringA(first.get(), "0"), 0);
    const auto start = std::chrono::steady_clock::now();
    std::vector<std::future<int>> members;
    for (int i = 0; i < kProcesses; ++i)
      members.push_back(
          start_helper({"status-ring", dir.path(), std::to_string(i), std::to_string(kProcesses),
                        std::to_string(handoffs), std::to_string(kTimeoutMs),
                        reports.path("member-" + std::to_string(i))}));
    for (auto& member : members) EXPECT_EQ(member.get(), 0);
    const long long ms = elapsed_ms(start);
    int received = 0, timeouts = 0;
    for (int i = 0; i < kProcesses; ++i) {
      int got = -1, late = -1;
      std::sscanf(read_bytes(reports.path("member-" + std::to_string(i))).c_str(), "%d %d", &got,
                  &late);
      // Member i owns the numbers i, i + 8, ... below the count.
      EXPECT_EQ(got, (handoffs - i + kProcesses - 1) / kProcesses) << i;
      received += got;
      timeouts += late;
    }
    EXPECT_EQ(received, handoffs);
    std::printf(
        "[ stress   ] %d hand-offs among %d processes in %lld ms (%.0f per second, "
        "processes' start included), %d waits timed out after %d ms\n",
        handoffs, kProcesses, ms, ms > 0 ? handoffs * 1000.0 / ms : 0.0, timeouts, kTimeoutMs);
  }
  // Every file went with its last holder.
  EXPECT_TRUE(std::filesystem::is_empty(native(dir.path())));
}

}  // namespace
}  // namespace kz::test
