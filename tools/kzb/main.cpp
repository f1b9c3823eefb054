// The entry of kzb: finds the command, answers --help, --version and
// `help COMMAND`, and runs the command.
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "kzb.h"

namespace kzb {

#define KZB_COMMAND(name) extern const Command kCommand_##name;
#include "commands.inc"
#undef KZB_COMMAND

namespace {

#define KZB_COMMAND(name) &kCommand_##name,
const Command* const kCommands[] = {
#include "commands.inc"
};
#undef KZB_COMMAND

// The tool's own usage; the man page's description is made from it too.
const char kOverview[] = R"overview(COMMAND [ARGS...]
  Runs the library's conversions and text operations from the command line.
  Text on the terminal side is UTF-8, except what `kzb encode` writes and
  `kzb decode` reads, which is code page 932 (Shift-JIS). Commands that read
  text read the FILE arguments in turn, or standard input when there are
  none or a FILE is `-`, and write as they read.

  kzb --help            this text
  kzb --version         the versions of the tool and of the library
  kzb help COMMAND      the usage of one command (also: kzb COMMAND --help)

  Exit status: 0 success; 1 the work failed (a read or write error, a
  finding of --strict, a date outside the calendar); 2 a usage error.
  Messages go to standard error, one line each, naming the argument or the
  file at fault.
)overview";

const Command* find(const std::string& name) {
  for (const Command* command : kCommands)
    if (name == command->name) return command;
  return nullptr;
}

// The first line of a usage text: its synopsis.
std::string synopsis(const char* usage) {
  const char* end = std::strchr(usage, '\n');
  return std::string(usage, end ? end : usage + std::strlen(usage));
}

std::string overview() {
  std::string text = "usage: kzb ";
  text += kOverview;
  text += "\ncommands:\n";
  for (const Command* command : kCommands) text += "  kzb " + synopsis(command->usage) + "\n";
  return text;
}

void print_usage(const Command& command) {
  out().write("usage: kzb ");
  out().write(command.usage);
}

}  // namespace

int usage_error(const Command& command, const char* format, ...) {
  std::string message = "kzb: ";
  message += command.name;
  message += ": ";
  va_list args;
  va_start(args, format);
  char text[512];
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  std::fprintf(stderr, "%s%s (usage: kzb %s; see kzb help %s)\n", message.c_str(), text,
               synopsis(command.usage).c_str(), command.name);
  return kBadUsage;
}

int main_utf8(const Args& all) {
  if (all.empty()) {
    std::fputs(overview().c_str(), stderr);
    return kBadUsage;
  }
  const std::string& first = all[0];
  if (first == "--help" || first == "-h") {
    out().write(overview());
    return finish(kOk);
  }
  if (first == "--version") {
    out().print("kzb %s (KZ_Basis library %s)\n", KZB_VERSION, KZB_VERSION);
    return finish(kOk);
  }
  if (first == "help") {
    if (all.size() == 1) {
      out().write(overview());
      return finish(kOk);
    }
    const Command* command = find(all[1]);
    if (command == nullptr || all.size() > 2)
      return fail(kBadUsage, "help: no command '%s' (see kzb --help)", all[1].c_str());
    print_usage(*command);
    return finish(kOk);
  }
  const Command* command = find(first);
  if (command == nullptr) return fail(kBadUsage, "no command '%s' (see kzb --help)", first.c_str());
  const Args args(all.begin() + 1, all.end());
  for (const std::string& arg : args) {
    if (arg == "--") break;
    if (arg == "--help" || arg == "-h") {
      print_usage(*command);
      return finish(kOk);
    }
  }
  return finish(command->run(args));
}

}  // namespace kzb
