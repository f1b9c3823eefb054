// UTF-8 on the terminal side, UTF-16 on the library side.
#include <iostream>
#include <iterator>

#include "frame/utf8.h"
#include "kzb.h"

namespace kzb {

wstring from_utf8(const std::string& utf8) { return kz::utf8::to_utf16<KZ_WCHAR>(utf8); }

std::string to_utf8(const wstring& wide) { return kz::utf8::from_utf16<KZ_WCHAR>(wide); }

bool read_stdin(std::string& out) {
  out.assign(std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>());
  return !std::cin.bad();
}

}  // namespace kzb
