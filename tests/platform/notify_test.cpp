// Change notification, the wait on it, Sleep, the transfers on a file
// handle and DeleteFileA, as the status files rely on them.
#include <chrono>

#include "files.h"
#include "platform/platform.h"

namespace {

using namespace kz::os;
using kz::test::TempDir;
using kz::test::write_bytes;

// Wine delivers a change through its server, so a signal may come a moment
// after the write: a wait that must see one gets time.
constexpr DWORD kSignalGrace = 2000;

HANDLE watch(const TempDir& dir) {
  return FindFirstChangeNotificationA(dir.path().c_str(), 0, kFileNotifyChangeLastWrite);
}

TEST(ChangeNotification, AMissingDirectoryGivesTheInvalidHandle) {
  TempDir dir;
  EXPECT_EQ(
      FindFirstChangeNotificationA(dir.path("missing").c_str(), 0, kFileNotifyChangeLastWrite),
      kInvalidHandle);
}

TEST(ChangeNotification, AWriteSignalsUntilTheReArm) {
  TempDir dir;
  write_bytes(dir.path("file"), "a");
  const HANDLE change = watch(dir);
  ASSERT_NE(change, kInvalidHandle);
  EXPECT_EQ(WaitForSingleObject(change, 0), kWaitTimeout);
  write_bytes(dir.path("file"), "b");
  EXPECT_EQ(WaitForSingleObject(change, kSignalGrace), kWaitObject0);
  EXPECT_EQ(WaitForSingleObject(change, 0), kWaitObject0);  // stays signalled
  ASSERT_NE(FindNextChangeNotification(change), 0);
  EXPECT_EQ(WaitForSingleObject(change, 100), kWaitTimeout);
  FindCloseChangeNotification(change);
}

TEST(ChangeNotification, AChangeBeforeTheReArmIsKept) {
  TempDir dir;
  const HANDLE change = watch(dir);
  ASSERT_NE(change, kInvalidHandle);
  write_bytes(dir.path("file"), "a");
  ASSERT_EQ(WaitForSingleObject(change, kSignalGrace), kWaitObject0);
  Sleep(50);
  write_bytes(dir.path("file"), "b");
  Sleep(200);
  ASSERT_NE(FindNextChangeNotification(change), 0);
  EXPECT_EQ(WaitForSingleObject(change, kSignalGrace), kWaitObject0);
  FindCloseChangeNotification(change);
}

TEST(ChangeNotification, TheTimeoutIsKeptAndSleepPauses) {
  TempDir dir;
  const HANDLE change = watch(dir);
  ASSERT_NE(change, kInvalidHandle);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(WaitForSingleObject(change, 120), kWaitTimeout);
  const auto waited = std::chrono::steady_clock::now() - start;
  Sleep(80);
  const auto slept = std::chrono::steady_clock::now() - start - waited;
  EXPECT_GE(waited, std::chrono::milliseconds(115));
  EXPECT_GE(slept, std::chrono::milliseconds(75));
  FindCloseChangeNotification(change);
}

TEST(FileTransfers, PositionCutWriteAndShortReads) {
  TempDir dir;
  const std::string path = dir.path("io");
  const HANDLE file =
      CreateFileA(path.c_str(), kGenericRead | kGenericWrite, kFileShareRead | kFileShareWrite,
                  nullptr, kOpenAlways, kFileAttributeTemporary, nullptr);
  ASSERT_NE(file, kInvalidHandle);
  DWORD done = 99;
  ASSERT_NE(WriteFile(file, "hello", 5, &done, nullptr), 0);
  EXPECT_EQ(done, 5u);
  EXPECT_EQ(SetFilePointer(file, 2, nullptr, kFileBegin), 2u);
  ASSERT_NE(SetEndOfFile(file), 0);
  EXPECT_NE(FlushFileBuffers(file), 0);
  EXPECT_EQ(GetFileSize(file, nullptr), 2u);
  char buffer[8] = {};
  EXPECT_EQ(SetFilePointer(file, 0, nullptr, kFileBegin), 0u);
  ASSERT_NE(ReadFile(file, buffer, sizeof buffer, &done, nullptr), 0);
  EXPECT_EQ(done, 2u);
  EXPECT_EQ(std::string(buffer, 2), "he");
  // At the end a read still succeeds, with nothing.
  ASSERT_NE(ReadFile(file, buffer, sizeof buffer, &done, nullptr), 0);
  EXPECT_EQ(done, 0u);
  CloseHandle(file);
}

TEST(FileTransfers, DeleteFailsWhileAnyOpenHoldsTheFile) {
  TempDir dir;
  const std::string path = dir.path("held");
  write_bytes(path, "x");
  for (DWORD share : {DWORD{0}, kFileShareRead | kFileShareWrite}) {
    const HANDLE file =
        CreateFileA(path.c_str(), kGenericRead, share, nullptr, kOpenExisting, 0, nullptr);
    ASSERT_NE(file, kInvalidHandle);
    EXPECT_EQ(DeleteFileA(path.c_str()), 0) << share;
    CloseHandle(file);
  }
  EXPECT_NE(DeleteFileA(path.c_str()), 0);
  EXPECT_EQ(DeleteFileA(path.c_str()), 0);  // nothing left to delete
}

}  // namespace
