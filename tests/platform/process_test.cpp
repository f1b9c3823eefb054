// The platform's command line: the split held against what the real
// CommandLineToArgvW gave for a corpus of tricky lines, and the program's
// path cut at a buffer as the real GetModuleFileNameW cuts it.
#include <fstream>

#include "files.h"
#include "platform/platform.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

// A text of the vector file: what stands between its outer brackets, with
// %XXXX for one 16-bit element.
wstring bracketed(const std::string& record) {
  wstring text;
  for (std::size_t i = record.find('[') + 1; i < record.rfind(']'); ++i) {
    const bool escaped = record[i] == '%';
    text.push_back(static_cast<wchar>(escaped ? std::stoul(record.substr(i + 1, 4), nullptr, 16)
                                              : static_cast<unsigned char>(record[i])));
    if (escaped) i += 4;
  }
  return text;
}

// The vectors come from the real call (tools/gen-argv/generate): a "line"
// record, then one "arg" record per element, or "program" where the
// running program's path stands. On POSIX this holds the layer's split
// against Windows; under Wine it checks the file against the system it was
// made on.
TEST(PlatformCommandLine, SplitsEveryRecordedLineAsThePlatformDoes) {
  std::ifstream file(KZ_ARGV_VECTORS);
  ASSERT_TRUE(file) << "cannot open " << KZ_ARGV_VECTORS;
  std::vector<std::pair<wstring, std::vector<wstring>>> records;
  for (std::string record; std::getline(file, record);) {
    if (record.rfind("line ", 0) == 0)
      records.push_back({bracketed(record), {}});
    else if (!records.empty() && record.rfind("arg ", 0) == 0)
      records.back().second.push_back(bracketed(record));
    else if (!records.empty() && record == "program")
      records.back().second.push_back(module_path());
  }
  ASSERT_GE(records.size(), 460u);
  for (const auto& [line, expected] : records) {
    int count = -1;
    wchar** elements = os::CommandLineToArgvW(line.c_str(), &count);
    ASSERT_NE(elements, nullptr) << utf8(line);
    EXPECT_EQ(std::vector<wstring>(elements, elements + count), expected) << utf8(line);
    EXPECT_EQ(elements[count], nullptr) << "the array ends in a null";
    os::LocalFree(elements);
  }
}

// A path that does not fit with its terminator fills the buffer, without a
// terminator, and the result says so by equalling size.
TEST(PlatformCommandLine, CutsTheProgramsPathAtTheBufferAndSaysSo) {
  const wstring program = module_path();
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
