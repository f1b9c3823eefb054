#include <cstdarg>
#include <cstring>

#include "kzb.h"

namespace kzb {
namespace {

int run_tour(const Args&);

const Command kCommands[] = {
    {"decode", "decode            code page 932 on standard input to UTF-8", run_decode},
    {"encode", "encode            UTF-8 on standard input to code page 932", run_encode},
    {"split",
     "split [-d C] [--quotes]\n"
     "                    each input line split at C (default ','), one field a line,\n"
     "                    an empty line between records; \\t for a tab",
     run_split},
    {"mask", "mask --key K      mask each input line as password text (K: 0..65535)", run_mask},
    {"unmask", "unmask --key K    read each input line back from password text", run_unmask},
    {"now",
     "now [--ms] [-d C] [-s C]\n"
     "                    the local date and time; C: the date delimiter (default '-')\n"
     "                    and the separator before the time (default ' ')",
     run_now},
    {"weekday",
     "weekday YYYY-MM-DD\n"
     "                    the day of the week, in English and Japanese",
     run_weekday},
    {"in-range",
     "in-range START END [TARGET]\n"
     "                    is TARGET (default: now) inside, bounds included? Dates\n"
     "                    (YYYY-MM-DD) or date-times (YYYY-MM-DDThh:mm:ss[.mmm]);\n"
     "                    exit status 0 inside, 1 outside, 2 for a bad point",
     run_in_range},
    {"tour", "tour              run every family on built-in examples", run_tour},
};

int run_tour(const Args&) {
  tour_encoding();
  tour_strings();
  tour_datetime();
  return kOk;
}

void print_help(std::FILE* out) {
  std::fprintf(out, "usage: kzb COMMAND [ARGS]\n\ncommands:\n");
  for (const auto& command : kCommands) std::fprintf(out, "  %s\n", command.synopsis);
  std::fprintf(out, "\n  --help            show this text\n");
}

}  // namespace

int fail(int status, const char* format, ...) {
  std::fputs("kzb: ", stderr);
  va_list args;
  va_start(args, format);
  std::vfprintf(stderr, format, args);
  va_end(args);
  std::fputc('\n', stderr);
  return status;
}

void show(const char* call, const std::string& result) {
  std::printf("  %-58s -> %s\n", call, result.c_str());
}

}  // namespace kzb

int main(int argc, char** argv) {
  using namespace kzb;
  if (argc < 2) {
    print_help(stderr);
    return kBadUsage;
  }
  if (std::strcmp(argv[1], "--help") == 0 || std::strcmp(argv[1], "-h") == 0) {
    print_help(stdout);
    return kOk;
  }
  const Args args(argv + 2, argv + argc);
  for (const auto& command : kCommands)
    if (std::strcmp(argv[1], command.name) == 0) return command.run(args);
  fail(kBadUsage, "unknown command '%s'", argv[1]);
  print_help(stderr);
  return kBadUsage;
}
