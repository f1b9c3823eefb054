// Transfers on an open file handle and the removal of a file: the handle's
// own position, reads that may come up short, writes that go in whole, and
// a delete that fails while any process holds the file open.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/posix/native.h"

namespace kz::os {

using posix::descriptor_of;

DWORD SetFilePointer(HANDLE file, LONG distance, LONG* high, DWORD method) {
  const int whence = method == 0 ? SEEK_SET : method == 1 ? SEEK_CUR : method == 2 ? SEEK_END : -1;
  if (whence < 0) return kInvalidSetFilePointer;
  // Without a high part the distance is a signed 32-bit value; with one the
  // two halves make a signed 64-bit value.
  const std::int64_t offset =
      high == nullptr ? distance
                      : static_cast<std::int64_t>(
                            (static_cast<std::uint64_t>(static_cast<std::uint32_t>(*high)) << 32) |
                            static_cast<std::uint32_t>(distance));
  const off_t position = lseek(descriptor_of(file), static_cast<off_t>(offset), whence);
  if (position < 0) return kInvalidSetFilePointer;
  if (high != nullptr) *high = static_cast<LONG>(static_cast<std::uint64_t>(position) >> 32);
  return static_cast<DWORD>(position);
}

BOOL SetEndOfFile(HANDLE file) {
  const int fd = descriptor_of(file);
  const off_t position = lseek(fd, 0, SEEK_CUR);
  return position >= 0 && ftruncate(fd, position) == 0;
}

BOOL WriteFile(HANDLE file, const void* data, DWORD count, DWORD* done, void*) {
  const int fd = descriptor_of(file);
  const auto* bytes = static_cast<const char*>(data);
  DWORD written = 0;
  while (written < count) {
    const ssize_t n = write(fd, bytes + written, count - written);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) break;
    written += static_cast<DWORD>(n);
  }
  if (done != nullptr) *done = written;
  return written == count;
}

BOOL ReadFile(HANDLE file, void* buffer, DWORD count, DWORD* done, void*) {
  const int fd = descriptor_of(file);
  auto* bytes = static_cast<char*>(buffer);
  DWORD got = 0;
  // A regular file gives all it has up to count: keep reading until the end
  // or count.
  while (got < count) {
    const ssize_t n = read(fd, bytes + got, count - got);
    if (n < 0 && errno == EINTR) continue;
    if (n < 0) {
      if (done != nullptr) *done = got;
      return 0;
    }
    if (n == 0) break;
    got += static_cast<DWORD>(n);
  }
  if (done != nullptr) *done = got;
  return 1;
}

// What the library flushes must reach the file for other processes, and
// on POSIX a finished write() already has: every process reads the same
// page cache. The files flushed are status files, temporary by attribute,
// so a trip to the disk (milliseconds on a real one, per value set) would
// buy nothing; the handle is only checked.
BOOL FlushFileBuffers(HANDLE file) { return fcntl(descriptor_of(file), F_GETFD) != -1; }

BOOL DeleteFileA(const char* path) {
  char native[posix::kNativePathMax];
  if (path[0] == 0 || !posix::native_path(path, native)) return 0;
  const int fd = open(native, O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (fd < 0) return 0;
  struct stat st;
  bool removed = false;
  if (fstat(fd, &st) == 0 && !S_ISDIR(st.st_mode) && posix::lock_shares(fd)) {
    // The share lock's own lock keeps opens out between the test and the
    // removal; an open that found the name before it starts over when it
    // sees the name gone.
    removed = !posix::open_anywhere(fd) && unlink(native) == 0;
    posix::unlock_shares(fd);
  }
  close(fd);
  return removed;
}

}  // namespace kz::os
