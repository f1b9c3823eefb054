// Text files and the journal through real files on a memory file system
// (/dev/shm): the input is written as a file's bytes and read back line by
// line through both twins at once, then its lines are written through the
// twins and read back, then one of them goes to the journal. Every read
// buffer is a heap block of exactly the size the library is told.
//
// Input: a flag byte (encoding 0, 1 or 2, and which twin writes), a size
// byte, then the file's bytes.
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "fuzz_support.h"

const std::string kRoot = "/dev/shm/kz-fuzz-" + std::to_string(getpid());
const std::string kFile = kRoot + "/lines.txt";

// The input's bytes as a file, read by both twins on two handles: on a
// narrow or wide file the two routes read the same pieces, so they agree on
// every result, and the converting twin holds the other's text converted.
void read_both(const std::string& bytes, int32_t wide, int32_t size) {
  std::ofstream(kFile, std::ios::binary | std::ios::trunc) << bytes;
  TextFileHandle* narrow_file = KZ_TextFileOpenA(kFile.c_str(), "r", wide);
  TextFileHandle* wide_file = KZ_TextFileOpenA(kFile.c_str(), "r", wide);
  check(narrow_file != nullptr && wide_file != nullptr);
  std::vector<char> narrow(size), converted_narrow(size);
  std::vector<wchar> units(size), converted_units(size);
  for (std::size_t lines = 0; lines <= bytes.size(); ++lines) {
    const int32_t got_narrow = KZ_TextFileGetsA(narrow_file, narrow.data(), size);
    const int32_t got_wide = KZ_TextFileGetsW(wide_file, units.data(), size);
    check(length(narrow.data()) < narrow.size() && length(units.data()) < units.size());
    if (wide == 2) continue;  // narrow stream read by wide calls: pieces differ
    check(got_narrow == got_wide);
    if (got_narrow == 0) break;
    if (wide == 0) {
      (KZ_SJIS2UNICODE(narrow.data(), converted_units.data(), size), converted_units[size - 1] = 0);
      check(std::basic_string<wchar>(units.data()) == converted_units.data());
    } else {
      (KZ_UNICODE2SJIS(units.data(), converted_narrow.data(), size),
       converted_narrow[size - 1] = 0);
      check(std::string(narrow.data()) == converted_narrow.data());
    }
  }
  (KZ_TextFileClose(narrow_file), KZ_TextFileClose(wide_file));
}

// Each line written by a twin comes back whole through the same twin on a
// file of the twin's own width; on a file of the other width the twins read
// as many lines as were written. Flag 2 is left unchecked: the narrow twin's
// wide calls on its narrow stream end a line at the first unit above 0xFF.
template <class Ch>
void write_and_read(const std::vector<std::basic_string<Ch>>& lines, int32_t wide) {
  using Api = Twin<Ch>;
  const std::basic_string<Ch> path(kFile.begin(), kFile.end()), mode(1, Ch('w'));
  TextFileHandle* file = Api::TextFileOpen(path.c_str(), mode.c_str(), wide);
  check(file != nullptr);
  for (const auto& line : lines) check(Api::TextFilePuts(file, line.c_str()) == 1);
  KZ_TextFileClose(file);
  file = KZ_TextFileOpenA(kFile.c_str(), "r", wide);
  const bool own_width = wide == (sizeof(Ch) == 2 ? 1 : 0);
  std::vector<Ch> back(1 << 14);
  for (const auto& line : lines) {
    check(Api::TextFileGets(file, back.data(), 1 << 14) == 1 || wide == 2);
    check(!own_width || line == back.data());
  }
  check((Api::TextFileGets(file, back.data(), 1 << 14) == 0 && KZ_TextFileEof(file) == 1) ||
        wide == 2);
  KZ_TextFileClose(file);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  // The folder goes at the program's end.
  static const struct Folder {
    Folder() {
      std::filesystem::create_directories(kRoot);
      setenv("KZ_JOURNAL_PATH", kRoot.c_str(), 1);
    }
    ~Folder() { std::filesystem::remove_all(kRoot); }
  } folder;
  const int32_t wide = data[0] % 3;
  const int32_t read_size = 1 + data[1] % 64;
  const std::string bytes(data + 2, data + size);
  read_both(bytes, wide, read_size);

  // The lines are the input's text split at its newlines; a CR that ends a
  // line would merge with the newline on the way back, and is left out.
  std::vector<std::string> lines(1);
  for (char c : std::string(bytes.c_str())) {
    if (c == '\n') lines.emplace_back();
    if (c != '\n' && c != '\r') lines.back().push_back(c);
  }
  std::vector<std::basic_string<wchar>> units;
  for (const auto& line : lines) units.push_back(wide_units(line));
  (data[0] & 0x80) == 0 ? write_and_read(lines, wide) : write_and_read(units, wide);

  // One journal line, with the line size drawn from the input: a size that
  // holds the stamp, the separator and the message writes the line (what it
  // holds is tests/textfile's).
  const std::string& message = lines.front();
  const int32_t written = KZ_JournalOutA("journal.log", message.c_str(), data[1], wide, '/');
  check(written == (data[1] >= 23 + message.size() ? 1 : 0));
  std::filesystem::remove(kRoot + "/journal.log");
  return 0;
}
