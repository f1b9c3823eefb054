// UTF-8 on the terminal side, UTF-16 on the library side.
#include <iostream>
#include <iterator>

#include "kzb.h"

namespace kzb {

wstring from_utf8(const std::string& utf8) {
  wstring out;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto lead = static_cast<unsigned char>(utf8[i]);
    const int extra = lead < 0x80 ? 0 : lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : lead >= 0xC0 ? 1 : -1;
    char32_t cp = extra <= 0 ? lead & 0x7F : lead & (0x7F >> (extra + 1));
    ++i;
    bool ok = extra >= 0 && i + extra <= utf8.size();
    for (int k = 0; ok && k < extra; ++k, ++i) {
      const auto next = static_cast<unsigned char>(utf8[i]);
      ok = (next & 0xC0) == 0x80;
      cp = (cp << 6) | (next & 0x3F);
    }
    if (!ok) cp = 0xFFFD;  // malformed UTF-8 becomes the replacement character
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<KZ_WCHAR>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<KZ_WCHAR>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<KZ_WCHAR>(cp));
    }
  }
  return out;
}

std::string to_utf8(const wstring& wide) {
  std::string out;
  for (std::size_t i = 0; i < wide.size(); ++i) {
    char32_t cp = static_cast<char16_t>(wide[i]);
    if (cp >= 0xD800 && cp < 0xDC00 && i + 1 < wide.size() &&
        static_cast<char16_t>(wide[i + 1]) >= 0xDC00 && static_cast<char16_t>(wide[i + 1]) < 0xE000)
      cp = 0x10000 + ((cp - 0xD800) << 10) + (static_cast<char16_t>(wide[++i]) - 0xDC00);
    if (cp < 0x80) {
      out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else if (cp < 0x10000) {
      out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xF0 | (cp >> 18)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 12) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
  }
  return out;
}

bool read_stdin(std::string& out) {
  out.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  return !std::cin.bad();
}

}  // namespace kzb
