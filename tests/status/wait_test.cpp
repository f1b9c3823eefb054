// Waits in one process: what the comparisons accept, the failures, and
// changes to other files that must not end a wait.
#include <cstring>
#include <thread>

#include "platform/platform.h"
#include "status/record.h"
#include "status/status_test_support.h"

namespace {

using namespace kz::test;

constexpr int32_t kMatch = 0, kTimedOut = 1, kFailed = 2;

KZ_TWIN_SUITE(StatusWait);

// Text must equal the whole file up to a zero byte (the wide twin compares
// its narrow form, here with trail bytes 0x5C and 0x74); data must begin
// the file. A value there at entry ends even a long wait at once.
TYPED_TEST(StatusWait, TextMustEqualTheFileAndDataBeginIt) {
  using Ch = TypeParam;
  using T = Twin<Ch>;
  const std::tuple<std::string, std::string, int32_t, int32_t> rows[] = {
      {"ready", "ready", kMatch, kMatch},
      {"ready!", "ready", kTimedOut, kMatch},
      {"read", "ready", kTimedOut, kTimedOut},
      {"readx", "ready", kTimedOut, kTimedOut},
      {std::string("ready\0x", 7), "ready", kMatch, kMatch},
      {std::string("a\0c\0", 4), std::string("a\0c\0", 4), kMatch, kMatch},
      {"\x83\x5C\x83\x74\x83\x67", "\x83\x5C\x83\x74\x83\x67", kMatch, kMatch}};
  TempDir dir;
  HeldStatus status(Twin<Ch>::StatusCreateFile(in<Ch>("text").c_str(), dir.at<Ch>().c_str()));
  ASSERT_NE(status, nullptr);
  for (const auto& [file, expected, text, data] : rows) {
    write_bytes(dir.path("text"), file);
    const auto size = static_cast<uint32_t>(expected.size());
    EXPECT_EQ(
        joined(T::StatusIsStringWait(status.get(), in<Ch>(expected).c_str(), text ? 0 : 30000),
               KZ_StatusIsDataWait(status.get(), expected.data(), size, data ? 0 : 30000)),
        joined(text, data))
        << file;
  }
  EXPECT_EQ(joined(T::StatusIsStringWait(nullptr, in<Ch>("").c_str(), 0),
                   T::StatusIsStringWait(status.get(), nullptr, 0),
                   KZ_StatusIsDataWait(nullptr, "", 0, 0),
                   KZ_StatusIsDataWait(status.get(), nullptr, 0, 0)),
            joined(kFailed, kFailed, kFailed, kFailed));
  // The record's path names the directory that the wait watches.
  const std::string saved = status->path;
  std::strcpy(status->path, (dir.path("gone") + "\\text").c_str());
  EXPECT_EQ(T::StatusIsStringWait(status.get(), in<Ch>("x").c_str(), 0), kFailed);
  std::strcpy(status->path, saved.c_str());
}

// The timeout counts the quiet time, which each change starts again: one to
// another file, or a value in the watched file that does not match.
TEST(StatusWait, ChangesKeepTheWaitGoingUntilTheyStop) {
  TempDir dir;
  HeldStatus status(KZ_StatusCreateFileA("watched", dir.path().c_str()));
  ASSERT_NE(status, nullptr);
  constexpr int kChanges = 6;
  constexpr uint32_t kTimeout = 300;
  std::thread neighbour([&] {
    for (int i = 0; i < kChanges; ++i) {
      kz::os::Sleep(kTimeout / 2);
      write_bytes(dir.path(i % 2 ? "watched" : "neighbour"), "other " + std::to_string(i));
    }
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsStringWaitA(status.get(), "never", kTimeout), kTimedOut);
  EXPECT_GE(elapsed_ms(start), kChanges * kTimeout / 2 + kTimeout);
  neighbour.join();
}

}  // namespace
