// The user32 formatters reproduced: the conversions d, i, u, x, X, c, s and
// %%, with the flags "-", "0" and "#", a width, a precision and the size
// prefixes h and l (accepted and ignored, since every number is 32 bits).
// The output stops at 1024 elements, terminator included.
#include <cstdarg>

#include "platform/platform.h"

namespace kz::os {
namespace {

constexpr int kLimit = 1024;  // elements, terminator included

template <class Ch>
class Output {
 public:
  explicit Output(Ch* out) : out_(out) {}

  void put(Ch element) {
    if (written_ < kLimit - 1) {
      out_[written_++] = element;
    } else {
      truncated_ = true;
    }
  }
  void repeat(Ch element, int count) {
    for (int i = 0; i < count; ++i) put(element);
  }
  // The terminator, and the count: a cut text reports the whole limit, as
  // the system's call does.
  int finish() {
    out_[written_] = 0;
    return truncated_ ? kLimit : written_;
  }

 private:
  Ch* out_;
  int written_ = 0;
  bool truncated_ = false;
};

struct Directive {
  bool left = false;
  bool zero = false;
  bool prefix = false;
  int width = 0;
  int precision = -1;
};

template <class Ch>
void put_number(Output<Ch>& out, const Directive& directive, char conversion, std::uint32_t bits) {
  const bool is_signed = conversion == 'd' || conversion == 'i';
  const bool negative = is_signed && static_cast<std::int32_t>(bits) < 0;
  std::uint32_t magnitude = negative ? 0u - bits : bits;
  const unsigned base = (conversion == 'x' || conversion == 'X') ? 16 : 10;
  const char* digit_set = conversion == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
  char digits[16];
  int count = 0;
  do {
    digits[count++] = digit_set[magnitude % base];
    magnitude /= base;
  } while (magnitude != 0);

  const int zeros_for_precision = directive.precision > count ? directive.precision - count : 0;
  const char* lead = negative ? "-"
                     : (directive.prefix && base == 16 && bits != 0)
                         ? (conversion == 'X' ? "0X" : "0x")
                         : "";
  int lead_length = 0;
  while (lead[lead_length] != 0) ++lead_length;
  const int body = lead_length + zeros_for_precision + count;
  const int pad = directive.width > body ? directive.width - body : 0;

  if (!directive.left && !directive.zero) out.repeat(' ', pad);
  for (int i = 0; i < lead_length; ++i) out.put(static_cast<Ch>(lead[i]));
  if (!directive.left && directive.zero) out.repeat('0', pad);
  out.repeat('0', zeros_for_precision);
  while (count > 0) out.put(static_cast<Ch>(digits[--count]));
  if (directive.left) out.repeat(' ', pad);
}

template <class Ch>
void put_text(Output<Ch>& out, const Directive& directive, const Ch* text) {
  static constexpr Ch kNull[] = {'(', 'n', 'u', 'l', 'l', ')', 0};
  if (text == nullptr) text = kNull;
  int length = 0;
  while (text[length] != 0 && (directive.precision < 0 || length < directive.precision)) ++length;
  const int pad = directive.width > length ? directive.width - length : 0;
  if (!directive.left) out.repeat(' ', pad);  // the zero flag does not apply to text
  for (int i = 0; i < length; ++i) out.put(text[i]);
  if (directive.left) out.repeat(' ', pad);
}

template <class Ch>
int format(Ch* buffer, const Ch* format, va_list args) {
  Output<Ch> out(buffer);
  for (const Ch* p = format; *p != 0; ++p) {
    if (*p != '%') {
      out.put(*p);
      continue;
    }
    ++p;
    Directive directive;
    for (;; ++p) {
      if (*p == '-') {
        directive.left = true;
      } else if (*p == '0') {
        directive.zero = true;
      } else if (*p == '#') {
        directive.prefix = true;
      } else {
        break;
      }
    }
    while (*p >= '0' && *p <= '9') directive.width = directive.width * 10 + (*p++ - '0');
    if (*p == '.') {
      directive.precision = 0;
      for (++p; *p >= '0' && *p <= '9'; ++p)
        directive.precision = directive.precision * 10 + (*p - '0');
    }
    while (*p == 'h' || *p == 'l') ++p;
    switch (*p) {
      case 0:
        return out.finish();  // a lone % at the end writes nothing
      case 'd':
      case 'i':
      case 'u':
      case 'x':
      case 'X':
        put_number(out, directive, static_cast<char>(*p), va_arg(args, std::uint32_t));
        break;
      case 'c': {
        // The element's own width: a narrow char arrives sign-extended and
        // only its low 8 bits are written.
        const Ch element = static_cast<Ch>(va_arg(args, int));
        const int pad = directive.width > 1 ? directive.width - 1 : 0;
        if (!directive.left) out.repeat(' ', pad);
        out.put(element);
        if (directive.left) out.repeat(' ', pad);
        break;
      }
      case 's':
        put_text(out, directive, va_arg(args, const Ch*));
        break;
      default:
        out.put(*p);  // %% and unknown conversions write the character
        break;
    }
  }
  return out.finish();
}

}  // namespace

int wsprintfW(WCHAR* out, const WCHAR* format_text, ...) {
  va_list args;
  va_start(args, format_text);
  const int written = format(out, format_text, args);
  va_end(args);
  return written;
}

int wsprintfA(char* out, const char* format_text, ...) {
  va_list args;
  va_start(args, format_text);
  const int written = format(out, format_text, args);
  va_end(args);
  return written;
}

}  // namespace kz::os
