// kzb num group / hex / parse, and the numeric family's part of the tour.
#include <cinttypes>
#include <cstdlib>
#include <string>

#include "kzb.h"

namespace kzb {
namespace {

// A whole decimal number from `low` to `high`.
bool parse_integer(const std::string& text, long long low, long long high, long long& value) {
  if (text.empty()) return false;
  char* end = nullptr;
  value = std::strtoll(text.c_str(), &end, 10);
  return *end == '\0' && value >= low && value <= high;
}

// A value for hex: 0 to 4294967295, in decimal or with 0x in hexadecimal.
bool parse_unsigned32(const std::string& text, uint32_t& value) {
  const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const std::string digits = hex ? text.substr(2) : text;
  if (digits.empty() ||
      digits.find_first_not_of(hex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
    return false;
  const unsigned long long parsed = std::strtoull(digits.c_str(), nullptr, hex ? 16 : 10);
  if (digits.size() > 10 || parsed > 0xFFFFFFFFull) return false;
  value = static_cast<uint32_t>(parsed);
  return true;
}

std::string hex_text(uint32_t value, int32_t width, int32_t style, int32_t& result) {
  KZ_WCHAR buffer[35] = {};
  result = KZ_HexStringW(value, buffer, width, style);
  return to_utf8(buffer);
}

std::string grouped(const wstring& text, int32_t& result) {
  wstring buffer(2 * text.size() + 2, 0);
  result = KZ_StringSetDelimiterW(text.c_str(), buffer.data(), static_cast<int32_t>(buffer.size()),
                                  ',', 3);
  return to_utf8(buffer.c_str());
}

void parse_lines(const wstring& text) {
  int32_t valid = 0;
  const int32_t hex = KZ_StringHexW(text.c_str(), &valid);
  out().print("numeric: %d\n", KZ_IsNumericW(text.c_str()));
  out().print("int: %d\n", KZ_StringCoinageIntW(text.c_str()));
  out().print("dword: %u\n", KZ_StringCoinageDWordW(text.c_str()));
  out().print("longlong: %" PRId64 "\n", KZ_StringCoinageLongLongW(text.c_str()));
  out().print("ulonglong: %" PRIu64 "\n", KZ_StringCoinageULongLongW(text.c_str()));
  out().print("hex: %d (%s)\n", hex, valid ? "whole text read" : "not all read");
}

}  // namespace

extern const Command kCommand_num;

int run_num(const Args& args) {
  const std::string what = args.empty() ? "" : args[0];
  if (what == "group" || what == "parse") {
    if (args.size() != 2)
      return usage_error(kCommand_num, "num %s needs one argument", what.c_str());
    const wstring text = from_utf8(args[1]);
    if (what == "parse") {
      parse_lines(text);
      return finish(kOk);
    }
    int32_t result = 0;
    const std::string text_out = grouped(text, result);
    if (result < 0) return fail(kFailed, "'%s' could not be grouped", args[1].c_str());
    out().print("%s\n", text_out.c_str());
    return finish(kOk);
  }
  if (what != "hex") return usage_error(kCommand_num, "say group, hex or parse");
  bool have_value = false;
  uint32_t value = 0;
  long long width = 0, style = 0;
  for (std::size_t i = 1; i < args.size(); ++i) {
    if (args[i] == "--width" || args[i] == "--style") {
      if (i + 1 == args.size())
        return usage_error(kCommand_num, "%s needs a value", args[i].c_str());
      long long& target = args[i] == "--width" ? width : style;
      // The library judges the range; only plain integers are checked here.
      if (!parse_integer(args[i + 1], -1000, 1000, target))
        return usage_error(kCommand_num, "%s takes an integer, not '%s'", args[i].c_str(),
                           args[i + 1].c_str());
      ++i;
    } else if (!have_value && parse_unsigned32(args[i], value)) {
      have_value = true;
    } else {
      return usage_error(kCommand_num, "'%s' is neither an option nor a value 0 to 0xFFFFFFFF",
                         args[i].c_str());
    }
  }
  if (!have_value) return usage_error(kCommand_num, "num hex needs a VALUE");
  int32_t result = 0;
  const std::string text =
      hex_text(value, static_cast<int32_t>(width), static_cast<int32_t>(style), result);
  if (result == 0)
    return fail(kFailed, "width %d or style %d is out of range", static_cast<int>(width),
                static_cast<int>(style));
  out().print("%s\n", text.c_str());
  return finish(kOk);
}

const Command kCommand_num = {"num", R"usage(num group|hex|parse VALUE [--width N] [--style S]
  group writes VALUE's text with a comma between groups of three. hex
  writes VALUE (0 to 4294967295, or 0x0 to 0xFFFFFFFF) in hexadecimal with
  at least N digits (0 to 32) in style S: 0 ff, 1 0xff, 2 xff, 3 ffH,
  4 $ff, 5 #ff; exit 1 when the library refuses N or S. parse writes what
  each of the library's number readers makes of the text VALUE.
  Example: kzb num hex 255 --width 4 --style 3
)usage",
                              run_num};

void tour_numeric() {
  out().print("\nNumbers\n");
  int32_t result = 0;
  const std::string group = grouped(from_utf8("-1234567"), result);
  show("KZ_StringSetDelimiterW(\"-1234567\", ',', 3)",
       std::to_string(result) + ", \"" + group + "\"");
  show("KZ_StringCoinageIntW(\"1,234,567\")",
       std::to_string(KZ_StringCoinageIntW(from_utf8("1,234,567").c_str())));
  show("KZ_StringCoinageIntW(\"99999999999\") (clamped)",
       std::to_string(KZ_StringCoinageIntW(from_utf8("99999999999").c_str())));
  const std::string hex = hex_text(0xBEEF, 6, 1, result);
  show("KZ_HexStringW(0xBEEF, width 6, style 1)", std::to_string(result) + ", \"" + hex + "\"");
  int32_t valid = 0;
  const int32_t read = KZ_StringHexW(from_utf8("ffH").c_str(), &valid);
  show("KZ_StringHexW(\"ffH\")", std::to_string(read) + ", valid " + std::to_string(valid));
}

}  // namespace kzb
