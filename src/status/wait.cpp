// Waiting for a value: KZ_StatusIsStringWait and KZ_StatusIsDataWait.
//
// A wait watches the file's directory and compares the value at once and
// then at each change, until it matches (0), no change came within the
// timeout (1), or something failed (2). The timeout starts anew with every
// change in the directory, so a directory that keeps changing keeps the
// wait going: intended, the timeout bounds the quiet between changes.
//
// The reference time is the file's last write time at entry, taken once:
// while the file still has it, a change elsewhere in the directory costs
// no read. A write that lands within the same tick of the file system's
// clock as the reference looks like no write, and is seen at the next
// change or the timeout.
#include <cstring>

#include "frame/convert.h"
#include "frame/memory.h"
#include "paths/dissect.h"
#include "status/record.h"

namespace kz {
namespace {

constexpr int32_t kMatch = 0;
constexpr int32_t kTimedOut = 1;
constexpr int32_t kFailed = 2;
constexpr int32_t kNoMatch = -1;

// True when the file still has the reference time, so it cannot hold a new
// value. The current time's own failure is not looked at.
bool unchanged_since(StatusFileHandle* status, const FILETIME* reference) {
  if (reference == nullptr) return false;
  FILETIME now{};
  os::GetFileTime(status->file, nullptr, nullptr, &now);
  return os::CompareFileTime(reference, &now) == 0;
}

// The whole file against expected text: a file that only begins with it
// does not match.
int32_t compare_text(StatusFileHandle* status, const char* expected, const FILETIME* reference) {
  if (unchanged_since(status, reference)) return kNoMatch;
  const os::DWORD size = os::GetFileSize(status->file, nullptr);
  if (size == 0xFFFFFFFF) return kFailed;
  Scratch<char> value(static_cast<std::size_t>(size) + 1);
  if (!value) return kFailed;
  std::memset(value.get(), 0, static_cast<std::size_t>(size) + 1);
  if (!status_read(status, value.get(), size, nullptr)) return kFailed;
  return std::strcmp(expected, value.get()) == 0 ? kMatch : kNoMatch;
}

// The first size bytes of the file against expected bytes: a longer file
// that begins with them matches, a shorter one does not.
int32_t compare_data(StatusFileHandle* status, const void* expected, uint32_t size,
                     const FILETIME* reference) {
  if (unchanged_since(status, reference)) return kNoMatch;
  Scratch<char> value(size != 0 ? size : 1);
  if (!value) return kFailed;
  os::DWORD got = 0;
  if (!status_read(status, value.get(), size, &got)) return kFailed;
  if (got < size) return kNoMatch;
  return std::memcmp(expected, value.get(), size) == 0 ? kMatch : kNoMatch;
}

// A change notification on a directory, closed on every way out.
class ChangeWatch {
 public:
  explicit ChangeWatch(const char* directory)
      : handle_(os::FindFirstChangeNotificationA(directory, 0, os::kFileNotifyChangeLastWrite)) {}
  ~ChangeWatch() {
    if (*this) os::FindCloseChangeNotification(handle_);
  }
  ChangeWatch(const ChangeWatch&) = delete;
  ChangeWatch& operator=(const ChangeWatch&) = delete;

  explicit operator bool() const { return handle_ != os::kInvalidHandle; }
  os::HANDLE get() const { return handle_; }

 private:
  os::HANDLE handle_;
};

// The wait loop; compare(reference) gives kMatch, kNoMatch or kFailed.
template <class Compare>
int32_t wait_for(StatusFileHandle* status, uint32_t timeout, Compare compare) {
  FILETIME reference{};
  if (!os::GetFileTime(status->file, nullptr, nullptr, &reference)) return kFailed;
  char directory[kStatusPathLimit];
  if (directory_name(status->path, directory, kStatusPathLimit) < 0) return kFailed;
  // The watch exists before the first comparison, so a change right after
  // it still signals the wait.
  const ChangeWatch watch(directory);
  if (!watch) return kFailed;
  int32_t answer = compare(nullptr);
  while (answer == kNoMatch) {
    switch (os::WaitForSingleObject(watch.get(), timeout)) {
      case os::kWaitObject0:
        answer = compare(&reference);
        if (answer == kNoMatch && !os::FindNextChangeNotification(watch.get())) answer = kFailed;
        break;
      case os::kWaitTimeout:
        answer = kTimedOut;
        break;
      default:
        answer = kFailed;
        break;
    }
  }
  return answer;
}

int32_t wait_for_text(StatusFileHandle* status, const char* expected, uint32_t timeout) {
  return wait_for(status, timeout, [&](const FILETIME* reference) {
    return compare_text(status, expected, reference);
  });
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StatusIsStringWaitA(StatusFileHandle* status, const char* expected,
                                      uint32_t timeout) {
  if (status == nullptr || expected == nullptr) return kz::kFailed;
  return kz::wait_for_text(status, expected, timeout);
}

KZ_API int32_t KZ_StatusIsStringWaitW(StatusFileHandle* status, const KZ_WCHAR* expected,
                                      uint32_t timeout) {
  if (status == nullptr || expected == nullptr) return kz::kFailed;
  // The file holds narrow text, so the comparison is narrow.
  const kz::NarrowText narrow(expected);
  if (!narrow) return kz::kFailed;
  return kz::wait_for_text(status, narrow.get(), timeout);
}

KZ_API int32_t KZ_StatusIsDataWait(StatusFileHandle* status, const void* expected, uint32_t size,
                                   uint32_t timeout) {
  if (status == nullptr || expected == nullptr) return kz::kFailed;
  return kz::wait_for(status, timeout, [&](const FILETIME* reference) {
    return kz::compare_data(status, expected, size, reference);
  });
}

}  // extern "C"
