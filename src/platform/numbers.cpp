// Number parsing of the runtime, written once for both builds: Windows
// runtimes differ by version in how they treat a value out of range.
#include <climits>

#include "platform/platform.h"

namespace kz::os {
namespace {

template <class Ch>
bool is_space(Ch c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

// White space, an optional sign, digits; a value beyond int saturates.
template <class Ch>
int to_int(const Ch* text) {
  while (is_space(*text)) ++text;
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  const long long limit = negative ? -static_cast<long long>(INT_MIN) : INT_MAX;
  long long value = 0;
  for (; *text >= '0' && *text <= '9'; ++text) {
    value = value * 10 + (*text - '0');
    if (value > limit) {
      value = limit;  // keep reading nothing more: the result is the limit
      break;
    }
  }
  return static_cast<int>(negative ? -value : value);
}

}  // namespace

int _wtoi(const WCHAR* text) { return to_int(text); }
int atoi(const char* text) { return to_int(text); }

}  // namespace kz::os
