// The runtime's streams: the real calls of the C runtime, whose fopen_s
// opens with the secure share mode and whose text mode and ccs clause do
// the line ends and the encodings.
#include <cstdio>
#include <cwchar>

#include "platform/platform.h"

namespace kz::os {

errno_t fopen_s(FILE** stream, const char* path, const char* mode) {
  return ::fopen_s(stream, path, mode);
}
errno_t _wfopen_s(FILE** stream, const WCHAR* path, const WCHAR* mode) {
  return ::_wfopen_s(stream, path, mode);
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
