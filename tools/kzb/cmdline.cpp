// kzb args / split-arg, and the command-line family's part of the tour.
#include "kzb.h"

namespace kzb {
namespace {

// The split of a command line, each part as large as the split call needs.
struct ArgParts {
  KZ_WCHAR command[260] = {};
  KZ_WCHAR arguments[260] = {};
};

ArgParts split_arg(const wstring& text) {
  ArgParts parts;
  KZ_SplitArgW(text.c_str(), parts.command, parts.arguments);
  return parts;
}

// The elements of a list, "N: text" one a line.
void print_list(const StrList& list) {
  for (int32_t i = 0; i < list.count; ++i)
    out().print("%d: %s\n", static_cast<int>(i),
                to_utf8(static_cast<const KZ_WCHAR*>(list.strings[i])).c_str());
}

std::string quoted(const wstring& wide) {
  std::string text(1, '"');
  text.append(to_utf8(wide)).push_back('"');
  return text;
}

}  // namespace

extern const Command kCommand_args, kCommand_split_arg;

int run_args(const Args& args) {
  if (args.size() > 1) return usage_error(kCommand_args, "at most one LINE");
  StrList list{0, nullptr};
  const bool split = args.empty() ? KZ_GetCmdLineW(&list) != 0
                                  : KZ_CmdLineListW(from_utf8(args[0]).c_str(), &list) != 0;
  if (!split) return fail(kFailed, "the line could not be split (too long?)");
  print_list(list);
  KZ_DeleteStrListW(&list);
  return finish(kOk);
}

int run_split_arg(const Args& args) {
  if (args.size() != 1) return usage_error(kCommand_split_arg, "one TEXT needed");
  const wstring text = from_utf8(args[0]);
  // The split's outputs hold 259 elements; longer text is refused here.
  if (text.size() > 259)
    return usage_error(kCommand_split_arg, "TEXT must have at most 259 characters, not %u",
                       static_cast<unsigned>(text.size()));
  const ArgParts parts = split_arg(text);
  out().print("command: %s\n", to_utf8(parts.command).c_str());
  out().print("arguments: %s\n", to_utf8(parts.arguments).c_str());
  return finish(kOk);
}

const Command kCommand_args = {"args", R"usage(args [LINE]
  Splits LINE as a program's command line is split, the command first, and
  writes the items as "N: item", one a line. Without LINE: this process's
  own command line.
  Example: kzb args '"C:\Program Files\app.exe" -v "a b"'
)usage",
                               run_args};

const Command kCommand_split_arg = {"split-arg", R"usage(split-arg TEXT
  Cuts TEXT (at most 259 characters) into the command, without its quotes,
  and the rest of the line as it stands, one labelled line each.
  Example: kzb split-arg '"C:\Program Files\app.exe" -v "a b"'
)usage",
                                    run_split_arg};

void tour_cmdline() {
  out().print("\nCommand lines\n");
  const char* line = "\"C:\\Program Files\\app.exe\" -v \"a b\" c\\\"d";
  StrList list{0, nullptr};
  if (KZ_CmdLineListW(from_utf8(line).c_str(), &list) != 0) {
    std::string items = std::to_string(list.count) + " [";
    for (int32_t i = 0; i < list.count; ++i) {
      if (i > 0) items += ", ";
      items += quoted(static_cast<const KZ_WCHAR*>(list.strings[i]));
    }
    show("KZ_CmdLineListW(\"\\\"C:\\Program Files\\app.exe\\\" -v ...\")", items + "]");
    KZ_DeleteStrListW(&list);
  }
  const ArgParts parts = split_arg(from_utf8(line));
  show("KZ_SplitArgW(same line)", quoted(parts.command) + " " + quoted(parts.arguments));
  KZ_WCHAR name[64] = {};
  const int32_t got = KZ_GetCommandW(from_utf8(line).c_str(), name, 64);
  show("KZ_GetCommandW(same line)", std::to_string(got) + ", " + quoted(name));
}

}  // namespace kzb
