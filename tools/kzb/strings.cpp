// kzb split / mask / unmask, and the string toolkit's part of the tour.
// Text crosses the terminal as UTF-8 and the library as wide text.
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "kzb.h"

namespace kzb {
namespace {

void print_line(const wstring& wide) {
  out().write(to_utf8(wide));
  out().put('\n');
}

// One character given on the command line, with \t for a tab.
bool one_character(const std::string& argument, KZ_WCHAR& character) {
  if (argument == "\\t") {
    character = '\t';
    return true;
  }
  const wstring wide = from_utf8(argument);
  if (wide.size() != 1 || wide[0] == 0) return false;
  character = wide[0];
  return true;
}

// A key from 0 to 65535, in decimal or with 0x in hexadecimal.
bool parse_key(const std::string& text, uint16_t& key) {
  if (text.empty()) return false;
  const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* digits = text.c_str() + (hex ? 2 : 0);
  if (*digits == '\0') return false;
  char* end = nullptr;
  const unsigned long value = std::strtoul(digits, &end, hex ? 16 : 10);
  if (*end != '\0' || value > 0xFFFF || std::strchr(digits, '-') != nullptr) return false;
  key = static_cast<uint16_t>(value);
  return true;
}

int run_password(const Command& command, const Args& args, bool masking) {
  bool have_key = false;
  uint16_t key = 0;
  Args files;
  for (std::size_t i = 0; i < args.size(); ++i) {
    std::string value;
    if (args[i] == "--key") {
      if (i + 1 == args.size()) return usage_error(command, "--key needs a value");
      value = args[++i];
    } else if (args[i].rfind("--key=", 0) == 0) {
      value = args[i].substr(6);
    } else if (args[i] == "-" || args[i][0] != '-') {
      files.push_back(args[i]);
      continue;
    } else {
      return usage_error(command, "unknown option '%s'", args[i].c_str());
    }
    if (!parse_key(value, key))
      return usage_error(command, "the key must be 0 to 65535 (or 0x0 to 0xFFFF), not '%s'",
                         value.c_str());
    have_key = true;
  }
  if (!have_key) return usage_error(command, "missing --key K");

  return for_each_line(files, [&](std::string_view line) {
    const wstring src = from_utf8(line);
    // Masking writes four elements a unit; unmasking at most one a group.
    const std::size_t size = masking ? 4 * src.size() + 1 : src.size() + 1;
    wstring dst(size, 0);
    const int32_t result = KZ_StringPasswordW(key, src.c_str(), dst.data(),
                                              static_cast<int32_t>(size), masking ? 1 : 0);
    if (result < 0) return fail(kFailed, "%s: a line did not fit its buffer", command.name);
    dst.resize(static_cast<std::size_t>(result));
    print_line(dst);
    return kOk;
  });
}

// Built by appending: GCC 12 warns wrongly (-Wrestrict) about "\"" + text.
std::string quoted(const wstring& wide) {
  std::string out(1, '"');
  out.append(to_utf8(wide));
  out.push_back('"');
  return out;
}

std::string list_text(const StrList& list) {
  std::string out = std::to_string(list.count) + " [";
  for (int32_t i = 0; i < list.count; ++i) {
    if (i > 0) out += ", ";
    out += quoted(static_cast<const KZ_WCHAR*>(list.strings[i]));
  }
  return out + "]";
}

wstring w(const char* ascii) { return from_utf8(ascii); }

}  // namespace

extern const Command kCommand_split, kCommand_mask, kCommand_unmask;

int run_split(const Args& args) {
  KZ_WCHAR delimiter = ',';
  int32_t quotes = 0;
  Args files;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--quotes") {
      quotes = 1;
    } else if (args[i] == "-d") {
      if (i + 1 == args.size()) return usage_error(kCommand_split, "-d needs a delimiter");
      if (!one_character(args[++i], delimiter))
        return usage_error(kCommand_split, "the delimiter must be one character, not '%s'",
                           args[i].c_str());
    } else if (args[i] == "-" || args[i][0] != '-') {
      files.push_back(args[i]);
    } else {
      return usage_error(kCommand_split, "unknown option '%s'", args[i].c_str());
    }
  }
  bool first = true;
  return for_each_line(files, [&](std::string_view line) {
    if (!first) out().put('\n');  // an empty line between records
    first = false;
    StrList list{0, nullptr};
    if (KZ_StringSplitW(from_utf8(line).c_str(), delimiter, &list, quotes) == 0) return kOk;
    for (int32_t i = 0; i < list.count; ++i)
      print_line(static_cast<const KZ_WCHAR*>(list.strings[i]));
    KZ_DeleteStrListW(&list);
    return kOk;
  });
}

int run_mask(const Args& args) { return run_password(kCommand_mask, args, true); }
int run_unmask(const Args& args) { return run_password(kCommand_unmask, args, false); }

const Command kCommand_split = {"split", R"usage(split [-d C] [--quotes] [FILE...]
  Splits each input line at the delimiter C (default ',', \t for a tab) and
  writes one field a line, with an empty line between records. With
  --quotes, a field in double quotes may hold C and loses its quotes.
  Example: printf 'a,"b,c"\n' | kzb split --quotes
)usage",
                                run_split};

const Command kCommand_mask = {"mask", R"usage(mask --key K [FILE...]
  Masks each input line as password text with the key K (0 to 65535, or
  0x0 to 0xFFFF); kzb unmask with the same key reads it back.
  Example: printf 'Secret\n' | kzb mask --key 0x1234
)usage",
                               run_mask};

const Command kCommand_unmask = {"unmask", R"usage(unmask --key K [FILE...]
  Reads each input line back from password text masked with the key K.
  Example: printf '03mv03m903mf03ly03m903ls\n' | kzb unmask --key 0x1234
)usage",
                                 run_unmask};

void tour_strings() {
  out().print("\nString toolkit\n");
  wstring buffer(64, 0);
  const auto size = static_cast<int32_t>(buffer.size());
  auto text = [&](int32_t result) {
    return std::to_string(result) + ", " + quoted(buffer.c_str());
  };

  show("KZ_StringCopyExW(\"ab,cd\", ',', limit 100, quotes off)",
       text(KZ_StringCopyExW(buffer.data(), w("ab,cd").c_str(), ',', 100, 0)));
  show("KZ_StringCopyExW(\"a\\\"\\\"b,c\", ',', 100, quotes on)",
       text(KZ_StringCopyExW(buffer.data(), w("a\"\"b,c").c_str(), ',', 100, 1)));
  show("KZ_StringCopyExAfterW(\"abcdef\", ',', limit 3, off)",
       text(KZ_StringCopyExAfterW(buffer.data(), w("abcdef").c_str(), ',', 3, 0)));
  show("KZ_GetCodeCountW(\"\\\"a,b\\\",c\", ',')",
       std::to_string(KZ_GetCodeCountW(w("\"a,b\",c").c_str(), ',')));
  show("KZ_GetCodeLengthA(\"\\x95\\x5C\" (a character), '\\\\')",
       std::to_string(KZ_GetCodeLengthA("\x95\x5C", '\\')));

  StrList list{0, nullptr};
  KZ_StringSplitW(w("a,b,,c").c_str(), ',', &list, 1);
  show("KZ_StringSplitW(\"a,b,,c\", ',', quotes on)", list_text(list));
  KZ_DeleteStrListW(&list);
  KZ_StringCSVW(w("\"ab\",\"c,d\"").c_str(), &list, 1);
  show("KZ_StringCSVW(\"\\\"ab\\\",\\\"c,d\\\"\", quotes on)", list_text(list));
  KZ_DeleteStrListW(&list);
  KZ_StringSplitW(w("a,\"b\",c").c_str(), ',', &list, 1);
  show("KZ_StringSplitW(\"a,\\\"b\\\",c\", ',', on) (mixed shapes)", list_text(list));
  KZ_DeleteStrListW(&list);

  show("KZ_StringTrimW(\"  ab \", ' ')",
       text(KZ_StringTrimW(buffer.data(), w("  ab ").c_str(), size, ' ')));
  show("KZ_StringTrimRightW(\"   \", ' ')",
       text(KZ_StringTrimRightW(buffer.data(), w("   ").c_str(), size, ' ')));
  show("KZ_StringZeroSuppressW(\"00120\")",
       text(KZ_StringZeroSuppressW(buffer.data(), w("00120").c_str(), size)));
  show("KZ_StringLengthCopyW(\"abcdef\", count 3)",
       text(KZ_StringLengthCopyW(w("abcdef").c_str(), buffer.data(), 3, size)));
  show("KZ_StringGetQuotedW(\"a(b)c\", \"(\", \")\")",
       text(KZ_StringGetQuotedW(w("a(b)c").c_str(), buffer.data(), size, w("(").c_str(),
                                w(")").c_str())));

  KZ_SetDoublequoteW(w("abc").c_str(), buffer.data(), size);
  show("KZ_SetDoublequoteW(\"abc\")", quoted(buffer.c_str()));
  KZ_DelDoublequoteW(w("a\"b").c_str(), buffer.data(), size);
  show("KZ_DelDoublequoteW(\"a\\\"b\")", quoted(buffer.c_str()));

  const int32_t masked = KZ_StringPasswordW(0x1234, w("Secret").c_str(), buffer.data(), size, 1);
  show("KZ_StringPasswordW(key 0x1234, \"Secret\", mask)", text(masked));
  const wstring masked_text = buffer.c_str();
  show("KZ_StringPasswordW(key 0x1234, that text, unmask)",
       text(KZ_StringPasswordW(0x1234, masked_text.c_str(), buffer.data(), size, 0)));
  show("KZ_StringPasswordW(key 0x1235, that text, unmask)",
       text(KZ_StringPasswordW(0x1235, masked_text.c_str(), buffer.data(), size, 0)));
}

}  // namespace kzb
