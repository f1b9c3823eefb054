// The runtime's streams: the real calls of the C runtime, whose text mode
// and ccs clause do the line ends and the encodings.
//
// fopen_s opens with the secure share mode on Windows: a reader shares with
// readers, a writer with no one. Wine's opens with full sharing, so the
// share mode is asked for by name here (_fsopen), and the library sees the
// same rule on every system. Wine also reads a file without a byte-order
// mark under ccs=UNICODE as narrow text, where Windows takes UTF-16LE; the
// clause is passed as ccs=UTF-16LE, which both read so.
#include <share.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cwchar>

#include "platform/platform.h"

namespace kz::os {
namespace {

// Readers share with readers; any mode that writes shares with no one.
template <class Ch>
int share_for(const Ch* mode) {
  for (const Ch* p = mode; *p != 0 && *p != Ch(','); ++p)
    if (*p == Ch('w') || *p == Ch('a') || *p == Ch('+')) return _SH_DENYRW;
  return _SH_DENYWR;
}

// The mode with ccs=UNICODE spelled ccs=UTF-16LE; false when it does not
// fit.
template <class Ch>
bool spell_ccs(const Ch* mode, Ch (&out)[64]) {
  static constexpr char kUnicode[] = "ccs=UNICODE";
  static constexpr char kUtf16[] = "ccs=UTF-16LE";
  std::size_t n = 0;
  for (const Ch* p = mode; *p != 0;) {
    std::size_t k = 0;
    while (kUnicode[k] != 0 && p[k] == Ch(kUnicode[k])) ++k;
    const bool unicode = kUnicode[k] == 0;
    const char* insert = unicode ? kUtf16 : nullptr;
    if (unicode) {
      for (const char* q = insert; *q != 0; ++q) {
        if (n + 1 >= 64) return false;
        out[n++] = Ch(*q);
      }
      p += k;
    } else {
      if (n + 1 >= 64) return false;
      out[n++] = *p++;
    }
  }
  out[n] = 0;
  return true;
}

}  // namespace

errno_t fopen_s(FILE** stream, const char* path, const char* mode) {
  if (stream == nullptr) return EINVAL;
  *stream = nullptr;
  char spelled[64];
  if (path == nullptr || mode == nullptr || !spell_ccs(mode, spelled)) return EINVAL;
  *stream = ::_fsopen(path, spelled, share_for(mode));
  return *stream != nullptr ? 0 : (errno != 0 ? errno : EINVAL);
}

errno_t _wfopen_s(FILE** stream, const WCHAR* path, const WCHAR* mode) {
  if (stream == nullptr) return EINVAL;
  *stream = nullptr;
  WCHAR spelled[64];
  if (path == nullptr || mode == nullptr || !spell_ccs(mode, spelled)) return EINVAL;
  *stream = ::_wfsopen(path, spelled, share_for(mode));
  return *stream != nullptr ? 0 : (errno != 0 ? errno : EINVAL);
}

char* fgets(char* buffer, int size, FILE* stream) { return ::fgets(buffer, size, stream); }
WCHAR* fgetws(WCHAR* buffer, int size, FILE* stream) { return ::fgetws(buffer, size, stream); }
int fputs(const char* text, FILE* stream) { return ::fputs(text, stream); }
int fputws(const WCHAR* text, FILE* stream) { return ::fputws(text, stream); }
int feof(FILE* stream) { return ::feof(stream); }
int ferror(FILE* stream) { return ::ferror(stream); }
int fseek(FILE* stream, long offset, int origin) { return ::fseek(stream, offset, origin); }
int fclose(FILE* stream) { return ::fclose(stream); }

}  // namespace kz::os
