#include "support.h"

#include "platform/utf8.h"

namespace kz::test {

wstring utf16(const std::string& utf8) { return kz::utf8::to_utf16<wchar>(utf8); }

std::string utf8(const wstring& wide) { return kz::utf8::from_utf16<wchar>(wide); }

SYSTEMTIME system_time(int year, int month, int day, int hour, int minute, int second, int ms) {
  const auto field = [](int value) { return static_cast<uint16_t>(value); };
  return {field(year),   field(month),  0,        field(day), field(hour),
          field(minute), field(second), field(ms)};
}

}  // namespace kz::test
