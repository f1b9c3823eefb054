// The process environment as Windows keeps it: names without regard to
// case, values as text of either width, and "TEMP" and "TMP" always there.
#include <stdlib.h>
#include <unistd.h>

#include <cstring>

#include "platform/posix/native.h"

extern char** environ;

namespace kz::os {
namespace {

using posix::kNativePathMax;
// A value holds up to 32,767 units with its terminator, as on Windows; a
// unit takes at most two bytes of code page 932 and three of UTF-8.
constexpr std::size_t kValueMax = 32767;

bool same_name(const char* name, const char* entry, std::size_t length) {
  for (std::size_t i = 0; i < length; ++i) {
    char a = name[i], b = entry[i];
    if (a >= 'a' && a <= 'z') a = static_cast<char>(a - 0x20);
    if (b >= 'a' && b <= 'z') b = static_cast<char>(b - 0x20);
    if (a != b || a == 0) return false;
  }
  return name[length] == 0;
}

// The value of a variable named name (UTF-8), or null.
const char* lookup(const char* name) {
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    const char* equals = std::strchr(*entry, '=');
    if (equals != nullptr && equals != *entry &&
        same_name(name, *entry, static_cast<std::size_t>(equals - *entry)))
      return equals + 1;
  }
  // A Windows process always has a folder for temporary files.
  if (same_name(name, "TEMP", 4) || same_name(name, "TMP", 3)) {
    const char* tmpdir = getenv("TMPDIR");
    return tmpdir != nullptr && tmpdir[0] != 0 ? tmpdir : "/tmp";
  }
  return nullptr;
}

// Removes every variable named name, in any case.
void remove_all(const char* name) {
  for (bool again = true; again;) {
    again = false;
    for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
      const char* equals = std::strchr(*entry, '=');
      if (equals == nullptr || !same_name(name, *entry, static_cast<std::size_t>(equals - *entry)))
        continue;
      char exact[kNativePathMax];
      const auto length = static_cast<std::size_t>(equals - *entry);
      if (length >= sizeof exact) return;
      std::memcpy(exact, *entry, length);
      exact[length] = 0;
      unsetenv(exact);
      again = true;
      break;
    }
  }
}

bool utf8_name(const WCHAR* name, char (&out)[kNativePathMax]) {
  return posix::to_utf8(name, out, kNativePathMax) >= 0;
}

bool utf8_name(const char* name, char (&out)[kNativePathMax]) {
  WCHAR wide[kNativePathMax];
  if (MultiByteToWideChar(kAnsiCodePage, 0, name, -1, wide, kNativePathMax) == 0) return false;
  return posix::to_utf8(wide, out, kNativePathMax) >= 0;
}

// The value as wide text: its length, or 0 when there is none.
DWORD wide_value(const char* utf8_name, WCHAR (&out)[kValueMax]) {
  const char* value = lookup(utf8_name);
  if (value == nullptr) return 0;
  const long n = posix::from_utf8(value, out, kValueMax);
  return n < 0 ? 0 : static_cast<DWORD>(n);
}

template <class Ch>
DWORD deliver(const Ch* text, DWORD length, Ch* buffer, DWORD size) {
  if (size <= length) return length + 1;
  std::memcpy(buffer, text, (length + 1) * sizeof(Ch));
  return length;
}

}  // namespace

DWORD GetEnvironmentVariableW(const WCHAR* name, WCHAR* buffer, DWORD size) {
  char key[kNativePathMax];
  WCHAR value[kValueMax];
  if (!utf8_name(name, key)) return 0;
  const char* found = lookup(key);
  if (found == nullptr) return 0;
  return deliver(value, wide_value(key, value), buffer, size);
}

DWORD GetEnvironmentVariableA(const char* name, char* buffer, DWORD size) {
  char key[kNativePathMax];
  WCHAR value[kValueMax];
  if (!utf8_name(name, key) || lookup(key) == nullptr) return 0;
  wide_value(key, value);
  char narrow[kValueMax * 2];
  const int written =
      WideCharToMultiByte(kAnsiCodePage, 0, value, -1, narrow, sizeof narrow, nullptr, nullptr);
  if (written <= 0) return 0;
  return deliver(narrow, static_cast<DWORD>(written - 1), buffer, size);
}

BOOL SetEnvironmentVariableW(const WCHAR* name, const WCHAR* value) {
  char key[kNativePathMax];
  if (!utf8_name(name, key) || key[0] == 0 || std::strchr(key, '=') != nullptr) return 0;
  remove_all(key);
  if (value == nullptr) return 1;
  char text[kValueMax * 3];
  return posix::to_utf8(value, text, sizeof text) >= 0 && setenv(key, text, 1) == 0;
}

BOOL SetEnvironmentVariableA(const char* name, const char* value) {
  WCHAR wide_name[kNativePathMax];
  WCHAR wide_value[kValueMax];
  if (MultiByteToWideChar(kAnsiCodePage, 0, name, -1, wide_name, kNativePathMax) == 0) return 0;
  if (value == nullptr) return SetEnvironmentVariableW(wide_name, nullptr);
  if (value[0] == 0) {
    wide_value[0] = 0;
  } else if (MultiByteToWideChar(kAnsiCodePage, 0, value, -1, wide_value, kValueMax) == 0) {
    return 0;
  }
  return SetEnvironmentVariableW(wide_name, wide_value);
}

}  // namespace kz::os
