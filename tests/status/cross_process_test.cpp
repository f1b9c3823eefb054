// Status files between processes: the test program runs again as helper
// processes (registered below) that share a file by name and directory,
// write values on a schedule, hold a file for a while, or pass a token
// around a ring for the stress tests.
#include <cstdlib>
#include <cstring>
#include <future>

#include "platform/platform.h"
#include "status/status_test_support.h"

namespace kz::test {
namespace {

// status-write DIR NAME REPORT (PAUSE VALUE)...: sets each value after its
// pause in milliseconds, then writes the value it found at its start to
// REPORT (unless "-") and ends.
int write_helper(int argc, char** argv) {
  if (argc < 4 || argc % 2 != 0) return 2;
  StatusFileHandle* status = KZ_StatusCreateFileA(argv[2], argv[1]);
  if (status == nullptr) return 3;
  char found[64] = {};
  KZ_StatusGetStringA(status, found, sizeof found);
  for (int i = 4; i + 1 < argc; i += 2) {
    kz::os::Sleep(static_cast<kz::os::DWORD>(std::atoi(argv[i])));
    KZ_StatusSetStringA(status, argv[i + 1]);
  }
  if (std::strcmp(argv[3], "-") != 0) write_bytes(argv[3], found);
  return KZ_StatusEndFile(status, 0) != 0 ? 0 : 4;
}

// status-ring DIR INDEX PROCESSES HANDOFFS TIMEOUT REPORT: a member of a
// token ring (the stress tests run it) receives every hand-off k from INDEX
// on in steps of PROCESSES in its file ring-(k % PROCESSES) and passes k + 1
// on in the next; reports "received timeouts".
int ring_helper(int argc, char** argv) {
  if (argc != 7) return 2;
  const int index = std::atoi(argv[2]), processes = std::atoi(argv[3]);
  const int handoffs = std::atoi(argv[4]), timeout = std::atoi(argv[5]);
  const auto file = [&](int i) { return "ring-" + std::to_string(i % processes); };
  HeldStatus mine(KZ_StatusCreateFileA(file(index).c_str(), argv[1]));
  HeldStatus theirs(KZ_StatusCreateFileA(file(index + 1).c_str(), argv[1]));
  if (mine == nullptr || theirs == nullptr) return 3;
  int received = 0, timeouts = 0;
  for (int k = index; k < handoffs; k += processes, ++received) {
    const std::string expected = std::to_string(k);
    // A write in the same tick as the wait's reference time shows only at
    // the timeout; the value is then read to tell a late hand-off from a
    // lost one. A minute without it is a lost hand-off.
    for (int waits = 0;; ++waits) {
      const int32_t result = KZ_StatusIsStringWaitA(mine.get(), expected.c_str(), timeout);
      if (result == 0) break;
      char value[32] = {};
      KZ_StatusGetStringA(mine.get(), value, sizeof value);
      timeouts += result == 1;
      if (result == 1 && expected == value) break;
      if (result == 2 || waits * timeout > 60000) return 5;
    }
    if (k + 1 < handoffs && !KZ_StatusSetStringA(theirs.get(), std::to_string(k + 1).c_str()))
      return 5;
  }
  write_bytes(argv[6], std::to_string(received) + " " + std::to_string(timeouts));
  return 0;
}

const RegisterHelper kWrite("status-write", write_helper);
const RegisterHelper kRing("status-ring", ring_helper);

// A helper started on a thread of its own; get() gives its exit status.
std::future<int> start_helper(std::vector<std::string> arguments) {
  return std::async(std::launch::async, [arguments] { return helper_status(arguments); });
}

bool exists(const std::string& library_path) {
  return std::filesystem::exists(native(library_path));
}

// The helper finds this process's value, the wait passes the helper's first
// value by and ends at its second, and then times out when nothing more
// comes. The helper's end left the file to this process; the last end
// removes it.
TEST(StatusCrossProcess, AWaitSeesAnotherProcessesValueAndTheLastEndRemovesTheFile) {
  TempDir dir;
  StatusFileHandle* status = KZ_StatusCreateFileA("shared", dir.path().c_str());
  ASSERT_NE(status, nullptr);
  ASSERT_NE(KZ_StatusSetStringA(status, "from the test"), 0);
  auto helper = start_helper(
      {"status-write", dir.path(), "shared", dir.path("report"), "200", "not yet", "200", "ready"});
  EXPECT_EQ(KZ_StatusIsStringWaitA(status, "ready", 30000), 0);
  EXPECT_EQ(helper.get(), 0);
  EXPECT_EQ(read_bytes(dir.path("report")), "from the test");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsDataWait(status, "expected", 8, 300), 1);
  EXPECT_GE(elapsed_ms(start), 300);
  ASSERT_TRUE(exists(dir.path("shared")));
  EXPECT_NE(KZ_StatusEndFile(status, 0), 0);
  EXPECT_FALSE(exists(dir.path("shared")));
}

// The helper marks its last step before it closes.
TEST(StatusCrossProcess, AnEndThatWaitsReturnsOnlyAfterTheOtherProcessClosed) {
  TempDir dir;
  StatusFileHandle* status = KZ_StatusCreateFileA("held", dir.path().c_str());
  ASSERT_NE(status, nullptr);
  auto helper = start_helper(
      {"status-write", dir.path(), "held", dir.path("closing"), "0", "held", "1500", "still held"});
  ASSERT_EQ(KZ_StatusIsStringWaitA(status, "held", 30000), 0);
  EXPECT_NE(KZ_StatusEndFile(status, 1), 0);
  EXPECT_TRUE(exists(dir.path("closing")));
  EXPECT_FALSE(exists(dir.path("held")));
  EXPECT_EQ(helper.get(), 0);
}

// Changes every half timeout keep the wait until they stop: the last comes
// about two and a half timeouts after the first value, and the wait then
// runs one more timeout (half a timeout allowed for the clock's late start).
TEST(StatusCrossProcess, ChangesEveryHalfTimeoutKeepTheWaitUntilTheyStop) {
  TempDir dir, marks;  // the marks lie outside the watched directory
  HeldStatus status(KZ_StatusCreateFileW(widen("busy").c_str(), dir.at<wchar>().c_str()));
  ASSERT_NE(status, nullptr);
  constexpr uint32_t kTimeout = 1000;
  std::vector<std::string> arguments = {"status-write", dir.path(), "busy", marks.path("done")};
  for (int i = 0; i < 6; ++i) {
    arguments.push_back(i == 0 ? "0" : std::to_string(kTimeout / 2));
    arguments.push_back("busy " + std::to_string(i));
  }
  auto helper = start_helper(arguments);
  ASSERT_EQ(KZ_StatusIsStringWaitA(status.get(), "busy 0", 30000), 0);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsStringWaitW(status.get(), widen("never").c_str(), kTimeout), 1);
  EXPECT_GE(elapsed_ms(start), 3 * kTimeout);
  EXPECT_TRUE(exists(marks.path("done")));
  EXPECT_EQ(helper.get(), 0);
}

}  // namespace
}  // namespace kz::test
