// The hand-off of a value between two processes through status files,
// beside a pipe round trip between the same two processes. Each iteration
// is a round trip: this process sets a value in "ping" and waits for the
// echo in "pong", while a forked child waits for each value in "ping" and
// sets it in "pong". A round trip is two hand-offs, each from
// KZ_StatusSetStringA in one process to the return of KZ_StatusIsStringWaitA
// in the other; half of it is the one-way latency. The pipe does the same
// with one byte each way. The ratio is printed at the end.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "kz_basis.h"

namespace {

constexpr uint32_t kTimeoutMs = 1000;
double status_ns = 0, pipe_ns = 0;

// A fresh directory for the two status files, so that no other file's
// changes wake the waits: under TMPDIR or /tmp.
std::string fresh_directory() {
  const char* tmp = std::getenv("TMPDIR");
  std::string pattern =
      std::string(tmp != nullptr && tmp[0] != 0 ? tmp : "/tmp") + "/kz-bench-XXXXXX";
  return mkdtemp(pattern.data()) != nullptr ? pattern : std::string();
}

// The child's side: echoes every value of ping into pong, until it is
// killed.
[[noreturn]] void echo_status(const std::string& directory) {
  StatusFileHandle* ping = KZ_StatusCreateFileA("ping", directory.c_str());
  StatusFileHandle* pong = KZ_StatusCreateFileA("pong", directory.c_str());
  for (long n = 1;; ++n) {
    const std::string expected = std::to_string(n);
    // A value in the same tick as the wait's reference time shows at the
    // timeout: then the value is read.
    for (;;) {
      if (KZ_StatusIsStringWaitA(ping, expected.c_str(), kTimeoutMs) == 0) break;
      char value[32] = {};
      KZ_StatusGetStringA(ping, value, sizeof value);
      if (expected == value) break;
    }
    KZ_StatusSetStringA(pong, expected.c_str());
  }
}

void StatusRoundTrip(benchmark::State& state) {
  const std::string directory = fresh_directory();
  StatusFileHandle* ping = KZ_StatusCreateFileA("ping", directory.c_str());
  StatusFileHandle* pong = KZ_StatusCreateFileA("pong", directory.c_str());
  if (ping == nullptr || pong == nullptr) {
    state.SkipWithError("no status files");
    return;
  }
  const pid_t child = fork();
  if (child == 0) echo_status(directory);
  long n = 0, late = 0;
  for (auto _ : state) {
    const std::string value = std::to_string(++n);
    KZ_StatusSetStringA(ping, value.c_str());
    for (;;) {
      if (KZ_StatusIsStringWaitA(pong, value.c_str(), kTimeoutMs) == 0) break;
      ++late;
      char seen[32] = {};
      KZ_StatusGetStringA(pong, seen, sizeof seen);
      if (value == seen) break;
    }
  }
  kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  KZ_StatusEndFile(ping, 0);
  KZ_StatusEndFile(pong, 0);
  rmdir(directory.c_str());
  state.counters["timeouts"] = static_cast<double>(late);
}

void PipeRoundTrip(benchmark::State& state) {
  int there[2], back[2];
  if (pipe(there) != 0 || pipe(back) != 0) {
    state.SkipWithError("no pipes");
    return;
  }
  const pid_t child = fork();
  if (child == 0) {
    char byte;
    while (read(there[0], &byte, 1) == 1 && byte != 0)
      if (write(back[1], &byte, 1) != 1) break;
    std::_Exit(0);
  }
  char byte = 1;
  for (auto _ : state) {
    if (write(there[1], &byte, 1) != 1 || read(back[0], &byte, 1) != 1) {
      state.SkipWithError("pipe broke");
      break;
    }
  }
  byte = 0;
  if (write(there[1], &byte, 1) != 1) kill(child, SIGKILL);
  waitpid(child, nullptr, 0);
  for (int fd : {there[0], there[1], back[0], back[1]}) close(fd);
}

BENCHMARK(StatusRoundTrip)->UseRealTime()->MinTime(2.0);
BENCHMARK(PipeRoundTrip)->UseRealTime()->MinTime(2.0);

// Keeps the real time per iteration of each run, for the ratio.
class RatioReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      const double ns = run.GetAdjustedRealTime();
      if (run.benchmark_name().rfind("StatusRoundTrip", 0) == 0) status_ns = ns;
      if (run.benchmark_name().rfind("PipeRoundTrip", 0) == 0) pipe_ns = ns;
    }
    ConsoleReporter::ReportRuns(runs);
  }
};

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  RatioReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  if (status_ns > 0 && pipe_ns > 0)
    std::printf("status hand-off %.1f us one way, pipe %.1f us one way: %.2f times\n",
                status_ns / 2000, pipe_ns / 2000, status_ns / pipe_ns);
  benchmark::Shutdown();
  return 0;
}
