// The three-letter month names, in both directions: KZ_MonthToNumeric and
// KZ_MonthToString.
#include "datetime/datetime.h"

namespace kz::datetime {
namespace {

template <class Ch>
constexpr Literal<Ch, 4> kMonthNames[12] = {
    literal<Ch>("Jan"), literal<Ch>("Feb"), literal<Ch>("Mar"), literal<Ch>("Apr"),
    literal<Ch>("May"), literal<Ch>("Jun"), literal<Ch>("Jul"), literal<Ch>("Aug"),
    literal<Ch>("Sep"), literal<Ch>("Oct"), literal<Ch>("Nov"), literal<Ch>("Dec"),
};

// Case does not count, length does: "January" is no month.
template <class Ch>
std::int32_t month_to_numeric(const Ch* name) {
  for (std::int32_t month = 1; month <= 12; ++month)
    if (Text<Ch>::compare_folded(name, kMonthNames<Ch>[month - 1].text) == 0) return month;
  return -1;
}

// A capacity that cannot hold the name gets no copy and the result 0.
template <class Ch>
std::int32_t month_to_string(std::int32_t month, Ch* out, std::int32_t size) {
  if (month < 1 || month > 12) return 0;
  const std::size_t capacity = size > 0 ? static_cast<std::size_t>(size) : 0;
  return Text<Ch>::copy(out, capacity, kMonthNames<Ch>[month - 1].text) == 0 ? 1 : 0;
}

}  // namespace
}  // namespace kz::datetime

extern "C" {

KZ_API int32_t KZ_MonthToNumericW(const KZ_WCHAR* name) {
  return kz::datetime::month_to_numeric(name);
}
KZ_API int32_t KZ_MonthToNumericA(const char* name) { return kz::datetime::month_to_numeric(name); }

KZ_API int32_t KZ_MonthToStringW(int32_t month, KZ_WCHAR* out, int32_t size) {
  return kz::datetime::month_to_string(month, out, size);
}
KZ_API int32_t KZ_MonthToStringA(int32_t month, char* out, int32_t size) {
  return kz::datetime::month_to_string(month, out, size);
}

}  // extern "C"
