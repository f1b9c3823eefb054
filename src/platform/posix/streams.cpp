// The runtime's streams as Windows' runtime has them, on POSIX: a real C
// stream (fopencookie) over a descriptor that keeps the share mode, with
// text mode's CR LF on disk and, under a ccs clause, 16-bit text stored as
// UTF-16LE behind a byte-order mark.
//
// What the C stream sees is the file less its byte-order mark, with CR LF
// read as LF and LF written as CR LF, in bytes or in 16-bit units; fgetws and
// fputws move 16-bit units through it in the file's byte order. Offsets are
// those of the file: a seek to 0 puts the byte-order mark before the next
// read, which then gives it as the unit U+FEFF, as Windows' runtime does.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <mutex>

#include "frame/memory.h"
#include "platform/posix/native.h"

namespace kz::os {
namespace {

using posix::kNativePathMax;

struct Mode {
  int flags = 0;
  DWORD access = 0;
  bool text = true;
  bool wide = false;
};

// Parses a runtime mode: r, w or a; then "+", "t" and "b" in any order;
// then an optional ",ccs=" clause. False for anything else.
bool parse_mode(const char* mode, Mode& out) {
  switch (mode[0]) {
    case 'r':
      out.access = kGenericRead;
      break;
    case 'w':
      out.access = kGenericWrite;
      out.flags = O_CREAT | O_TRUNC;
      break;
    case 'a':
      out.access = kGenericWrite;
      out.flags = O_CREAT | O_APPEND;
      break;
    default:
      return false;
  }
  const char* p = mode + 1;
  for (; *p != 0 && *p != ','; ++p) {
    if (*p == '+') {
      out.access = kGenericRead | kGenericWrite;
    } else if (*p == 'b') {
      out.text = false;
    } else if (*p != 't' && *p != ' ') {
      return false;
    }
  }
  if (*p == 0) return true;
  ++p;
  while (*p == ' ') ++p;
  if (std::strncmp(p, "ccs=", 4) != 0) return false;
  p += 4;
  if (strcasecmp(p, "UNICODE") != 0 && strcasecmp(p, "UTF-16LE") != 0 &&
      strcasecmp(p, "UTF-8") != 0)
    return false;
  // UTF-8 files are not written here; a ccs clause always means UTF-16LE on
  // disk, and a UTF-8 mark read back is kept as the text's first unit.
  out.wide = true;
  return true;
}

struct Stream {
  int fd;
  bool text;
  std::size_t unit;  // 1, or 2 for 16-bit text
  // Bytes read from the descriptor and not yet handed to the C stream.
  unsigned char raw[4096];
  std::size_t raw_at, raw_end;
  // An odd byte of a 16-bit unit that the C stream has not finished.
  unsigned char half;
  bool has_half;
  FILE* file;
  Stream* next;
};

// The open streams, so that fgetws and fputws find a stream's
// record from its FILE.
std::mutex registry_lock;
Stream* registry = nullptr;

Stream* record_of(FILE* file) {
  std::lock_guard<std::mutex> hold(registry_lock);
  for (Stream* s = registry; s != nullptr; s = s->next)
    if (s->file == file) return s;
  return nullptr;
}

void forget(Stream* stream) {
  std::lock_guard<std::mutex> hold(registry_lock);
  for (Stream** link = &registry; *link != nullptr; link = &(*link)->next) {
    if (*link == stream) {
      *link = stream->next;
      return;
    }
  }
}

bool write_all(int fd, const unsigned char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t n = ::write(fd, data, size);
    if (n < 0) {
      if (errno == EINTR) continue;
      return false;
    }
    data += n;
    size -= static_cast<std::size_t>(n);
  }
  return true;
}

// Moves the unread bytes to the front and reads more behind them. False at
// the end of the file or on an error.
bool refill(Stream& s) {
  std::memmove(s.raw, s.raw + s.raw_at, s.raw_end - s.raw_at);
  s.raw_end -= s.raw_at;
  s.raw_at = 0;
  ssize_t n;
  do {
    n = ::read(s.fd, s.raw + s.raw_end, sizeof s.raw - s.raw_end);
  } while (n < 0 && errno == EINTR);
  if (n <= 0) return false;
  s.raw_end += static_cast<std::size_t>(n);
  return true;
}

bool is_unit(const unsigned char* p, std::size_t unit, unsigned char value) {
  return p[0] == value && (unit == 1 || p[1] == 0);
}

ssize_t read_stream(void* cookie, char* buffer, std::size_t size) {
  Stream& s = *static_cast<Stream*>(cookie);
  const std::size_t u = s.unit;
  const auto available = [&s] { return s.raw_end - s.raw_at; };
  std::size_t out = 0;
  while (out + u <= size) {
    if (available() < u) {
      refill(s);
      if (available() == 0) break;
      if (available() < u) {  // a file that ends inside a unit
        buffer[out++] = static_cast<char>(s.raw[s.raw_at++]);
        continue;
      }
    }
    if (s.text && is_unit(s.raw + s.raw_at, u, '\r')) {
      // CR LF is one newline; a CR before anything else stays.
      if (available() < 2 * u) refill(s);
      if (available() >= 2 * u && is_unit(s.raw + s.raw_at + u, u, '\n')) s.raw_at += u;
    }
    std::memcpy(buffer + out, s.raw + s.raw_at, u);
    s.raw_at += u;
    out += u;
  }
  return static_cast<ssize_t>(out);
}

// Gives the bytes read ahead back to the file, before a write or a seek.
void drop_read_ahead(Stream& s) {
  if (s.raw_end > s.raw_at) lseek(s.fd, -static_cast<off_t>(s.raw_end - s.raw_at), SEEK_CUR);
  s.raw_at = s.raw_end = 0;
}

// A write that finds no room takes back what it added to the file, as a
// write on Windows adds nothing when it fails: no line is left torn, and the
// C stream, told that nothing was written, writes it all again at its next
// try.
ssize_t write_stream(void* cookie, const char* buffer, std::size_t size) {
  Stream& s = *static_cast<Stream*>(cookie);
  drop_read_ahead(s);
  const off_t at = lseek(s.fd, 0, SEEK_CUR);
  struct stat before;
  if (at < 0 || fstat(s.fd, &before) != 0) return -1;
  const auto fail = [&s, at, &before] {
    struct stat now;
    const bool grew = fstat(s.fd, &now) == 0 && now.st_size > before.st_size;
    if (!grew || ftruncate(s.fd, before.st_size) == 0) lseek(s.fd, at, SEEK_SET);
    return ssize_t{-1};
  };
  const auto* in = reinterpret_cast<const unsigned char*>(buffer);
  const std::size_t u = s.unit;
  unsigned char out[8192];
  std::size_t n = 0;
  std::size_t i = 0;
  unsigned char unit[2];
  while (i < size) {
    // Complete a unit that began in the last write.
    if (u == 2 && s.has_half) {
      unit[0] = s.half;
      unit[1] = in[i++];
      s.has_half = false;
    } else if (u == 2 && i + 1 == size) {
      s.half = in[i++];
      s.has_half = true;
      break;
    } else {
      std::memcpy(unit, in + i, u);
      i += u;
    }
    if (n + 2 * u > sizeof out) {
      if (!write_all(s.fd, out, n)) return fail();
      n = 0;
    }
    if (s.text && is_unit(unit, u, '\n')) {
      out[n] = '\r';
      if (u == 2) out[n + 1] = 0;
      n += u;
    }
    std::memcpy(out + n, unit, u);
    n += u;
  }
  if (!write_all(s.fd, out, n)) return fail();
  return static_cast<ssize_t>(size);
}

int seek_stream(void* cookie, off64_t* offset, int whence) {
  Stream& s = *static_cast<Stream*>(cookie);
  drop_read_ahead(s);
  const off_t target = lseek(s.fd, *offset, whence);
  if (target < 0) return -1;
  *offset = target;
  return 0;
}

int close_stream(void* cookie) {
  auto* s = static_cast<Stream*>(cookie);
  forget(s);
  const int result = ::close(s->fd);
  release(s);
  return result;
}

// Reads a byte-order mark, or writes one on an empty file opened for
// writing. Gives the size of the mark; -1 on an error.
off_t byte_order_mark(int fd, const Mode& mode) {
  struct stat st;
  if (fstat(fd, &st) != 0) return -1;
  if (st.st_size == 0) {
    if ((mode.access & kGenericWrite) == 0) return 0;
    static const unsigned char kMark[] = {0xFF, 0xFE};
    return write_all(fd, kMark, 2) ? 2 : -1;
  }
  unsigned char head[2] = {};
  if (pread(fd, head, 2, 0) == 2 && head[0] == 0xFF && head[1] == 0xFE) {
    lseek(fd, 2, SEEK_SET);
    return 2;
  }
  return 0;
}

errno_t open_stream(FILE** result, const char* native, const Mode& mode) {
  // The share lock takes read locks, so the descriptor can always read; the
  // runtime mode still decides what the stream may do.
  int fd = open(native, (mode.flags & ~O_TRUNC) | O_RDWR | O_CLOEXEC | O_NOCTTY, 0666);
  if (fd < 0 && errno == EACCES && mode.access == kGenericRead)
    fd = open(native, O_RDONLY | O_CLOEXEC | O_NOCTTY);
  if (fd < 0) return errno;
  struct stat st;
  if (fstat(fd, &st) != 0 || S_ISDIR(st.st_mode)) {
    close(fd);
    return EACCES;
  }
  // Readers share with readers; a writer shares with no one.
  const DWORD share = mode.access == kGenericRead ? kFileShareRead : 0;
  if (!posix::take_share(fd, mode.access, share)) {
    close(fd);
    return EACCES;
  }
  if ((mode.flags & O_TRUNC) != 0 && ftruncate(fd, 0) != 0) {
    const errno_t error = errno;
    close(fd);
    return error;
  }
  const off_t base = mode.wide ? byte_order_mark(fd, mode) : 0;
  auto* s = static_cast<Stream*>(allocate(sizeof(Stream)));
  if (base < 0 || s == nullptr) {
    release(s);
    close(fd);
    return base < 0 ? EIO : ENOMEM;
  }
  *s = Stream{};
  s->fd = fd;
  s->text = mode.text;
  s->unit = mode.wide ? 2 : 1;
  const cookie_io_functions_t io = {read_stream, write_stream, seek_stream, close_stream};
  const char* c_mode = mode.access == kGenericRead ? "r"
                       : (mode.flags & O_APPEND) != 0
                           ? (mode.access & kGenericRead) != 0 ? "a+" : "a"
                       : (mode.access & kGenericRead) != 0 ? "r+"
                                                           : "w";
  s->file = fopencookie(s, c_mode, io);
  if (s->file == nullptr) {
    release(s);
    close(fd);
    return ENOMEM;
  }
  {
    std::lock_guard<std::mutex> hold(registry_lock);
    s->next = registry;
    registry = s;
  }
  *result = s->file;
  return 0;
}

}  // namespace

errno_t fopen_s(FILE** stream, const char* path, const char* mode) {
  if (stream == nullptr) return EINVAL;
  *stream = nullptr;
  Mode parsed;
  char native[kNativePathMax];
  if (path == nullptr || mode == nullptr || !parse_mode(mode, parsed)) return EINVAL;
  if (path[0] == 0 || !posix::native_path(path, native)) return ENOENT;
  return open_stream(stream, native, parsed);
}

errno_t _wfopen_s(FILE** stream, const WCHAR* path, const WCHAR* mode) {
  if (stream == nullptr) return EINVAL;
  *stream = nullptr;
  char narrow_mode[64];
  if (path == nullptr || mode == nullptr ||
      posix::to_utf8(mode, narrow_mode, sizeof narrow_mode) < 0)
    return EINVAL;
  Mode parsed;
  char native[kNativePathMax];
  if (!parse_mode(narrow_mode, parsed)) return EINVAL;
  if (path[0] == 0 || !posix::native_path(path, native)) return ENOENT;
  return open_stream(stream, native, parsed);
}

char* fgets(char* buffer, int size, FILE* stream) { return ::fgets(buffer, size, stream); }

WCHAR* fgetws(WCHAR* buffer, int size, FILE* stream) {
  const Stream* s = record_of(stream);
  const bool wide = s != nullptr && s->unit == 2;
  int n = 0;
  while (n + 1 < size) {
    const int low = getc(stream);
    if (low == EOF) break;
    WCHAR unit = static_cast<WCHAR>(low);
    if (wide) {
      const int high = getc(stream);
      if (high == EOF) break;
      unit = static_cast<WCHAR>(low | (high << 8));
    }
    buffer[n++] = unit;
    if (unit == u'\n') break;
  }
  if (n == 0) return nullptr;
  buffer[n] = 0;
  return buffer;
}

int fputs(const char* text, FILE* stream) { return ::fputs(text, stream); }

int fputws(const WCHAR* text, FILE* stream) {
  const Stream* s = record_of(stream);
  const bool wide = s != nullptr && s->unit == 2;
  for (const WCHAR* p = text; *p != 0; ++p) {
    if (wide) {
      if (putc(*p & 0xFF, stream) == EOF || putc(*p >> 8, stream) == EOF) return EOF;
    } else if (*p > 0xFF) {
      // A narrow stream of the runtime's "C" locale takes no such unit: the
      // write ends there, and the stream shows no error.
      return EOF;
    } else if (putc(*p, stream) == EOF) {
      return EOF;
    }
  }
  return 0;
}

int feof(FILE* stream) { return ::feof(stream); }

int ferror(FILE* stream) { return ::ferror(stream); }

int fseek(FILE* stream, long offset, int origin) { return ::fseek(stream, offset, origin); }

int fclose(FILE* stream) { return ::fclose(stream); }

}  // namespace kz::os
