// Files and directories as Windows has them, on a POSIX file system: Windows
// paths, a search with wildcards in the last component, a current directory
// with a drive, and opens that keep to their share modes across threads and
// processes.
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "platform/filetime.h"
#include "platform/posix/native.h"

namespace kz::os {
namespace {

using posix::kNativePathMax;

using posix::descriptor_of;
using posix::handle_of;

// No FindNextFile is offered, so a search keeps no state and its handle is
// a token.
HANDLE const kSearchToken = reinterpret_cast<HANDLE>(std::intptr_t{0x4});

FILETIME file_time(const struct statx_timestamp& t) {
  // Seconds from 1601 to 1970, and ticks of 100 ns.
  const auto ticks =
      static_cast<std::uint64_t>(t.tv_sec + 11644473600LL) * 10000000u + t.tv_nsec / 100u;
  return FILETIME{static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

// One character of UTF-8 from p: its length in bytes.
std::size_t character_length(const char* p) {
  const auto lead = static_cast<unsigned char>(*p);
  std::size_t n = lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  for (std::size_t k = 1; k < n; ++k)
    if (p[k] == 0) return k;
  return n;
}

char fold(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 0x20) : c; }

// Windows' wildcards without regard to ASCII case: "*" any run of
// characters, "?" one character.
bool matches(const char* pattern, const char* name) {
  if (*pattern == 0) return *name == 0;
  if (*pattern == '*') {
    for (const char* p = name;; p += character_length(p)) {
      if (matches(pattern + 1, p)) return true;
      if (*p == 0) return false;
    }
  }
  if (*name == 0) return false;
  if (*pattern == '?') return matches(pattern + 1, name + character_length(name));
  return fold(*pattern) == fold(*name) && matches(pattern + 1, name + 1);
}

// The name of the first entry that the native path finds, into found.
bool search(const char* native, char (&found)[kNativePathMax]) {
  const char* slash = std::strrchr(native, '/');
  const char* last = slash == nullptr ? native : slash + 1;
  if (*last == 0) return false;  // a path ending in a separator finds nothing
  if (std::strpbrk(last, "*?") == nullptr) {
    struct stat st;
    if (stat(native, &st) != 0) return false;
    std::strcpy(found, last);
    return true;
  }
  char directory[kNativePathMax];
  if (slash == nullptr) {
    std::strcpy(directory, ".");
  } else if (slash == native) {
    std::strcpy(directory, "/");
  } else {
    std::memcpy(directory, native, static_cast<std::size_t>(slash - native));
    directory[slash - native] = 0;
  }
  DIR* entries = opendir(directory);
  if (entries == nullptr) return false;
  bool any = false;
  while (const struct dirent* entry = readdir(entries)) {
    if (matches(last, entry->d_name)) {
      std::strcpy(found, entry->d_name);
      any = true;
      break;
    }
  }
  closedir(entries);
  return any;
}

template <class Data>
void clear(Data* data) {
  std::memset(data, 0, sizeof *data);
}

HANDLE find_first(const char* native, WIN32_FIND_DATAW* data) {
  char found[kNativePathMax];
  if (!search(native, found)) return kInvalidHandle;
  clear(data);
  posix::from_utf8(found, data->cFileName, 260);
  return kSearchToken;
}

DWORD current_directory(WCHAR* out, std::size_t capacity) {
  char native[kNativePathMax];
  if (getcwd(native, sizeof native) == nullptr) return 0;
  out[0] = u'C';
  out[1] = u':';
  const long n = posix::from_utf8(native, out + 2, capacity - 2);
  if (n < 0) return 0;
  for (WCHAR* p = out; *p != 0; ++p)
    if (*p == u'/') *p = u'\\';
  return static_cast<DWORD>(n + 2);
}

// Copies a text of `length` elements and its terminator into buffer when
// size holds them; else gives the size needed.
template <class Ch>
DWORD deliver(const Ch* text, DWORD length, Ch* buffer, DWORD size) {
  if (length == 0) return 0;
  if (size <= length) return length + 1;
  std::memcpy(buffer, text, (length + 1) * sizeof(Ch));
  return length;
}

HANDLE create_file(const char* native, DWORD access, DWORD share, DWORD disposition,
                   int retries = 8) {
  int flags = O_CLOEXEC | O_NOCTTY;
  if (disposition == 1) flags |= O_CREAT | O_EXCL;  // CREATE_NEW
  if (disposition == kCreateAlways || disposition == kOpenAlways) flags |= O_CREAT;
  // The share lock takes read locks, so a writer opens for reading too where
  // it may.
  int fd = -1;
  if ((access & kGenericWrite) != 0) {
    fd = open(native, flags | O_RDWR, 0666);
    if (fd < 0 && errno == EACCES && (access & kGenericRead) == 0)
      fd = open(native, flags | O_WRONLY, 0666);
  } else {
    fd = open(native, flags | O_RDONLY, 0666);
  }
  if (fd < 0) return kInvalidHandle;
  struct stat st;
  if (fstat(fd, &st) != 0 || S_ISDIR(st.st_mode) || !posix::take_share(fd, access, share)) {
    close(fd);
    return kInvalidHandle;
  }
  // A DeleteFile that ran between the open and the share lock removed the
  // name: this open holds a file nobody else can reach, so it starts over.
  if (fstat(fd, &st) != 0 || st.st_nlink == 0) {
    close(fd);
    return retries > 0 ? create_file(native, access, share, disposition, retries - 1)
                       : kInvalidHandle;
  }
  // A file is cut only once the open is allowed.
  if ((disposition == kCreateAlways || disposition == 5) && ftruncate(fd, 0) != 0) {
    close(fd);
    return kInvalidHandle;
  }
  return handle_of(fd);
}

}  // namespace

HANDLE FindFirstFileW(const WCHAR* path, WIN32_FIND_DATAW* data) {
  char native[kNativePathMax];
  if (!posix::native_path(path, native)) return kInvalidHandle;
  return find_first(native, data);
}

HANDLE FindFirstFileA(const char* path, WIN32_FIND_DATAA* data) {
  char native[kNativePathMax];
  if (!posix::native_path(path, native)) return kInvalidHandle;
  WIN32_FIND_DATAW wide;
  const HANDLE found = find_first(native, &wide);
  if (found == kInvalidHandle) return found;
  clear(data);
  WideCharToMultiByte(kAnsiCodePage, 0, wide.cFileName, -1, data->cFileName, 260, nullptr, nullptr);
  return found;
}

BOOL FindClose(HANDLE find) { return find == kSearchToken ? 1 : 0; }

DWORD GetCurrentDirectoryW(DWORD size, WCHAR* buffer) {
  WCHAR whole[kNativePathMax];
  return deliver(whole, current_directory(whole, kNativePathMax), buffer, size);
}

DWORD GetCurrentDirectoryA(DWORD size, char* buffer) {
  WCHAR whole[kNativePathMax];
  if (current_directory(whole, kNativePathMax) == 0) return 0;
  char narrow[2 * kNativePathMax];
  const int written =
      WideCharToMultiByte(kAnsiCodePage, 0, whole, -1, narrow, sizeof narrow, nullptr, nullptr);
  if (written <= 0) return 0;
  return deliver(narrow, static_cast<DWORD>(written - 1), buffer, size);
}

BOOL SetCurrentDirectoryW(const WCHAR* path) {
  char native[kNativePathMax];
  return path[0] != 0 && posix::native_path(path, native) && chdir(native) == 0;
}
BOOL SetCurrentDirectoryA(const char* path) {
  char native[kNativePathMax];
  return path[0] != 0 && posix::native_path(path, native) && chdir(native) == 0;
}

BOOL CreateDirectoryW(const WCHAR* path, void*) {
  char native[kNativePathMax];
  return path[0] != 0 && posix::native_path(path, native) && mkdir(native, 0777) == 0;
}
BOOL CreateDirectoryA(const char* path, void*) {
  char native[kNativePathMax];
  return path[0] != 0 && posix::native_path(path, native) && mkdir(native, 0777) == 0;
}

HANDLE CreateFileW(const WCHAR* path, DWORD access, DWORD share, void*, DWORD disposition, DWORD,
                   HANDLE) {
  char native[kNativePathMax];
  if (path[0] == 0 || !posix::native_path(path, native)) return kInvalidHandle;
  return create_file(native, access, share, disposition);
}
HANDLE CreateFileA(const char* path, DWORD access, DWORD share, void*, DWORD disposition, DWORD,
                   HANDLE) {
  char native[kNativePathMax];
  if (path[0] == 0 || !posix::native_path(path, native)) return kInvalidHandle;
  return create_file(native, access, share, disposition);
}

BOOL GetFileSizeEx(HANDLE file, std::int64_t* size) {
  struct stat st;
  if (fstat(descriptor_of(file), &st) != 0) return 0;
  *size = st.st_size;
  return 1;
}

DWORD GetFileSize(HANDLE file, DWORD* high) {
  std::int64_t size;
  if (!GetFileSizeEx(file, &size)) return 0xFFFFFFFF;
  if (high != nullptr) *high = static_cast<DWORD>(static_cast<std::uint64_t>(size) >> 32);
  return static_cast<DWORD>(size);
}

BOOL GetFileTime(HANDLE file, FILETIME* creation, FILETIME* last_access, FILETIME* last_write) {
  struct statx st;
  if (statx(descriptor_of(file), "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &st) != 0)
    return 0;
  // A file system that keeps no birth time gives the last change instead.
  if (creation != nullptr)
    *creation = file_time((st.stx_mask & STATX_BTIME) != 0 ? st.stx_btime : st.stx_ctime);
  if (last_access != nullptr) *last_access = file_time(st.stx_atime);
  if (last_write != nullptr) *last_write = file_time(st.stx_mtime);
  return 1;
}

BOOL CloseHandle(HANDLE object) {
  const int fd = descriptor_of(object);
  return fd >= 0 && close(fd) == 0;
}

}  // namespace kz::os
