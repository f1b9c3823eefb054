// Code page 932 as Windows converts it. (Placeholder until the generated
// tables land: ASCII only.)
#include "platform/platform.h"

namespace kz::os {

int MultiByteToWideChar(UINT, DWORD, const char* src, int, WCHAR* dst, int dst_size) {
  int n = 0;
  while (src[n] != 0) ++n;
  if (dst_size == 0) return n + 1;
  if (dst_size < n + 1) return 0;
  for (int i = 0; i <= n; ++i) dst[i] = static_cast<unsigned char>(src[i]);
  return n + 1;
}

int WideCharToMultiByte(UINT, DWORD, const WCHAR* src, int, char* dst, int dst_size, const char*,
                        BOOL*) {
  int n = 0;
  while (src[n] != 0) ++n;
  if (dst_size == 0) return n + 1;
  if (dst_size < n + 1) return 0;
  for (int i = 0; i <= n; ++i) dst[i] = src[i] < 0x80 ? static_cast<char>(src[i]) : '?';
  return n + 1;
}

int _ismbclegal(unsigned int c) {
  const unsigned lead = (c >> 8) & 0xFF, trail = c & 0xFF;
  const bool is_lead = (lead >= 0x81 && lead <= 0x9F) || (lead >= 0xE0 && lead <= 0xFC);
  const bool is_trail = (trail >= 0x40 && trail <= 0x7E) || (trail >= 0x80 && trail <= 0xFC);
  return is_lead && is_trail;
}

}  // namespace kz::os
