// Opening and ending a status file: KZ_StatusCreateFile and
// KZ_StatusEndFile.
//
// Every process opens the file the same way (read and write, shared for
// both but not for delete, open always), so the first call creates it and
// the later ones find it with its value. Since no open shares delete, a
// delete succeeds only for the last process to close: that one removes the
// file.
#include "frame/convert.h"
#include "frame/memory.h"
#include "paths/query.h"
#include "status/record.h"

namespace kz {
namespace {

constexpr os::DWORD kShareReadWrite = os::kFileShareRead | os::kFileShareWrite;
constexpr os::DWORD kEndRetryMs = 500;

// The directory of the file: the caller's, or the value of "Temp". False
// when neither fits the limit or "Temp" is not set.
bool status_directory(const char* directory, char (&out)[kStatusPathLimit]) {
  if (directory != nullptr) return os::strcpy_s(out, kStatusPathLimit, directory) == 0;
  const os::DWORD length = os::GetEnvironmentVariableA("Temp", out, kStatusPathLimit);
  return length != 0 && length < static_cast<os::DWORD>(kStatusPathLimit);
}

}  // namespace

StatusFileHandle* status_create(const char* name, const char* directory) {
  if (name == nullptr) return nullptr;
  char folder[kStatusPathLimit];
  if (!status_directory(directory, folder)) return nullptr;
  auto* status = static_cast<StatusFileHandle*>(allocate(sizeof(StatusFileHandle)));
  if (status == nullptr) return nullptr;
  *status = StatusFileHandle{};
  // A directory that ends in a backslash gives a doubled one: kept, as the
  // platform reads it as one separator.
  if (os::strcpy_s(status->path, kStatusPathLimit, folder) != 0 ||
      os::strcat_s(status->path, kStatusPathLimit, "\\") != 0 ||
      os::strcat_s(status->path, kStatusPathLimit, name) != 0) {
    release(status);
    return nullptr;
  }
  status->file =
      os::CreateFileA(status->path, os::kGenericRead | os::kGenericWrite, kShareReadWrite, nullptr,
                      os::kOpenAlways, os::kFileAttributeTemporary, nullptr);
  if (status->file == os::kInvalidHandle) {
    release(status);
    return nullptr;
  }
  return status;
}

}  // namespace kz

extern "C" {

KZ_API StatusFileHandle* KZ_StatusCreateFileA(const char* file_name, const char* directory) {
  return kz::status_create(file_name, directory);
}

KZ_API StatusFileHandle* KZ_StatusCreateFileW(const KZ_WCHAR* file_name,
                                              const KZ_WCHAR* directory) {
  if (file_name == nullptr) return nullptr;
  // Narrow forms that do not fit the limit give null rather than a cut name.
  char name[kz::kStatusPathLimit];
  char folder[kz::kStatusPathLimit];
  if (kz::to_narrow(file_name, name, kz::kStatusPathLimit) == 1) return nullptr;
  if (directory != nullptr && kz::to_narrow(directory, folder, kz::kStatusPathLimit) == 1)
    return nullptr;
  return kz::status_create(name, directory != nullptr ? folder : nullptr);
}

KZ_API int32_t KZ_StatusEndFile(StatusFileHandle* status, int32_t wait) {
  if (status == nullptr) return 0;
  const kz::os::BOOL closed = kz::os::CloseHandle(status->file);
  if (!closed) return 0;
  if (wait != 0) {
    // Stays until the last holder has closed, which may be never.
    while (kz::check_file(status->path) != 0 && !kz::os::DeleteFileA(status->path))
      kz::os::Sleep(kz::kEndRetryMs);
  } else {
    kz::os::DeleteFileA(status->path);
  }
  kz::release(status);
  return closed;
}

}  // extern "C"
