// Path dissection: KZ_GetDriveNumber, KZ_GetDriveName, KZ_GetDirectoryName,
// KZ_GetFileName, KZ_GetFileExt, KZ_GetNotExtPath and KZ_SplitPath.
//
// None of them touches the file system. Where a piece does not fit its
// buffer, the operation gives its failure result instead of a cut text.
#include "paths/dissect.h"

#include "frame/memory.h"
#include "strings/scan.h"

namespace kz {
namespace {

constexpr int kBackslash = 0x5C;
constexpr int kColon = 0x3A;
constexpr int kDot = 0x2E;

// Index of the last element that `match` accepts, or -1. The narrow form
// steps over a double-byte character whole, so neither of its bytes is ever
// compared.
template <class Ch, class Match>
int32_t last_match(const Ch* path, Match match) {
  int32_t found = -1;
  for (int32_t i = 0; path[i] != 0;) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(path + i)) {
        i += 2;
        continue;
      }
    }
    if (match(path[i])) found = i;
    ++i;
  }
  return found;
}

template <class Ch>
int32_t last_backslash(const Ch* path) {
  return last_match(path, [](Ch c) { return c == Ch(kBackslash); });
}

template <class Ch>
int32_t last_dot(const Ch* path) {
  return last_match(path, [](Ch c) { return c == Ch(kDot); });
}

template <class Ch>
bool is_empty(const Ch* path) {
  return path == nullptr || path[0] == 0;
}

// Copies count elements of src (fewer where it ends first) into out. Gives
// the length of out, or -1 with out emptied when they do not fit size.
template <class Ch>
int32_t put(Ch* out, int32_t size, const Ch* src, std::size_t count) {
  if (Text<Ch>::copy_n(out, static_cast<std::size_t>(size), src, count) != 0) return -1;
  return static_cast<int32_t>(length(out));
}

}  // namespace

template <class Ch>
int32_t drive_number(const Ch* path) {
  if (is_empty(path) || path[1] != Ch(kColon)) return -1;
  Ch work[kPathLimit];
  if (Text<Ch>::copy(work, kPathLimit, path) != 0) return -1;
  Text<Ch>::upper(work);
  // The narrow element is read as a signed byte, so a first byte of 0x80 or
  // above gives a result below -64; kept so, no letter test is made.
  if constexpr (Text<Ch>::narrow) {
    return static_cast<signed char>(work[0]) - 0x40;
  } else {
    return static_cast<int32_t>(static_cast<std::uint16_t>(work[0])) - 0x40;
  }
}

template <class Ch>
int32_t drive_name(const Ch* path, Ch* out, int32_t size) {
  if (size < 1) return -1;
  out[0] = 0;
  if (is_empty(path)) return -1;
  if (code_count(path, Ch(kColon)) == 0) return -1;
  // The copy stops at the first colon or after size elements; a copy that
  // fills size leaves no room for its terminator and is refused whole.
  const std::size_t n = length(path);
  const std::size_t room = n < static_cast<std::size_t>(size) ? n : static_cast<std::size_t>(size);
  Scratch<Ch> drive(room + 1);
  if (!drive) return -1;
  const int32_t copied = copy_until(drive.get(), path, Ch(kColon), size, true);
  if (copied >= size) return -1;
  return put(out, size, drive.get(), static_cast<std::size_t>(copied));
}

template <class Ch>
int32_t directory_name(const Ch* path, Ch* out, int32_t size) {
  if (is_empty(path)) return -1;
  // The whole path, not only its directory, must be shorter than size.
  if (size < 1 || length(path) >= static_cast<std::size_t>(size)) return -1;
  int32_t end = last_backslash(path);
  if (end < 0) end = 0;
  // A forward copy of a prefix: out may be path itself.
  for (int32_t i = 0; i < end; ++i) out[i] = path[i];
  out[end] = 0;
  return end;
}

template <class Ch>
int32_t file_name(const Ch* path, Ch* out, int32_t size) {
  if (size < 1) return -1;
  out[0] = 0;
  if (is_empty(path)) return -1;
  const int32_t end = last_match(path, [](Ch c) { return c == Ch(kBackslash) || c == Ch(kColon); });
  return put(out, size, path + end + 1, SIZE_MAX);
}

template <class Ch>
int32_t file_ext(const Ch* path, Ch* out, int32_t size) {
  if (size < 1) return -1;
  out[0] = 0;
  if (is_empty(path)) return -1;
  const int32_t dot = last_dot(path);
  if (dot < 0) return 0;
  return put(out, size, path + dot + 1, SIZE_MAX);
}

template <class Ch>
int32_t not_ext_path(const Ch* path, Ch* out, int32_t size) {
  if (size < 1) return -1;
  out[0] = 0;
  if (is_empty(path)) return -1;
  const int32_t dot = last_dot(path);
  return put(out, size, path, dot < 0 ? SIZE_MAX : static_cast<std::size_t>(dot));
}

template <class Ch>
void split_path(const Ch* path, Ch* drive, Ch* directory, Ch* name, Ch* extension) {
  drive[0] = directory[0] = name[0] = extension[0] = 0;
  if (is_empty(path)) return;
  const auto n = static_cast<int32_t>(length(path));
  // The pieces never overlap: the directory begins behind the drive, and
  // the name behind the directory's backslash, or behind the drive where
  // there is no backslash from element 2 on. A dot counts only within the
  // name's part. So drive, directory, backslash, name, dot and extension
  // always give the path back.
  const int32_t backslash = last_backslash(path);
  const int32_t name_start = backslash >= 2 ? backslash + 1 : (n < 2 ? n : 2);
  const int32_t dot = last_dot(path);
  const int32_t name_end = dot >= name_start ? dot : n;
  const int32_t ext_start = dot >= name_start ? dot + 1 : n;
  const bool fits =
      Text<Ch>::copy_n(drive, kDriveLimit, path, 2) == 0 &&
      (backslash < 2 || Text<Ch>::copy_n(directory, kPathLimit, path + 2,
                                         static_cast<std::size_t>(backslash - 2)) == 0) &&
      Text<Ch>::copy_n(name, kPathLimit, path + name_start,
                       static_cast<std::size_t>(name_end - name_start)) == 0 &&
      Text<Ch>::copy(extension, kPathLimit, path + ext_start) == 0;
  if (!fits) drive[0] = directory[0] = name[0] = extension[0] = 0;
}

template int32_t drive_number(const char*);
template int32_t drive_number(const wchar*);
template int32_t drive_name(const char*, char*, int32_t);
template int32_t drive_name(const wchar*, wchar*, int32_t);
template int32_t directory_name(const char*, char*, int32_t);
template int32_t directory_name(const wchar*, wchar*, int32_t);
template int32_t file_name(const char*, char*, int32_t);
template int32_t file_name(const wchar*, wchar*, int32_t);
template int32_t file_ext(const char*, char*, int32_t);
template int32_t file_ext(const wchar*, wchar*, int32_t);
template int32_t not_ext_path(const char*, char*, int32_t);
template int32_t not_ext_path(const wchar*, wchar*, int32_t);
template void split_path(const char*, char*, char*, char*, char*);
template void split_path(const wchar*, wchar*, wchar*, wchar*, wchar*);

}  // namespace kz

extern "C" {

KZ_API int32_t KZ_GetDriveNumberW(const KZ_WCHAR* path) { return kz::drive_number(path); }
KZ_API int32_t KZ_GetDriveNumberA(const char* path) { return kz::drive_number(path); }
KZ_API int32_t KZ_GetDriveNameW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size) {
  return kz::drive_name(path, out, size);
}
KZ_API int32_t KZ_GetDriveNameA(const char* path, char* out, int32_t size) {
  return kz::drive_name(path, out, size);
}
KZ_API int32_t KZ_GetDirectoryNameW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size) {
  return kz::directory_name(path, out, size);
}
KZ_API int32_t KZ_GetDirectoryNameA(const char* path, char* out, int32_t size) {
  return kz::directory_name(path, out, size);
}
KZ_API int32_t KZ_GetFileNameW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size) {
  return kz::file_name(path, out, size);
}
KZ_API int32_t KZ_GetFileNameA(const char* path, char* out, int32_t size) {
  return kz::file_name(path, out, size);
}
KZ_API int32_t KZ_GetFileExtW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size) {
  return kz::file_ext(path, out, size);
}
KZ_API int32_t KZ_GetFileExtA(const char* path, char* out, int32_t size) {
  return kz::file_ext(path, out, size);
}
KZ_API int32_t KZ_GetNotExtPathW(const KZ_WCHAR* path, KZ_WCHAR* out, int32_t size) {
  return kz::not_ext_path(path, out, size);
}
KZ_API int32_t KZ_GetNotExtPathA(const char* path, char* out, int32_t size) {
  return kz::not_ext_path(path, out, size);
}
KZ_API void KZ_SplitPathW(const KZ_WCHAR* path, KZ_WCHAR* drive, KZ_WCHAR* directory,
                          KZ_WCHAR* name, KZ_WCHAR* extension) {
  kz::split_path(path, drive, directory, name, extension);
}
KZ_API void KZ_SplitPathA(const char* path, char* drive, char* directory, char* name,
                          char* extension) {
  kz::split_path(path, drive, directory, name, extension);
}

}  // extern "C"
