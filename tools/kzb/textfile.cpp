// kzb cat / journal, and the text file family's part of the tour.
#include <cstdio>
#include <cstdlib>

#include "kzb.h"

namespace kzb {
namespace {

// The longest line cat passes whole; a longer one comes in pieces.
constexpr int32_t kLineSize = 1 << 16;

bool one_element(const std::string& argument, KZ_WCHAR& element) {
  const wstring wide = from_utf8(argument);
  if (wide.size() != 1 || wide[0] == 0) return false;
  element = wide[0];
  return true;
}

}  // namespace

extern const Command kCommand_cat, kCommand_journal;

int run_cat(const Args& args) {
  int32_t wide = 0;
  Args files;
  for (const std::string& arg : args) {
    if (arg == "--wide")
      wide = 1;
    else if (!arg.empty() && arg[0] == '-')
      return usage_error(kCommand_cat, "unknown option '%s'", arg.c_str());
    else
      files.push_back(arg);
  }
  if (files.size() != 1) return usage_error(kCommand_cat, "one FILE needed");
  TextFileHandle* file =
      KZ_TextFileOpenW(from_utf8(files[0]).c_str(), from_utf8("r").c_str(), wide);
  if (file == nullptr) return fail(kFailed, "%s: cannot open it", files[0].c_str());
  wstring line(kLineSize, 0);
  // A read gives 1 for each line that ended with a line end.
  while (KZ_TextFileGetsW(file, line.data(), kLineSize) != 0) {
    out().write(to_utf8(line.c_str()));
    out().put('\n');
  }
  const bool error = KZ_TextFileError(file) != 0;
  KZ_TextFileClose(file);
  if (error) return finish(fail(kFailed, "%s: read error", files[0].c_str()));
  return finish(kOk);
}

int run_journal(const Args& args) {
  int32_t wide = 0;
  KZ_WCHAR delimiter = '/';
  Args operands;
  for (std::size_t i = 0; i < args.size(); ++i) {
    if (args[i] == "--wide") {
      wide = 1;
    } else if (args[i] == "-d") {
      if (i + 1 == args.size()) return usage_error(kCommand_journal, "-d needs a delimiter");
      if (!one_element(args[++i], delimiter))
        return usage_error(kCommand_journal, "the delimiter must be one character, not '%s'",
                           args[i].c_str());
    } else if (!args[i].empty() && args[i][0] == '-') {
      return usage_error(kCommand_journal, "unknown option '%s'", args[i].c_str());
    } else {
      operands.push_back(args[i]);
    }
  }
  if (operands.size() != 2) return usage_error(kCommand_journal, "FILE and MESSAGE needed");
  const wstring message = from_utf8(operands[1]);
  // Date, blank, time, " > " and the terminator take 23 elements.
  const auto line_size = static_cast<uint32_t>(message.size() + 23);
  if (KZ_JournalOutW(from_utf8(operands[0]).c_str(), message.c_str(), line_size, wide, delimiter) ==
      0)
    return fail(kFailed, "%s: the line was not written", operands[0].c_str());
  return kOk;
}

const Command kCommand_cat = {"cat", R"usage(cat FILE [--wide]
  Reads FILE line by line through the library's text files and writes it
  as UTF-8: code page 932 text, or with --wide UTF-16 text. Only lines
  that end with a line end are written.
  Example: kzb cat notes.txt
)usage",
                              run_cat};

const Command kCommand_journal = {"journal", R"usage(journal FILE MESSAGE [--wide] [-d C]
  Appends "date time > MESSAGE" to the journal FILE under the directory
  named by KZ_JOURNAL_PATH (else TEMP), creating missing directories. The
  date's fields are divided by C (default '/'); --wide writes UTF-16.
  Exits 1 when the line could not be written.
  Example: KZ_JOURNAL_PATH=/tmp kzb journal app.log started
)usage",
                                  run_journal};

void tour_textfile() {
  out().print("\nText files and journal\n");
  const char* root = std::getenv("TEMP");
  if (root == nullptr) root = std::getenv("TMPDIR");
  const wstring path = from_utf8(std::string(root ? root : "/tmp") + "/kzb-tour.txt");
  TextFileHandle* file = KZ_TextFileOpenW(path.c_str(), from_utf8("w").c_str(), 1);
  show("KZ_TextFileOpenW(TEMP/kzb-tour.txt, \"w\", wide)", file ? "a handle" : "null");
  if (file == nullptr) return;
  show("KZ_TextFilePutsW(\"\\u65E5\\u672C\\u8A9E\")",
       std::to_string(KZ_TextFilePutsW(file, from_utf8("日本語").c_str())));
  KZ_TextFileClose(file);
  file = KZ_TextFileOpenW(path.c_str(), from_utf8("r").c_str(), 1);
  if (file == nullptr) return;
  KZ_WCHAR line[16] = {};
  const int32_t got = KZ_TextFileGetsW(file, line, 16);
  show("KZ_TextFileGetsW(same file)", std::to_string(got) + ", \"" + to_utf8(line) + "\"");
  const int32_t again = KZ_TextFileGetsW(file, line, 16);
  show("KZ_TextFileGetsW(again)",
       std::to_string(again) + ", eof " + std::to_string(KZ_TextFileEof(file)));
  KZ_TextFileClose(file);
  std::remove(to_utf8(path).c_str());
}

}  // namespace kzb
