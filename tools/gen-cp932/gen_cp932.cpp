// Asks Windows (in practice Wine in the Japanese locale) how code page 932
// converts, and prints what it answers as the direct-lookup tables of the
// POSIX layer (gen_cp932 tables).
//
// Every assumption the tables' layout makes about the conversion is checked
// against the platform here; the program fails loudly when one does not hold.
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

// After the standard headers: <mbctype.h> defines macros named _M1 and _M2.
#include <fcntl.h>
#include <io.h>
#include <mbctype.h>
#include <mbstring.h>
#include <windows.h>

namespace {

[[noreturn]] void die(const char* format, ...) {
  std::fputs("gen_cp932: ", stderr);
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fputc('\n', stderr);
  std::exit(1);
}

// The platform's decoding of a terminated byte text (source length -1).
std::vector<std::uint16_t> decode(const std::string& bytes) {
  const int needed = MultiByteToWideChar(0, 0, bytes.c_str(), -1, nullptr, 0);
  std::vector<wchar_t> out(needed > 0 ? needed : 1);
  const int written = MultiByteToWideChar(0, 0, bytes.c_str(), -1, out.data(), needed);
  if (needed <= 0 || written != needed) die("decoding failed (%d, %d)", needed, written);
  return {out.begin(), out.begin() + written};
}

std::vector<std::uint8_t> encode(const std::vector<wchar_t>& units) {
  std::vector<wchar_t> text(units);
  text.push_back(0);
  const int needed = WideCharToMultiByte(0, 0, text.data(), -1, nullptr, 0, nullptr, nullptr);
  std::vector<char> out(needed > 0 ? needed : 1);
  const int written =
      WideCharToMultiByte(0, 0, text.data(), -1, out.data(), needed, nullptr, nullptr);
  if (needed <= 0 || written != needed) die("encoding failed (%d, %d)", needed, written);
  return {out.begin(), out.begin() + written};
}

void print_array(const char* declaration, const std::vector<unsigned>& values, int digits,
                 std::size_t per_line) {
  std::printf("%s = {\n", declaration);
  for (std::size_t i = 0; i < values.size(); ++i) {
    std::printf("%s0x%0*X,", i % per_line == 0 ? "    " : " ", digits, values[i]);
    if (i % per_line == per_line - 1 || i + 1 == values.size()) std::printf("\n");
  }
  std::printf("};\n\n");
}

void print_tables() {
  // Single bytes, each alone before the terminator. A lead byte here stands
  // at the end of the text, which is how the decoder treats it there.
  std::vector<unsigned> single(256, 0);
  for (unsigned byte = 1; byte < 256; ++byte) {
    const auto out = decode(std::string(1, static_cast<char>(byte)));
    if (out.size() != 2 || out[1] != 0) die("byte %02X decodes to %zu units", byte, out.size());
    single[byte] = out[0];
  }
  for (unsigned byte = 0; byte < 0x80; ++byte)
    if (single[byte] != byte) die("byte %02X is not ASCII", byte);

  // Every byte followed by every byte but the terminator: a lead byte takes
  // any following byte as its trail and gives one unit for the two; any
  // other byte gives its own unit, and the next byte its own.
  std::vector<unsigned> lead_index(256, 0);
  std::vector<unsigned> pairs;
  unsigned leads = 0;
  for (unsigned lead = 1; lead < 256; ++lead) {
    std::vector<unsigned> row(256, single[lead]);
    int consumed = 0;
    for (unsigned trail = 1; trail < 256; ++trail) {
      const auto out = decode(std::string{static_cast<char>(lead), static_cast<char>(trail)});
      if (out.size() == 2) {
        row[trail] = out[0];
        ++consumed;
      } else if (out.size() != 3 || out[0] != single[lead] || out[1] != single[trail]) {
        die("%02X %02X decodes to neither a pair nor two single bytes", lead, trail);
      }
    }
    if (consumed == 0) continue;
    if (consumed != 255) die("lead byte %02X takes only %d of 255 trail bytes", lead, consumed);
    lead_index[lead] = ++leads;
    pairs.insert(pairs.end(), row.begin(), row.end());
  }
  // Inside longer text the same holds: check one pair between others.
  {
    const auto out = decode(
        "a\x81\x20"
        "b\x81");
    const std::vector<std::uint16_t> expected = {'a', static_cast<std::uint16_t>(pairs[0x20]), 'b',
                                                 static_cast<std::uint16_t>(single[0x81]), 0};
    if (out != expected) die("a pair inside longer text decodes differently");
  }

  // Every 16-bit unit alone, surrogates included: the platform converts
  // unit by unit, so a lone surrogate and a surrogate pair alike become
  // default characters.
  std::vector<unsigned> encoded(65536, 0);
  for (unsigned unit = 1; unit < 65536; ++unit) {
    const auto out = encode({static_cast<wchar_t>(unit)});
    if (out.size() == 2 && out[1] == 0) {
      encoded[unit] = out[0];
    } else if (out.size() == 3 && out[2] == 0 && out[0] >= 0x80) {
      encoded[unit] = out[0] * 256u + out[1];
    } else {
      die("unit %04X encodes to %zu bytes", unit, out.size());
    }
  }
  for (unsigned unit = 0; unit < 0x80; ++unit)
    if (encoded[unit] != unit) die("unit %04X is not ASCII", unit);
  {
    const auto out = encode({L'a', 0xD83D, 0xDE00, 0x65E5, L'b'});
    const std::vector<std::uint8_t> expected = {'a',
                                                static_cast<std::uint8_t>(encoded[0xD83D]),
                                                static_cast<std::uint8_t>(encoded[0xDE00]),
                                                static_cast<std::uint8_t>(encoded[0x65E5] >> 8),
                                                static_cast<std::uint8_t>(encoded[0x65E5]),
                                                'b',
                                                0};
    if (out != expected) die("units inside longer text encode differently");
  }
  // Pages of 256 units; equal pages are stored once.
  std::vector<unsigned> page_index(256, 0);
  std::vector<unsigned> pages;
  std::map<std::vector<unsigned>, unsigned> seen;
  for (unsigned page = 0; page < 256; ++page) {
    std::vector<unsigned> content(encoded.begin() + page * 256, encoded.begin() + page * 256 + 256);
    auto [where, fresh] = seen.emplace(content, static_cast<unsigned>(seen.size()));
    if (fresh) pages.insert(pages.end(), content.begin(), content.end());
    page_index[page] = where->second;
  }

  // _ismbclegal: a lead byte above, a trail byte below.
  std::vector<unsigned> legal_lead(256, 0), legal_trail(256, 0);
  for (unsigned value = 0; value < 65536; ++value)
    if (_ismbclegal(value)) legal_lead[value >> 8] = legal_trail[value & 0xFF] = 1;
  for (unsigned value = 0; value < 65536; ++value) {
    const bool legal = _ismbclegal(value) != 0;
    if (legal != (legal_lead[value >> 8] && legal_trail[value & 0xFF]))
      die("_ismbclegal(%04X) is not a lead test and a trail test", value);
  }

  std::printf(
      "// Generated by tools/gen-cp932/generate from the platform's own conversion of\n"
      "// code page 932 (Wine in the Japanese locale); do not edit. Rebuild with the\n"
      "// target regenerate-cp932.\n"
      "//\n"
      "// kDecode       row 0: a byte alone, or a lead byte before the terminator;\n"
      "//               row kLeadIndex[lead]: the lead byte and the byte after it\n"
      "//               (any byte but the terminator is taken as its trail)\n"
      "// kLeadIndex    0, or the row of a lead byte in kDecode\n"
      "// kEncodePage   the page in kEncode of a unit's high byte\n"
      "// kEncode       a unit's bytes: below 0x100 one byte, else lead * 256 + trail\n"
      "// kLegalLead, kLegalTrail  _ismbclegal(lead * 256 + trail) is both\n\n");
  std::printf("inline constexpr int kLeadCount = %u;\n\n", leads);
  std::vector<unsigned> rows(single);
  rows.insert(rows.end(), pairs.begin(), pairs.end());
  print_array("inline constexpr char16_t kDecode[(kLeadCount + 1) * 256]", rows, 4, 8);
  print_array("inline constexpr std::uint8_t kLeadIndex[256]", lead_index, 2, 16);
  print_array("inline constexpr std::uint8_t kEncodePage[256]", page_index, 2, 16);
  std::printf("inline constexpr int kEncodePageCount = %zu;\n\n", seen.size());
  print_array("inline constexpr std::uint16_t kEncode[kEncodePageCount * 256]", pages, 4, 8);
  print_array("inline constexpr std::uint8_t kLegalLead[256]", legal_lead, 1, 16);
  print_array("inline constexpr std::uint8_t kLegalTrail[256]", legal_trail, 1, 16);
}

}  // namespace

int main(int argc, char** argv) {
  _setmode(_fileno(stdout), _O_BINARY);
  if (GetACP() != 932)
    die("the ANSI code page is %u, not 932: run under LANG=ja_JP.UTF-8", GetACP());
  if (_getmbcp() != 932) die("the runtime's multibyte code page is %d, not 932", _getmbcp());
  const std::string what = argc == 2 ? argv[1] : "";
  if (what == "tables") {
    print_tables();
  } else {
    die("usage: gen_cp932 tables");
  }
  return std::fflush(stdout) == 0 ? 0 : 1;
}
