// kzb decode / encode, and the encoding family's part of the tour.
#include <fstream>
#include <iterator>

#include "kzb.h"

namespace kzb {
namespace {

// Converts one piece of text without NUL bytes (the conversions stop at a
// terminator), giving the destination exactly the size the text needs.
wstring decode_piece(const std::string& narrow) {
  if (narrow.empty()) return {};
  wstring wide(narrow.size() + 1, 0);  // n bytes never need more than n + 1 units
  KZ_SJIS2UNICODE(narrow.c_str(), wide.data(), static_cast<int32_t>(wide.size()));
  wide.resize(std::char_traits<KZ_WCHAR>::length(wide.c_str()));
  return wide;
}

std::string encode_piece(const wstring& wide) {
  if (wide.empty()) return {};
  std::string narrow(wide.size() * 2 + 1, 0);  // two bytes a unit at most
  KZ_UNICODE2SJIS(wide.c_str(), narrow.data(), static_cast<int32_t>(narrow.size()));
  narrow.resize(std::char_traits<char>::length(narrow.c_str()));
  return narrow;
}

// Applies `convert` to each stretch between NUL elements, keeping the NULs.
template <class In, class Convert>
auto each_piece(const In& input, Convert convert) {
  decltype(convert(In{})) out;
  std::size_t start = 0;
  while (start <= input.size()) {
    std::size_t end = input.find(typename In::value_type{0}, start);
    if (end == In::npos) end = input.size();
    out += convert(input.substr(start, end - start));
    if (end < input.size()) out.push_back(0);
    start = end + 1;
  }
  return out;
}

std::string hex(const std::string& bytes) {
  std::string out;
  char cell[4];
  for (unsigned char byte : bytes) {
    std::snprintf(cell, sizeof cell, "%02X ", byte);
    out += cell;
  }
  if (!out.empty()) out.pop_back();
  return out;
}

}  // namespace

int run_decode(const Args& args) {
  if (!args.empty()) return fail(kBadUsage, "decode takes no arguments");
  std::string input;
  if (!read_stdin(input)) return fail(kBadInput, "cannot read standard input");
  const std::string output = to_utf8(each_piece(input, decode_piece));
  std::fwrite(output.data(), 1, output.size(), stdout);
  return kOk;
}

int run_encode(const Args& args) {
  if (!args.empty()) return fail(kBadUsage, "encode takes no arguments");
  std::string input;
  if (!read_stdin(input)) return fail(kBadInput, "cannot read standard input");
  const std::string output = each_piece(from_utf8(input), encode_piece);
  std::fwrite(output.data(), 1, output.size(), stdout);
  return kOk;
}

void tour_encoding() {
  std::printf("Shift-JIS and UTF-16\n");
  const char* sample_path = KZB_SAMPLES "/sample-sjis.txt";
  std::ifstream file(sample_path, std::ios::binary);
  std::string sample((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
  if (sample.empty()) sample = "\x93\xFA\x96\x7B\x8C\xEA";  // 日本語
  const std::string first_line = sample.substr(0, sample.find('\n'));
  std::printf("  sample line (code page 932): %s\n", hex(first_line).c_str());

  wstring wide(first_line.size() + 1, 0);
  const int32_t decoded =
      KZ_SJIS2UNICODE(first_line.c_str(), wide.data(), static_cast<int32_t>(wide.size()));
  show("KZ_SJIS2UNICODE(sample line)",
       std::to_string(decoded) + ", \"" + to_utf8(wide.c_str()) + "\"");
  std::string narrow(wide.size() * 2 + 1, 0);
  const int32_t encoded =
      KZ_UNICODE2SJIS(wide.c_str(), narrow.data(), static_cast<int32_t>(narrow.size()));
  show("KZ_UNICODE2SJIS(that text)",
       std::to_string(encoded) + ", " + (narrow.c_str() == first_line ? "same bytes" : "differs"));
  show("KZ_SJIS2UNICODE(\"abc\", size 8)", std::to_string(KZ_SJIS2UNICODE("abc", wide.data(), 8)));
  show("KZ_SJIS2UNICODE(\"\", size 8)", std::to_string(KZ_SJIS2UNICODE("", wide.data(), 8)));
  show("KZ_SJIS2UNICODE(\"abc\", size 0: needed + 1)",
       std::to_string(KZ_SJIS2UNICODE("abc", nullptr, 0)));
  show("KZ_IsSJisMultiByteChar(\"\\x81\\x5C\")",
       std::to_string(KZ_IsSJisMultiByteChar("\x81\x5C")));
  show("KZ_IsSJisMultiByteChar(\"\\x81\") (lead byte at the end)",
       std::to_string(KZ_IsSJisMultiByteChar("\x81")));
  StrList list{0, nullptr};
  KZ_DeleteStrListW(&list);
  show("KZ_DeleteStrListW(empty list)", "count " + std::to_string(list.count));
}

}  // namespace kzb
