// Windows paths on a POSIX file system, UTF-8 for names and values, and the
// share modes of open files across threads and processes.
#include "platform/posix/native.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "platform/utf8.h"

namespace kz::os::posix {

// Both convert in pieces of a few dozen elements through a buffer on the
// stack, since out may be shorter than the most a text could need; a
// sequence cut at a piece's end waits for the next piece.
long to_utf8(const WCHAR* text, char* out, std::size_t capacity) {
  constexpr std::size_t kPiece = 64;
  std::size_t length = 0, n = 0;
  while (text[length] != 0) ++length;
  for (std::size_t in = 0; in < length;) {
    char piece[3 * kPiece];
    const std::size_t take = std::min(kPiece, length - in);
    const auto done = utf8::encode(text + in, take, piece, in + take == length);
    if (n + done.written >= capacity) return -1;
    std::memcpy(out + n, piece, done.written);
    n += done.written;
    in += done.read;
  }
  if (capacity == 0) return -1;
  out[n] = 0;
  return static_cast<long>(n);
}

long from_utf8(const char* text, WCHAR* out, std::size_t capacity) {
  constexpr std::size_t kPiece = 64;
  const std::size_t length = std::strlen(text);
  std::size_t n = 0;
  for (std::size_t in = 0; in < length;) {
    WCHAR piece[kPiece];
    const std::size_t take = std::min(kPiece, length - in);
    const auto done = utf8::decode(text + in, take, piece, in + take == length);
    if (n + done.written >= capacity) return -1;
    std::copy_n(piece, done.written, out + n);
    n += done.written;
    in += done.read;
  }
  if (capacity == 0) return -1;
  out[n] = 0;
  return static_cast<long>(n);
}

bool native_path(const WCHAR* path, char (&out)[kNativePathMax]) {
  const WCHAR* rest = path;
  const bool drive = ((path[0] | 0x20) >= u'a' && (path[0] | 0x20) <= u'z') && path[1] == u':';
  if (drive) rest += 2;
  if (to_utf8(rest, out, kNativePathMax) < 0) return false;
  for (char* p = out; *p != 0; ++p)
    if (*p == '\\') *p = '/';
  return true;
}

bool native_path(const char* path, char (&out)[kNativePathMax]) {
  WCHAR wide[kNativePathMax];
  if (path[0] == 0) {
    out[0] = 0;
    return true;
  }
  if (MultiByteToWideChar(kAnsiCodePage, 0, path, -1, wide, kNativePathMax) == 0) return false;
  return native_path(wide, out);
}

namespace {

// The share lock is a set of read locks on bytes far behind any real file
// content, held by the open file description (so they separate two opens in
// one process as well as in two). One byte tells that some open reads, one
// that some open writes, one that some open refuses readers, one that some
// open refuses writers. A file lock on the whole file keeps the test and
// the taking of the bytes together.
constexpr off_t kShareBase = off_t{0x7FFFFFFF} << 32;
enum : off_t { kReads = 1, kWrites, kDeniesRead, kDeniesWrite };

struct flock share_byte(short type, off_t byte) {
  struct flock lock = {};
  lock.l_type = type;
  lock.l_whence = SEEK_SET;
  lock.l_start = kShareBase + byte;
  lock.l_len = 1;
  return lock;
}

bool held_elsewhere(int fd, off_t byte) {
  struct flock probe = share_byte(F_WRLCK, byte);
  if (fcntl(fd, F_OFD_GETLK, &probe) != 0) return true;
  return probe.l_type != F_UNLCK;
}

bool hold(int fd, off_t byte) {
  struct flock lock = share_byte(F_RDLCK, byte);
  return fcntl(fd, F_OFD_SETLK, &lock) == 0;
}

}  // namespace

bool take_share(int fd, DWORD access, DWORD share) {
  const bool reads = (access & kGenericRead) != 0;
  const bool writes = (access & kGenericWrite) != 0;
  const bool denies_read = (share & kFileShareRead) == 0;
  const bool denies_write = (share & kFileShareWrite) == 0;
  if (!lock_shares(fd)) return false;
  const bool conflict =
      (reads && held_elsewhere(fd, kDeniesRead)) || (writes && held_elsewhere(fd, kDeniesWrite)) ||
      (denies_read && held_elsewhere(fd, kReads)) || (denies_write && held_elsewhere(fd, kWrites));
  const bool taken = !conflict && (!reads || hold(fd, kReads)) && (!writes || hold(fd, kWrites)) &&
                     (!denies_read || hold(fd, kDeniesRead)) &&
                     (!denies_write || hold(fd, kDeniesWrite));
  unlock_shares(fd);
  return taken;
}

bool lock_shares(int fd) {
  while (flock(fd, LOCK_EX) != 0)
    if (errno != EINTR) return false;
  return true;
}

void unlock_shares(int fd) { flock(fd, LOCK_UN); }

bool open_anywhere(int fd) {
  return held_elsewhere(fd, kReads) || held_elsewhere(fd, kWrites) ||
         held_elsewhere(fd, kDeniesRead) || held_elsewhere(fd, kDeniesWrite);
}

}  // namespace kz::os::posix
