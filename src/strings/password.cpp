// Masked password text: KZ_StringPassword. Each 16-bit unit XOR the key is
// written as a group of four base-36 digits, 0-9 then a-z; unmasking reads
// the groups back. The narrow twin masks the wide form of its text.
#include "frame/convert.h"

namespace kz {
namespace {

constexpr std::size_t kGroup = 4;  // 36^3 < 65535 < 36^4
constexpr std::size_t kDigitScratch = 128;

int32_t mask(uint16_t key, const wchar* src, wchar* dst, int32_t size) {
  if (size <= 0) return -1;
  int32_t written = 0;
  for (std::size_t i = 0; src[i] != 0; ++i) {
    wchar digits[kDigitScratch];
    os::_itow_s(static_cast<uint16_t>(src[i] ^ key), digits, kDigitScratch, 36);
    // Leading zeros, then the digits behind them.
    wchar group[kGroup + 1] = {};
    const std::size_t padding = kGroup - length(digits);
    for (std::size_t k = 0; k < padding; ++k) group[k] = wchar('0');
    Text<wchar>::append(group, kGroup + 1, digits);
    for (std::size_t k = 0; k < kGroup; ++k) {
      if (written + 1 >= size) {  // no room for this digit and a terminator
        dst[0] = 0;
        return -1;
      }
      dst[written++] = group[k];
    }
  }
  dst[written] = 0;
  return written;
}

int32_t unmask(uint16_t key, const wchar* src, wchar* dst, int32_t size) {
  if (size <= 0) return -1;
  int32_t written = 0;
  for (std::size_t i = 0; src[i] != 0;) {
    // A last group of fewer than four elements is read as a shorter number.
    wchar group[kGroup + 1];
    std::size_t k = 0;
    while (k < kGroup && src[i] != 0) group[k++] = src[i++];
    group[k] = 0;
    // No element is refused: wcstol takes white space, a sign and either
    // case, and stops at the first other element. Intended; the masked text
    // carries no check of its own.
    const auto value = static_cast<uint16_t>(os::wcstol(group, nullptr, 36));
    if (written + 1 >= size) {
      dst[0] = 0;
      return -1;
    }
    dst[written++] = static_cast<wchar>(value ^ key);
  }
  dst[written] = 0;
  // A group that gave the unit 0 ends the text there.
  return static_cast<int32_t>(length(dst));
}

int32_t password(uint16_t key, const wchar* src, wchar* dst, int32_t size, bool masking) {
  return masking ? mask(key, src, dst, size) : unmask(key, src, dst, size);
}

int32_t password_narrow(uint16_t key, const char* src, char* dst, int32_t size, bool masking) {
  if (size <= 0) return -1;
  // size counts units in both scratch buffers; a source whose wide form
  // does not fit is still read within its scratch.
  const WideText wide_src(src, size);
  const Scratch<wchar> wide_dst(static_cast<std::size_t>(size));
  if (!wide_src || !wide_dst) return -1;  // dst as it was, as for any failure
  const int32_t result = password(key, wide_src.get(), wide_dst.get(), size, masking);
  if (result != -1) to_narrow(wide_dst.get(), dst, size);
  return result;
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StringPasswordW(uint16_t key, const KZ_WCHAR* src, KZ_WCHAR* dst, int32_t size,
                                  int32_t mask) {
  return kz::password(key, src, dst, size, mask != 0);
}
KZ_API int32_t KZ_StringPasswordA(uint16_t key, const char* src, char* dst, int32_t size,
                                  int32_t mask) {
  return kz::password_narrow(key, src, dst, size, mask != 0);
}

}  // extern "C"
