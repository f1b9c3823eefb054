// Waits in one process: what the comparisons accept, the timeout, the
// failures, and writers on other threads.
#include <cstring>
#include <thread>

#include "platform/platform.h"
#include "status/record.h"
#include "status/status_test_support.h"

namespace {

using namespace kz::test;

constexpr int32_t kMatch = 0, kTimedOut = 1, kFailed = 2;

template <class Ch>
class StatusWait : public ::testing::Test {};
TYPED_TEST_SUITE(StatusWait, ElementTypes);

TYPED_TEST(StatusWait, TextMustEqualTheWholeFile) {
  using Ch = TypeParam;
  struct Row {
    std::string file, expected;
    int32_t result;
  };
  const Row rows[] = {
      {"ready", "ready", kMatch},
      {"", "", kMatch},
      {"ready!", "ready", kTimedOut},  // the file only begins with the text
      {"read", "ready", kTimedOut},
      {std::string("ready\0x", 7), "ready", kMatch},  // bytes behind a zero byte do not count
      {"\x93\xFA\x96\x7B", "\x93\xFA\x96\x7B", kMatch},
  };
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "text"));
  ASSERT_NE(status.get(), nullptr);
  for (const Row& row : rows) {
    write_bytes(dir.path("text"), row.file);
    // A value that is there at entry ends even a long wait at once.
    const uint32_t timeout = row.result == kMatch ? 30000 : 0;
    EXPECT_EQ(
        Twin<Ch>::StatusIsStringWait(status.get(), in_width<Ch>(row.expected).c_str(), timeout),
        row.result)
        << row.file;
  }
}

TEST(StatusWait, DataMustBeginTheFile) {
  struct Row {
    std::string file, expected;
    int32_t result;
  };
  const Row rows[] = {
      {"abcdef", "abcd", kMatch},  // a longer file that begins with the bytes
      {"ab", "abcd", kTimedOut},   // a shorter one never matches
      {"abce", "abcd", kTimedOut},
      {"anything", "", kMatch},
      {std::string("a\0c\0", 4), std::string("a\0c\0", 4), kMatch},
  };
  TempDir dir;
  HeldStatus status(open_status<char>(dir, "data"));
  ASSERT_NE(status.get(), nullptr);
  for (const Row& row : rows) {
    write_bytes(dir.path("data"), row.file);
    EXPECT_EQ(KZ_StatusIsDataWait(status.get(), row.expected.data(),
                                  static_cast<uint32_t>(row.expected.size()), 0),
              row.result)
        << row.file;
  }
}

TYPED_TEST(StatusWait, TheWideTwinComparesTheNarrowFormOfItsText) {
  using Ch = TypeParam;
  TempDir dir;
  HeldStatus status(open_status<wchar>(dir, "wide"));
  ASSERT_NE(status.get(), nullptr);
  const std::string value = "\x83\x5C\x83\x74\x83\x67";  // trail bytes 0x5C and 0x74
  ASSERT_NE(KZ_StatusSetStringW(status.get(), widen(value).c_str()), 0);
  EXPECT_EQ(Twin<Ch>::StatusIsStringWait(status.get(), in_width<Ch>(value).c_str(), 0), kMatch);
}

TYPED_TEST(StatusWait, NullArgumentsAndAMissingDirectoryFail) {
  using Ch = TypeParam;
  TempDir dir;
  HeldStatus status(open_status<Ch>(dir, "fail"));
  ASSERT_NE(status.get(), nullptr);
  EXPECT_EQ(Twin<Ch>::StatusIsStringWait(nullptr, in_width<Ch>("").c_str(), 0), kFailed);
  EXPECT_EQ(Twin<Ch>::StatusIsStringWait(status.get(), nullptr, 0), kFailed);
  EXPECT_EQ(KZ_StatusIsDataWait(nullptr, "", 0, 0), kFailed);
  EXPECT_EQ(KZ_StatusIsDataWait(status.get(), nullptr, 0, 0), kFailed);
  // The record's path names the directory that the wait watches.
  StatusFileHandle* record = status.get();
  const std::string saved = record->path;
  std::strcpy(record->path, (dir.path("gone") + "\\fail").c_str());
  EXPECT_EQ(Twin<Ch>::StatusIsStringWait(record, in_width<Ch>("x").c_str(), 0), kFailed);
  std::strcpy(record->path, saved.c_str());
}

TEST(StatusWait, TheTimeoutBoundsTheQuietTime) {
  TempDir dir;
  HeldStatus status(open_status<char>(dir, "quiet"));
  ASSERT_NE(status.get(), nullptr);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsStringWaitA(status.get(), "never", 150), kTimedOut);
  EXPECT_GE(elapsed_ms(start), 150);
}

TEST(StatusWait, AWriterOnAnotherThreadEndsTheWaitThroughAnotherValue) {
  TempDir dir;
  HeldStatus waiting(open_status<char>(dir, "thread"));
  ASSERT_NE(waiting.get(), nullptr);
  std::thread writer([&] {
    HeldStatus writing(open_status<char>(dir, "thread"));
    kz::os::Sleep(50);
    KZ_StatusSetStringA(writing.get(), "almost");
    kz::os::Sleep(50);
    KZ_StatusSetStringA(writing.get(), "done");
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsStringWaitA(waiting.get(), "done", 5000), kMatch);
  EXPECT_LT(elapsed_ms(start), 4000);
  writer.join();
}

TEST(StatusWait, ChangesToOtherFilesKeepTheWaitGoing) {
  TempDir dir;
  HeldStatus status(open_status<char>(dir, "watched"));
  ASSERT_NE(status.get(), nullptr);
  constexpr int kChanges = 6;
  constexpr uint32_t kTimeout = 300;
  std::thread neighbour([&] {
    for (int i = 0; i < kChanges; ++i) {
      kz::os::Sleep(kTimeout / 2);
      write_bytes(dir.path("neighbour"), std::to_string(i));
    }
  });
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(KZ_StatusIsStringWaitA(status.get(), "never", kTimeout), kTimedOut);
  EXPECT_GE(elapsed_ms(start), kChanges * kTimeout / 2 + kTimeout);
  neighbour.join();
}

}  // namespace
