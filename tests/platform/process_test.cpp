// The platform's command line: the split held against what the real
// CommandLineToArgvW gave for a corpus of tricky lines, and the program's
// path cut at a buffer as the real GetModuleFileNameW cuts it.
#include <fstream>
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

// A text of the vector file: what stands between its outer brackets, with
// %XXXX for one 16-bit element.
wstring bracketed(const std::string& record) {
  const std::size_t open = record.find('[');
  const std::size_t close = record.rfind(']');
  wstring text;
  for (std::size_t i = open + 1; i < close; ++i) {
    if (record[i] == '%') {
      text.push_back(static_cast<wchar>(std::stoul(record.substr(i + 1, 4), nullptr, 16)));
      i += 4;
    } else {
      text.push_back(static_cast<wchar>(static_cast<unsigned char>(record[i])));
    }
  }
  return text;
}

struct SplitRecord {
  wstring line;
  std::vector<wstring> elements;  // empty: the program's path stands there
  std::vector<bool> program;
};

std::vector<SplitRecord> recorded_splits() {
  std::ifstream file(KZ_ARGV_VECTORS);
  EXPECT_TRUE(file) << "cannot open " << KZ_ARGV_VECTORS;
  std::vector<SplitRecord> records;
  std::string record;
  while (std::getline(file, record)) {
    if (record.rfind("line ", 0) == 0) {
      records.push_back({bracketed(record), {}, {}});
    } else if (!records.empty() && record.rfind("arg ", 0) == 0) {
      records.back().elements.push_back(bracketed(record));
      records.back().program.push_back(false);
    } else if (!records.empty() && record == "program") {
      records.back().elements.emplace_back();
      records.back().program.push_back(true);
    }
  }
  return records;
}

wstring program_path() {
  std::vector<wchar> path(32768);
  const auto length = os::GetModuleFileNameW(nullptr, path.data(), 32768);
  return wstring(path.data(), length);
}

std::string shown(const wstring& text) {
  std::string out = "[";
  for (wchar c : text) {
    if (c >= 0x20 && c < 0x7F) {
      out.push_back(static_cast<char>(c));
    } else {
      char hex[8];
      std::snprintf(hex, sizeof hex, "%%%04X", static_cast<unsigned>(c));
      out += hex;
    }
  }
  return out + "]";
}

// The vectors come from the real call (tools/gen-argv/generate). On POSIX
// this holds the layer's split against Windows; under Wine it checks the
// file against the system it was made on.
TEST(PlatformCommandLine, SplitsEveryRecordedLineAsThePlatformDoes) {
  const std::vector<SplitRecord> records = recorded_splits();
  ASSERT_GE(records.size(), 460u);
  const wstring program = program_path();
  int differences = 0;
  for (const SplitRecord& record : records) {
    int count = -1;
    wchar** elements = os::CommandLineToArgvW(record.line.c_str(), &count);
    ASSERT_NE(elements, nullptr) << shown(record.line);
    std::vector<wstring> got(elements, elements + count);
    EXPECT_EQ(elements[count], nullptr) << "the array ends in a null";
    os::LocalFree(elements);
    std::vector<wstring> expected = record.elements;
    for (std::size_t k = 0; k < expected.size(); ++k)
      if (record.program[k]) expected[k] = program;
    if (got != expected) {
      ++differences;
      std::string both = shown(record.line) + " gave";
      for (const wstring& element : got) {
        both += ' ';
        both += shown(element);
      }
      ADD_FAILURE() << both;
    }
  }
  EXPECT_EQ(differences, 0);
}

// A path that does not fit with its terminator fills the buffer, without a
// terminator, and the result says so by equalling size.
TEST(PlatformCommandLine, CutsTheProgramsPathAtTheBufferAndSaysSo) {
  const wstring program = program_path();
  const auto length = static_cast<os::DWORD>(program.size());
  for (os::DWORD size : {length + 2, length + 1, length, length - 1, os::DWORD{1}}) {
    std::vector<wchar> buffer = sentinel_buffer<wchar>(size + 1);
    const os::DWORD got = os::GetModuleFileNameW(nullptr, buffer.data(), size);
    const bool fits = size > length;
    EXPECT_EQ(got, fits ? length : size) << size;
    EXPECT_EQ(wstring(buffer.data(), fits ? length + 1 : size),
              fits ? program + wchar{0} : program.substr(0, size))
        << size;
    EXPECT_TRUE(untouched_from(buffer, size)) << size;
  }
}

}  // namespace
