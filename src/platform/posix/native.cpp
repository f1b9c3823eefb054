// Windows paths on a POSIX file system, UTF-8 for names and values, and the
// share modes of open files across threads and processes.
#include "platform/posix/native.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>

namespace kz::os::posix {

long to_utf8(const WCHAR* text, char* out, std::size_t capacity) {
  std::size_t n = 0;
  const auto put = [&](unsigned value) {
    if (n + 1 >= capacity) return false;
    out[n++] = static_cast<char>(value);
    return true;
  };
  for (std::size_t i = 0; text[i] != 0; ++i) {
    char32_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    } else if (c >= 0xD800 && c <= 0xDFFF) {
      c = 0xFFFD;
    }
    bool fits;
    if (c < 0x80) {
      fits = put(c);
    } else if (c < 0x800) {
      fits = put(0xC0 | (c >> 6)) && put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
      fits = put(0xE0 | (c >> 12)) && put(0x80 | ((c >> 6) & 0x3F)) && put(0x80 | (c & 0x3F));
    } else {
      fits = put(0xF0 | (c >> 18)) && put(0x80 | ((c >> 12) & 0x3F)) &&
             put(0x80 | ((c >> 6) & 0x3F)) && put(0x80 | (c & 0x3F));
    }
    if (!fits) return -1;
  }
  if (capacity == 0) return -1;
  out[n] = 0;
  return static_cast<long>(n);
}

long from_utf8(const char* text, WCHAR* out, std::size_t capacity) {
  std::size_t n = 0;
  const auto put = [&](char32_t unit) {
    if (n + 1 >= capacity) return false;
    out[n++] = static_cast<WCHAR>(unit);
    return true;
  };
  const auto* p = reinterpret_cast<const unsigned char*>(text);
  while (*p != 0) {
    char32_t c = *p;
    int extra = c < 0x80 ? 0 : c >= 0xF0 && c < 0xF5 ? 3 : c >= 0xE0 ? 2 : c >= 0xC2 ? 1 : -1;
    if (extra > 0) c &= 0x3F >> extra;
    ++p;
    for (int k = 0; k < extra; ++k, ++p) {
      if ((*p & 0xC0) != 0x80) {
        extra = -1;
        break;
      }
      c = (c << 6) | (*p & 0x3F);
    }
    if (extra < 0 || (c >= 0xD800 && c <= 0xDFFF) || c > 0x10FFFF) c = 0xFFFD;
    const bool fits =
        c >= 0x10000 ? put(0xD800 + ((c - 0x10000) >> 10)) && put(0xDC00 + ((c - 0x10000) & 0x3FF))
                     : put(c);
    if (!fits) return -1;
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

bool held_elsewhere(int fd, off_t byte) {
  struct flock probe = {};
  probe.l_type = F_WRLCK;
  probe.l_whence = SEEK_SET;
  probe.l_start = kShareBase + byte;
  probe.l_len = 1;
  if (fcntl(fd, F_OFD_GETLK, &probe) != 0) return true;
  return probe.l_type != F_UNLCK;
}

bool hold(int fd, off_t byte) {
  struct flock lock = {};
  lock.l_type = F_RDLCK;
  lock.l_whence = SEEK_SET;
  lock.l_start = kShareBase + byte;
  lock.l_len = 1;
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
