// Delimited scanning and copying: KZ_StringCopyEx, KZ_StringCopyExAfter,
// KZ_GetCodeCount and KZ_GetCodeLength.
//
// The narrow copies and the count ask the pair test at each position and on
// a pair advance by one byte only, so the trail byte comes up as a position
// of its own. A delimiter from 0x40 to 0x7E is therefore found inside a
// double-byte character too; callers rely on this and it is intended.
#include "strings/scan.h"

namespace kz {
namespace {

// The scan shared by both copies. `copy` is null for copy_after. Returns the
// position at which the scan stopped; `written` gets the elements copied.
template <class Ch>
int32_t scan(Ch* copy, const Ch* src, Ch delimiter, int32_t limit, bool quotes, int32_t& written) {
  bool quoted = false;
  int32_t i = 0;
  int32_t j = 0;
  while (i < limit && src[i] != 0) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(src + i)) {
        if (copy != nullptr) copy[j++] = src[i];
        ++i;
        continue;
      }
    }
    if (quotes && src[i] == kDoubleQuote) {
      quoted = !quoted;
      ++i;
      // The element behind a consumed quote is not tested as a quote again:
      // a doubled quote gives one literal quote and leaves the state flipped
      // once. Intended; the split depends on it.
    }
    if (src[i] == 0 || (!quoted && src[i] == delimiter)) break;
    if (copy != nullptr) copy[j++] = src[i];
    ++i;
  }
  written = j;
  return i;
}

}  // namespace

template <class Ch>
int32_t copy_until(Ch* dst, const Ch* src, Ch delimiter, int32_t limit, bool quotes) {
  dst[0] = 0;
  if (limit < 0) return 0;
  int32_t written = 0;
  scan(dst, src, delimiter, limit, quotes, written);
  dst[written] = 0;
  return written;
}

template <class Ch>
int32_t copy_after(Ch* dst, const Ch* src, Ch delimiter, int32_t limit, bool quotes) {
  // limit is dst's capacity as well: without one, dst is neither written nor
  // read.
  if (limit < 1) return 0;
  int32_t written = 0;
  const int32_t stop = scan<Ch>(nullptr, src, delimiter, limit, quotes, written);
  // A scan that ran to the terminator has nothing behind it to copy.
  if (src[stop] == 0) {
    dst[0] = 0;
    return 0;
  }
  // The element at the stop is passed over, whether it is the delimiter or
  // the element at which the limit ended the scan.
  Text<Ch>::copy(dst, static_cast<std::size_t>(limit), src + stop + 1);
  return static_cast<int32_t>(length(dst));
}

template <class Ch>
int32_t code_count(const Ch* text, Ch code) {
  int32_t count = 0;
  for (int32_t i = 0; text[i] != 0; ++i) {
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(text + i)) continue;
    }
    if (text[i] == code) ++count;
  }
  return count;
}

template <class Ch>
int32_t code_length(const Ch* text, Ch code) {
  int32_t i = 0;
  while (text[i] != 0 && text[i] != code) ++i;
  return i;
}

template int32_t copy_until(char*, const char*, char, int32_t, bool);
template int32_t copy_until(wchar*, const wchar*, wchar, int32_t, bool);
template int32_t copy_after(char*, const char*, char, int32_t, bool);
template int32_t copy_after(wchar*, const wchar*, wchar, int32_t, bool);
template int32_t code_count(const char*, char);
template int32_t code_count(const wchar*, wchar);
template int32_t code_length(const char*, char);
template int32_t code_length(const wchar*, wchar);

}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StringCopyExW(KZ_WCHAR* dst, const KZ_WCHAR* src, KZ_WCHAR delimiter,
                                int32_t limit, int32_t quotes) {
  return kz::copy_until(dst, src, delimiter, limit, quotes != 0);
}
KZ_API int32_t KZ_StringCopyExA(char* dst, const char* src, char delimiter, int32_t limit,
                                int32_t quotes) {
  return kz::copy_until(dst, src, delimiter, limit, quotes != 0);
}
KZ_API int32_t KZ_StringCopyExAfterW(KZ_WCHAR* dst, const KZ_WCHAR* src, KZ_WCHAR delimiter,
                                     int32_t limit, int32_t quotes) {
  return kz::copy_after(dst, src, delimiter, limit, quotes != 0);
}
KZ_API int32_t KZ_StringCopyExAfterA(char* dst, const char* src, char delimiter, int32_t limit,
                                     int32_t quotes) {
  return kz::copy_after(dst, src, delimiter, limit, quotes != 0);
}
KZ_API int32_t KZ_GetCodeCountW(const KZ_WCHAR* text, KZ_WCHAR code) {
  return kz::code_count(text, code);
}
KZ_API int32_t KZ_GetCodeCountA(const char* text, char code) { return kz::code_count(text, code); }
KZ_API int32_t KZ_GetCodeLengthW(const KZ_WCHAR* text, KZ_WCHAR code) {
  return kz::code_length(text, code);
}
KZ_API int32_t KZ_GetCodeLengthA(const char* text, char code) {
  return kz::code_length(text, code);
}

}  // extern "C"
