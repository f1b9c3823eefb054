// kzb: a command-line tool over the library. Each family of the library
// contributes its subcommands and its part of the tour.
//
// Adding a command: write tools/kzb/<name>.cpp (the build picks it up) that
// defines `extern const Command kCommand_<name>` with its usage text and its
// body, and add the line `KZB_COMMAND(<name>)` to commands.inc. The usage
// text is a raw string R"usage(...)usage": `kzb help <name>` prints it and the
// man page kzb(1) is generated from it. Its first line is the synopsis after
// "kzb "; the lines after it, indented by two blanks, say what the command
// does and end with an example. Text goes in and out as UTF-8; commands that
// read text take FILE arguments (none or `-`: standard input) through
// `for_each_input` and write through `Output`.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "kz_basis.h"

namespace kzb {

using wstring = std::basic_string<KZ_WCHAR>;
using Args = std::vector<std::string>;  // UTF-8 on every platform

struct Command {
  const char* name;
  const char* usage;  // see above
  int (*run)(const Args& args);
};

// Exit statuses shared by all commands.
inline constexpr int kOk = 0;
inline constexpr int kFailed = 1;    // the work failed: read or write error, a finding
inline constexpr int kBadUsage = 2;  // the command line is wrong

// Prints "kzb: " and the message as one line on standard error and gives
// `status`.
int fail(int status, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 2, 3)))
#endif
    ;
// The usage error for `command`: the message, then where to read more.
int usage_error(const Command& command, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 2, 3)))
#endif
    ;

// UTF-8 and 16-bit text for the terminal side of the tool.
wstring from_utf8(std::string_view utf8);
std::string to_utf8(const wstring& wide);

// Standard output, buffered. A failed write is told once on standard error
// (a closed pipe quietly), and every later write is dropped.
class Output {
 public:
  bool write(std::string_view bytes);
  bool put(char byte) { return write(std::string_view(&byte, 1)); }
  bool print(const char* format, ...)
#if defined(__GNUC__)
      __attribute__((format(printf, 2, 3)))
#endif
      ;
  bool flush();  // hands the buffer to the system: call it when a line or block is done
  bool failed() const { return failed_; }

 private:
  bool hand_over(const char* data, std::size_t size);
  std::string buffer_;
  bool failed_ = false;
};
Output& out();

// Reads each input named by `files` (standard input for none or "-") in
// blocks and hands them to `consume(name, data, size, end, used)`, which
// sets `used` to the bytes it is done with and gives kOk to go on, or the
// status to stop with. What it leaves is handed to it again in front of the
// next block; at the end of an input (`end` set) it must use everything.
// `data` has one writable byte behind `size`, so a consumer may terminate
// the text in place. A read error is told, naming the input, and gives
// kFailed.
struct InputName {
  std::string name;  // as given, or "-" for standard input
  bool standard() const { return name == "-"; }
  std::string shown() const { return standard() ? "standard input" : name; }
};
template <class Consume>
int for_each_input(const Args& files, Consume consume);
// Runs `each(line)` on each line of the inputs as soon as it is whole,
// without its line end (LF or CR LF); a last line without one counts. The
// library reads text up to a NUL, so a line is cut at its first NUL. What
// `each` writes is flushed after each block, so lines come out as they come
// in. `each` gives kOk to go on, or the status to stop with.
template <class Each>
int for_each_line(const Args& files, Each each);

// The size of the blocks: 64 KiB, or KZB_BLOCK_SIZE for tests that cross
// many block boundaries with little input.
std::size_t block_size();

// Finishes a command that wrote output: flushes, and turns a failed write
// into kFailed.
int finish(int status);

// One line of the tour: what was called and what it gave.
void show(const char* call, const std::string& result);

// The tours of the families, run in order by `kzb tour`.
void tour_encoding();
void tour_strings();
void tour_datetime();
void tour_numeric();
void tour_paths();
void tour_textfile();
void tour_status();
void tour_cmdline();

// The tour's sample of code page 932 text, embedded at build time.
extern const unsigned char kSampleSjis[];
extern const std::size_t kSampleSjisSize;

// ---- Operating system: one file per platform, selected by the build ----
namespace os {
// Prepares the standard streams (binary, UTF-8 on a console).
void setup_streams();
// A file opened for reading, -1 on failure; "-" is standard input.
int open_input(const std::string& name, std::string& error);
void close_input(int handle);
// Bytes read (0 at the end), or -1 with the error in `error`.
long read(int handle, void* buffer, std::size_t size, std::string& error);
// Writes all bytes to standard output: 0 done, 1 the reader has gone
// (closed pipe), -1 another failure, told in `error`.
int write_output(const char* data, std::size_t size, std::string& error);
}  // namespace os

// The tool's entry once the arguments are UTF-8.
int main_utf8(const Args& args);

template <class Consume>
int for_each_input(const Args& files, Consume consume) {
  const Args standard_input{"-"};
  const std::size_t block = block_size();
  std::vector<char> buffer(block + 1);
  for (const std::string& file : files.empty() ? standard_input : files) {
    const InputName name{file};
    std::string error;
    const int handle = os::open_input(file, error);
    if (handle < 0) return fail(kFailed, "%s: %s", name.shown().c_str(), error.c_str());
    int status = kOk;
    std::size_t have = 0;  // bytes left over from the last block
    for (;;) {
      if (buffer.size() < have + block + 1) buffer.resize(have + block + 1);
      const long got = os::read(handle, buffer.data() + have, block, error);
      if (got < 0) {
        status = fail(kFailed, "%s: %s", name.shown().c_str(), error.c_str());
        break;
      }
      have += static_cast<std::size_t>(got);
      std::size_t used = 0;
      status = consume(name, buffer.data(), have, got == 0, used);
      if (status != kOk || got == 0) break;
      std::copy(buffer.begin() + used, buffer.begin() + have, buffer.begin());
      have -= used;
    }
    os::close_input(handle);
    if (status != kOk) return status;
  }
  return kOk;
}

template <class Each>
int for_each_line(const Args& files, Each each) {
  return for_each_input(
      files, [&](const InputName&, char* data, std::size_t size, bool end, std::size_t& used) {
        std::size_t start = 0;
        while (start < size) {
          const void* newline = std::memchr(data + start, '\n', size - start);
          if (newline == nullptr && !end) break;
          const std::size_t stop = newline ? static_cast<const char*>(newline) - data : size;
          std::string_view line(data + start, stop - start);
          if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
          line = line.substr(0, line.find('\0'));
          if (const int status = each(line)) return status;
          start = newline ? stop + 1 : size;
        }
        used = start;
        return out().flush() ? kOk : kFailed;
      });
}

}  // namespace kzb
