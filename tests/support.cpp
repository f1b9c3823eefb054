#include "support.h"

namespace kz::test {

wstring utf16(const std::string& utf8) {
  wstring out;
  for (std::size_t i = 0; i < utf8.size();) {
    const auto c = static_cast<unsigned char>(utf8[i]);
    char32_t cp;
    int extra;
    if (c < 0x80) {
      cp = c, extra = 0;
    } else if (c >= 0xF0) {
      cp = c & 0x07, extra = 3;
    } else if (c >= 0xE0) {
      cp = c & 0x0F, extra = 2;
    } else {
      cp = c & 0x1F, extra = 1;
    }
    ++i;
    for (int k = 0; k < extra && i < utf8.size(); ++k, ++i)
      cp = (cp << 6) | (static_cast<unsigned char>(utf8[i]) & 0x3F);
    if (cp >= 0x10000) {
      cp -= 0x10000;
      out.push_back(static_cast<wchar>(0xD800 + (cp >> 10)));
      out.push_back(static_cast<wchar>(0xDC00 + (cp & 0x3FF)));
    } else {
      out.push_back(static_cast<wchar>(cp));
    }
  }
  return out;
}

std::string utf8(const wstring& wide) {
  std::string out;
  for (wchar unit : wide) {
    const auto u = static_cast<char32_t>(unit);
    if (u < 0x80) {
      out.push_back(static_cast<char>(u));
    } else if (u < 0x800) {
      out.push_back(static_cast<char>(0xC0 | (u >> 6)));
      out.push_back(static_cast<char>(0x80 | (u & 0x3F)));
    } else {
      out.push_back(static_cast<char>(0xE0 | (u >> 12)));
      out.push_back(static_cast<char>(0x80 | ((u >> 6) & 0x3F)));
      out.push_back(static_cast<char>(0x80 | (u & 0x3F)));
    }
  }
  return out;
}

SYSTEMTIME system_time(int year, int month, int day, int hour, int minute, int second, int ms) {
  const auto field = [](int value) { return static_cast<uint16_t>(value); };
  return {field(year),   field(month),  0,        field(day), field(hour),
          field(minute), field(second), field(ms)};
}

}  // namespace kz::test
