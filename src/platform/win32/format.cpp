// The formatters: the real user32 calls, through their va_list forms.
#include <cstdarg>

#include "platform/platform.h"

namespace kz::os {

int wsprintfW(WCHAR* out, const WCHAR* format, ...) {
  va_list args;
  va_start(args, format);
  const int written = ::wvsprintfW(out, format, args);
  va_end(args);
  return written;
}

int wsprintfA(char* out, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int written = ::wvsprintfA(out, format, args);
  va_end(args);
  return written;
}

}  // namespace kz::os
