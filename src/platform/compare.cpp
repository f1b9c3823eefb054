// Case-blind comparison of the runtime, written once for both builds. Only
// the ASCII letters fold, as in the runtime's "C" locale; the narrow form
// compares bytes and so may fold the trail byte of a double-byte character.
#include <type_traits>

#include "platform/platform.h"

namespace kz::os {
namespace {

template <class Ch>
int folded(Ch c) {
  const auto value = static_cast<int>(static_cast<std::make_unsigned_t<Ch>>(c));
  return value >= 'A' && value <= 'Z' ? value + ('a' - 'A') : value;
}

template <class Ch>
int compare_folded(const Ch* a, const Ch* b) {
  for (;; ++a, ++b) {
    const int difference = folded(*a) - folded(*b);
    if (difference != 0 || *a == 0) return difference;
  }
}

}  // namespace

int _wcsicmp(const WCHAR* a, const WCHAR* b) { return compare_folded(a, b); }
int _stricmp(const char* a, const char* b) { return compare_folded(a, b); }

}  // namespace kz::os
