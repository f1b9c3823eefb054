// The process's command line as Windows gives it: GetCommandLineW,
// GetCommandLineA, CommandLineToArgvW, LocalFree and GetModuleFileNameW.
//
// Linux has no command line, only the argument vector, so the line is
// rebuilt from /proc/self/cmdline with each argument quoted for the split
// below, and the program's slashes turned into backslashes. Arguments and
// the program's path are UTF-8 and become 16-bit text; invalid UTF-8
// becomes U+FFFD.
#include <unistd.h>

#include <cstdio>
#include <string>

#include "frame/memory.h"
#include "platform/platform.h"
#include "platform/utf8.h"

namespace kz::os {
namespace {

using wide = std::u16string;

constexpr WCHAR kBlank = u' ';
constexpr WCHAR kTab = u'\t';
constexpr WCHAR kQuote = u'"';
constexpr WCHAR kBackslash = u'\\';

bool separates(WCHAR c) { return c == kBlank || c == kTab; }

// ---- UTF-8 ------------------------------------------------------------------

wide from_utf8(const std::string& bytes) { return utf8::to_utf16<WCHAR>(bytes); }

// ---- The program's path ---------------------------------------------------------

wide program_path() {
  std::string path(256, '\0');
  for (;;) {
    const ssize_t got = ::readlink("/proc/self/exe", path.data(), path.size());
    if (got < 0) return wide();
    if (static_cast<std::size_t>(got) < path.size()) {
      path.resize(static_cast<std::size_t>(got));
      break;
    }
    path.resize(path.size() * 2);
  }
  wide out = from_utf8(path);
  for (WCHAR& c : out)
    if (c == u'/') c = kBackslash;
  return out;
}

// ---- Rebuilding the line ----------------------------------------------------------

// The program element has no escapes: it is quoted when it holds a blank or
// a tab or is empty, and a double quote cannot stand in it at all.
void append_program(wide& line, const wide& program) {
  wide text;
  for (WCHAR c : program)
    if (c != kQuote) text.push_back(c);
  const bool quoted = text.empty() || text.find_first_of(u" \t") != wide::npos;
  if (quoted) line.push_back(kQuote);
  line += text;
  if (quoted) line.push_back(kQuote);
}

// Later elements: quoted when they hold a separator or a quote or are
// empty; inside, backslashes are doubled where a quote follows them (the
// closing quote included), and each quote is escaped.
void append_argument(wide& line, const wide& argument) {
  if (!argument.empty() && argument.find_first_of(u" \t\"") == wide::npos) {
    line += argument;
    return;
  }
  line.push_back(kQuote);
  std::size_t backslashes = 0;
  for (WCHAR c : argument) {
    if (c == kBackslash) {
      ++backslashes;
      continue;
    }
    const std::size_t written = c == kQuote ? 2 * backslashes + 1 : backslashes;
    line.append(written, kBackslash);
    backslashes = 0;
    line.push_back(c);
  }
  line.append(2 * backslashes, kBackslash);
  line.push_back(kQuote);
}

struct ProcessLine {
  wide wide_line;
  std::string narrow_line;
};

ProcessLine read_process_line() {
  ProcessLine result;
  std::string all;
  if (std::FILE* file = std::fopen("/proc/self/cmdline", "rb")) {
    char chunk[4096];
    std::size_t got;
    while ((got = std::fread(chunk, 1, sizeof chunk, file)) > 0) all.append(chunk, got);
    std::fclose(file);
  }
  std::size_t start = 0;
  for (std::size_t index = 0; start < all.size(); ++index) {
    std::size_t end = all.find('\0', start);
    if (end == std::string::npos) end = all.size();
    wide argument = from_utf8(all.substr(start, end - start));
    if (index == 0) {
      // The program in the layer's Windows form, as path dissection reads it.
      for (WCHAR& c : argument)
        if (c == u'/') c = kBackslash;
      append_program(result.wide_line, argument);
    } else {
      result.wide_line.push_back(kBlank);
      append_argument(result.wide_line, argument);
    }
    start = end + 1;
  }
  const int needed = WideCharToMultiByte(kAnsiCodePage, 0, result.wide_line.c_str(), -1, nullptr, 0,
                                         nullptr, nullptr);
  result.narrow_line.assign(static_cast<std::size_t>(needed > 0 ? needed : 1), '\0');
  if (needed > 0)
    WideCharToMultiByte(kAnsiCodePage, 0, result.wide_line.c_str(), -1, result.narrow_line.data(),
                        needed, nullptr, nullptr);
  return result;
}

// Built once, on first use, and kept for the life of the process like the
// system's own copy; it does not come from kz::allocate, whose blocks a
// call gives back and whose failures the tests inject.
const ProcessLine& process_line() {
  static const ProcessLine line = read_process_line();
  return line;
}

// ---- Splitting ------------------------------------------------------------------

// Receives the split: counts on the first pass, writes on the second.
struct Sink {
  WCHAR** elements = nullptr;  // null on the counting pass
  WCHAR* texts = nullptr;
  std::size_t count = 0;
  std::size_t units = 0;  // text units written so far, terminators included

  void put(WCHAR c, std::size_t times = 1) {
    for (std::size_t k = 0; k < times; ++k) {
      if (texts != nullptr) texts[units] = c;
      ++units;
    }
  }
  void begin() {
    if (elements != nullptr) elements[count] = texts + units;
  }
  void end() {
    put(0);
    ++count;
  }
};

void split(const WCHAR* line, Sink& sink) {
  std::size_t i = 0;
  sink.begin();
  if (line[0] == kQuote) {
    for (i = 1; line[i] != 0 && line[i] != kQuote; ++i) sink.put(line[i]);
    if (line[i] == kQuote) ++i;
  } else {
    for (; line[i] != 0 && !separates(line[i]); ++i) sink.put(line[i]);
  }
  sink.end();

  for (;;) {
    while (separates(line[i])) ++i;
    if (line[i] == 0) return;
    sink.begin();
    // 0: outside quotes; 1: inside; 2: one quote closed them, and a quote
    // right behind it gives a literal quote (the doubled quote) while any
    // other element leaves the quoting ended.
    int quoting = 0;
    std::size_t backslashes = 0;
    for (; line[i] != 0; ++i) {
      const WCHAR c = line[i];
      if (c != kQuote && quoting == 2) quoting = 0;
      if (c == kBackslash) {
        ++backslashes;
        continue;
      }
      if (c == kQuote) {
        sink.put(kBackslash, backslashes / 2);
        if (backslashes % 2 == 1) {
          sink.put(kQuote);
        } else if (quoting == 2) {
          sink.put(kQuote);
          quoting = 0;
        } else {
          ++quoting;
        }
        backslashes = 0;
        continue;
      }
      sink.put(kBackslash, backslashes);
      backslashes = 0;
      if (separates(c) && quoting == 0) break;
      sink.put(c);
    }
    sink.put(kBackslash, backslashes);
    sink.end();
  }
}

}  // namespace

const WCHAR* GetCommandLineW() { return process_line().wide_line.c_str(); }

const char* GetCommandLineA() { return process_line().narrow_line.c_str(); }

WCHAR** CommandLineToArgvW(const WCHAR* line, int* count) {
  if (line == nullptr || count == nullptr) return nullptr;
  // The empty line gives the program's path as its one element, whatever
  // blanks the path holds.
  const wide program = line[0] == 0 ? program_path() : wide();
  Sink measure;
  if (line[0] == 0) {
    measure.put(0, program.size());
    measure.end();
  } else {
    split(line, measure);
  }
  // One block: the array with its closing null, then the texts.
  const std::size_t array_bytes = (measure.count + 1) * sizeof(WCHAR*);
  void* block = allocate(array_bytes + measure.units * sizeof(WCHAR));
  if (block == nullptr) return nullptr;
  Sink fill;
  fill.elements = static_cast<WCHAR**>(block);
  fill.texts = reinterpret_cast<WCHAR*>(static_cast<char*>(block) + array_bytes);
  if (line[0] == 0) {
    fill.begin();
    for (WCHAR c : program) fill.put(c);
    fill.end();
  } else {
    split(line, fill);
  }
  fill.elements[fill.count] = nullptr;
  *count = static_cast<int>(fill.count);
  return fill.elements;
}

void* LocalFree(void* block) {
  release(block);
  return nullptr;
}

DWORD GetModuleFileNameW(void*, WCHAR* file_name, DWORD size) {
  const wide path = program_path();
  if (path.size() < size) {
    path.copy(file_name, path.size());
    file_name[path.size()] = 0;
    return static_cast<DWORD>(path.size());
  }
  // As Wine does: the first size elements, without a terminator.
  path.copy(file_name, size);
  return size;
}

}  // namespace kz::os
