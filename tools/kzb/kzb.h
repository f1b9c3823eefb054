// kzb: a small command-line tool over the library. Each family of the
// library contributes its subcommands and its part of the tour.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "kz_basis.h"

namespace kzb {

using wstring = std::basic_string<KZ_WCHAR>;
using Args = std::vector<std::string>;

// A subcommand: its name, a one-line synopsis for --help, and its body,
// which returns the process's exit status.
struct Command {
  const char* name;
  const char* synopsis;
  int (*run)(const Args& args);
};

// Exit statuses shared by all subcommands.
inline constexpr int kOk = 0;
inline constexpr int kBadInput = 1;
inline constexpr int kBadUsage = 2;

// UTF-8 and UTF-16 for the terminal side of the tool.
wstring from_utf8(const std::string& utf8);
std::string to_utf8(const wstring& wide);

// Reads all of standard input; false when it cannot be read.
bool read_stdin(std::string& out);
// Prints to standard error and gives the status, for one-line failures.
int fail(int status, const char* format, ...);

// One line of the tour: what was called and what it gave.
void show(const char* call, const std::string& result);

// The families' tours, run in order by `kzb tour`.
void tour_encoding();
void tour_strings();
void tour_datetime();

// The families' subcommands.
int run_decode(const Args& args);
int run_encode(const Args& args);
int run_split(const Args& args);
int run_mask(const Args& args);
int run_unmask(const Args& args);
int run_now(const Args& args);
int run_weekday(const Args& args);
int run_in_range(const Args& args);

}  // namespace kzb
