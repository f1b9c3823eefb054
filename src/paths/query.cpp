// File system queries: KZ_CheckFile, KZ_CheckDirectory, KZ_CreateDirectory,
// KZ_GetFileSize and KZ_GetFileTime.
//
// Unlike path dissection, the directory walk of KZ_CreateDirectoryA takes
// every byte alone: a trail byte 0x5C counts as a backslash there, so the
// walk may try a prefix that ends inside a double-byte character. Intended;
// the level it names fails and the walk goes on.
#include "paths/query.h"

#include "paths/dissect.h"

namespace kz {
namespace {

constexpr int kBackslash = 0x5C;
constexpr int kColon = 0x3A;

// The file opened for reading and shared with no one, so that a file open
// anywhere else cannot be opened here. Closed with the holder.
template <class Ch>
class Exclusive {
 public:
  explicit Exclusive(const Ch* path)
      : handle_(Text<Ch>::create_file(path, os::kGenericRead, 0, os::kOpenExisting)) {}
  ~Exclusive() {
    if (*this) os::CloseHandle(handle_);
  }
  Exclusive(const Exclusive&) = delete;
  Exclusive& operator=(const Exclusive&) = delete;

  explicit operator bool() const { return handle_ != os::kInvalidHandle; }
  os::HANDLE get() const { return handle_; }

 private:
  os::HANDLE handle_;
};

}  // namespace

template <class Ch>
int32_t check_file(const Ch* path) {
  const os::HANDLE found = Text<Ch>::find_first(path);
  if (found == os::kInvalidHandle) return 0;
  os::FindClose(found);
  return 1;
}

template <class Ch>
int32_t check_directory(const Ch* path) {
  Ch saved[kPathLimit];
  // Without the saved text there is no way back: a current directory that
  // does not fit is not left.
  const os::DWORD saved_length = Text<Ch>::current_directory(kPathLimit, saved);
  if (saved_length == 0 || saved_length >= static_cast<os::DWORD>(kPathLimit)) return 0;
  if (!Text<Ch>::set_current_directory(path)) return 0;
  Text<Ch>::set_current_directory(saved);
  return 1;
}

template <class Ch>
int32_t create_directory(const Ch* path) {
  Ch work[kPathLimit];
  Ch prefix[kPathLimit];
  if (Text<Ch>::copy(work, kPathLimit, path) != 0) return 0;
  const std::size_t n = length(work);
  // Only one trailing backslash goes.
  if (n > 0 && work[n - 1] == Ch(kBackslash)) work[n - 1] = 0;
  for (std::size_t i = 0; i < n; ++i) {
    // The element behind a colon is passed over, so "C:\" is never a level.
    if (work[i] == Ch(kColon)) {
      ++i;
    } else if (work[i] == Ch(kBackslash)) {
      Text<Ch>::copy_n(prefix, kPathLimit, work, i);
      Text<Ch>::create_directory(prefix);  // a level that is there or fails is passed
    }
  }
  return Text<Ch>::create_directory(work) ? 1 : 0;
}

template <class Ch>
uint32_t file_size(const Ch* path, uint64_t* size) {
  const Exclusive<Ch> file(path);
  if (!file) return 0xFFFFFFFF;
  if (size == nullptr) return os::GetFileSize(file.get(), nullptr);
  std::int64_t whole;
  if (!os::GetFileSizeEx(file.get(), &whole)) return 0xFFFFFFFF;
  *size = static_cast<uint64_t>(whole);
  return static_cast<uint32_t>(whole);
}

template <class Ch>
int32_t file_time(const Ch* path, FILETIME* creation, FILETIME* last_access, FILETIME* last_write) {
  const Exclusive<Ch> file(path);
  if (!file) return 0;
  return os::GetFileTime(file.get(), creation, last_access, last_write);
}

template int32_t check_file(const char*);
template int32_t check_file(const wchar*);
template int32_t check_directory(const char*);
template int32_t check_directory(const wchar*);
template int32_t create_directory(const char*);
template int32_t create_directory(const wchar*);
template uint32_t file_size(const char*, uint64_t*);
template uint32_t file_size(const wchar*, uint64_t*);
template int32_t file_time(const char*, FILETIME*, FILETIME*, FILETIME*);
template int32_t file_time(const wchar*, FILETIME*, FILETIME*, FILETIME*);

}  // namespace kz

extern "C" {

KZ_API int32_t KZ_CheckFileW(const KZ_WCHAR* path) { return kz::check_file(path); }
KZ_API int32_t KZ_CheckFileA(const char* path) { return kz::check_file(path); }
KZ_API int32_t KZ_CheckDirectoryW(const KZ_WCHAR* path) { return kz::check_directory(path); }
KZ_API int32_t KZ_CheckDirectoryA(const char* path) { return kz::check_directory(path); }
KZ_API int32_t KZ_CreateDirectoryW(const KZ_WCHAR* path) { return kz::create_directory(path); }
KZ_API int32_t KZ_CreateDirectoryA(const char* path) { return kz::create_directory(path); }
KZ_API uint32_t KZ_GetFileSizeW(const KZ_WCHAR* path, uint64_t* size) {
  return kz::file_size(path, size);
}
KZ_API uint32_t KZ_GetFileSizeA(const char* path, uint64_t* size) {
  return kz::file_size(path, size);
}
KZ_API int32_t KZ_GetFileTimeW(const KZ_WCHAR* path, FILETIME* creation, FILETIME* last_access,
                               FILETIME* last_write) {
  return kz::file_time(path, creation, last_access, last_write);
}
KZ_API int32_t KZ_GetFileTimeA(const char* path, FILETIME* creation, FILETIME* last_access,
                               FILETIME* last_write) {
  return kz::file_time(path, creation, last_access, last_write);
}

}  // extern "C"
