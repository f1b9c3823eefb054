// Writing and reading the value: KZ_StatusSetString, KZ_StatusSetData,
// KZ_StatusGetString and KZ_StatusGetData.
//
// A write rewinds, cuts and writes, so a reader in between sees an empty
// or a partial value; the waits compare again at the next change. The
// string getters read at most size bytes and force the last one to 0, so
// at most size - 1 bytes of the value arrive: intended, it keeps the
// result terminated without a second buffer.
#include <cstring>

#include "frame/convert.h"
#include "frame/memory.h"
#include "status/record.h"

namespace kz {
namespace {

// Moves to offset 0; its result is not looked at, as the transfer behind it
// fails on a handle that cannot move.
void rewind(StatusFileHandle* status) {
  os::SetFilePointer(status->file, 0, nullptr, os::kFileBegin);
}

// The value as text of the element type: narrow text lands in out itself,
// wide text is read into narrow scratch and converted up.
template <class Ch>
int32_t get_string(StatusFileHandle* status, Ch* out, int32_t size) {
  if (status == nullptr || out == nullptr || size <= 0) return 0;
  const auto bytes = static_cast<uint32_t>(size);
  if constexpr (Text<Ch>::narrow) {
    std::memset(out, 0, bytes);
    if (!status_read(status, out, bytes, nullptr)) return 0;
    out[size - 1] = 0;
  } else {
    Scratch<char> narrow(bytes + 2);
    if (!narrow) return 0;
    std::memset(narrow.get(), 0, bytes + 2);
    if (!status_read(status, narrow.get(), bytes, nullptr)) return 0;
    narrow.get()[size - 1] = 0;
    to_wide(narrow.get(), out, size);
  }
  return 1;
}

}  // namespace

int32_t status_set(StatusFileHandle* status, const void* data, uint32_t size) {
  if (status == nullptr) return 0;
  rewind(status);
  os::SetEndOfFile(status->file);
  os::DWORD written = 0;
  // An empty value still goes through WriteFile, with a valid pointer.
  const os::BOOL done =
      os::WriteFile(status->file, data != nullptr ? data : "", size, &written, nullptr);
  if (done) os::FlushFileBuffers(status->file);
  return done;
}

int32_t status_read(StatusFileHandle* status, void* out, uint32_t size, os::DWORD* done) {
  rewind(status);
  os::DWORD got = 0;
  const os::BOOL read = os::ReadFile(status->file, out, size, &got, nullptr);
  if (done != nullptr) *done = got;
  return read;
}

}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StatusSetStringA(StatusFileHandle* status, const char* text) {
  if (text == nullptr) return 0;
  return kz::status_set(status, text, static_cast<uint32_t>(std::strlen(text)));
}

KZ_API int32_t KZ_StatusSetStringW(StatusFileHandle* status, const KZ_WCHAR* text) {
  if (status == nullptr || text == nullptr) return 0;
  const kz::NarrowText narrow(text);
  if (!narrow) return 0;
  return kz::status_set(status, narrow.get(), static_cast<uint32_t>(std::strlen(narrow.get())));
}

KZ_API int32_t KZ_StatusSetData(StatusFileHandle* status, const void* data, uint32_t size) {
  if (data == nullptr && size != 0) return 0;
  return kz::status_set(status, data, size);
}

KZ_API int32_t KZ_StatusGetStringW(StatusFileHandle* status, KZ_WCHAR* out, int32_t size) {
  return kz::get_string(status, out, size);
}
KZ_API int32_t KZ_StatusGetStringA(StatusFileHandle* status, char* out, int32_t size) {
  return kz::get_string(status, out, size);
}

KZ_API int32_t KZ_StatusGetData(StatusFileHandle* status, void* out, uint32_t size) {
  if (status == nullptr || (out == nullptr && size != 0)) return 0;
  return kz::status_read(status, out, size, nullptr);
}

}  // extern "C"
