// Numbers as coinage text (decimal digits in groups of three with commas)
// and back: KZ_CoinageStringInt, KZ_CoinageStringDWord,
// KZ_CoinageStringLongLong, KZ_CoinageStringULongLong, KZ_StringCoinageInt,
// KZ_StringCoinageDWord, KZ_StringCoinageLongLong and
// KZ_StringCoinageULongLong.
//
// The writers group the runtime's plain text through set_delimiter, so a
// negative value groups in the wide twins ("-,123") and fails in the
// narrow ones, which accept digits alone. The readers drop every comma,
// wherever it stands, and leave the rest to the runtime's parse.
#include "frame/memory.h"
#include "numeric/grouping.h"

namespace kz::numeric {
namespace {

constexpr int kComma = ',';

template <class Ch, class Value>
std::int32_t coinage_text(Value value, Ch* destination, std::int32_t size) {
  if (size < 0) return -1;
  // The plain text has a working buffer of exactly size elements.
  Scratch<Ch> plain(static_cast<std::size_t>(size > 0 ? size : 1));
  if (!plain) return -1;
  if (size == 0 || Text<Ch>::decimal(value, plain.get(), static_cast<std::size_t>(size)) != 0) {
    destination[0] = 0;  // the plain text does not fit
    return -1;
  }
  return set_delimiter(plain.get(), destination, size, static_cast<Ch>(kComma), 3);
}

// The text without its commas, parsed by `parse`; 0 when no working copy
// can be had.
template <class Ch, class Parse>
auto coinage_value(const Ch* text, Parse parse) -> decltype(parse(text)) {
  const std::size_t n = length(text);
  Scratch<Ch> digits(n + 1);
  if (!digits) return 0;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < n; ++i)
    if (text[i] != kComma) digits.get()[kept++] = text[i];
  digits.get()[kept] = 0;
  return parse(digits.get());
}

template <class Ch>
std::int32_t coinage_int(const Ch* text) {
  return coinage_value(text, Text<Ch>::to_int);
}
// The low 32 bits of a 64-bit parse, so "-1" gives 0xFFFFFFFF.
template <class Ch>
std::uint32_t coinage_dword(const Ch* text) {
  return static_cast<std::uint32_t>(coinage_value(text, Text<Ch>::to_int64));
}
template <class Ch>
std::int64_t coinage_long_long(const Ch* text) {
  return coinage_value(text, Text<Ch>::to_int64);
}
template <class Ch>
std::uint64_t coinage_ulong_long(const Ch* text) {
  return coinage_value(text, Text<Ch>::to_uint64);
}

}  // namespace
}  // namespace kz::numeric

extern "C" {

KZ_API int32_t KZ_CoinageStringIntW(int32_t value, KZ_WCHAR* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringIntA(int32_t value, char* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringDWordW(uint32_t value, KZ_WCHAR* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringDWordA(uint32_t value, char* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringLongLongW(int64_t value, KZ_WCHAR* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringLongLongA(int64_t value, char* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringULongLongW(uint64_t value, KZ_WCHAR* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_CoinageStringULongLongA(uint64_t value, char* destination, int32_t size) {
  return kz::numeric::coinage_text(value, destination, size);
}
KZ_API int32_t KZ_StringCoinageIntW(const KZ_WCHAR* text) { return kz::numeric::coinage_int(text); }
KZ_API int32_t KZ_StringCoinageIntA(const char* text) { return kz::numeric::coinage_int(text); }
KZ_API uint32_t KZ_StringCoinageDWordW(const KZ_WCHAR* text) {
  return kz::numeric::coinage_dword(text);
}
KZ_API uint32_t KZ_StringCoinageDWordA(const char* text) {
  return kz::numeric::coinage_dword(text);
}
KZ_API int64_t KZ_StringCoinageLongLongW(const KZ_WCHAR* text) {
  return kz::numeric::coinage_long_long(text);
}
KZ_API int64_t KZ_StringCoinageLongLongA(const char* text) {
  return kz::numeric::coinage_long_long(text);
}
KZ_API uint64_t KZ_StringCoinageULongLongW(const KZ_WCHAR* text) {
  return kz::numeric::coinage_ulong_long(text);
}
KZ_API uint64_t KZ_StringCoinageULongLongA(const char* text) {
  return kz::numeric::coinage_ulong_long(text);
}

}  // extern "C"
