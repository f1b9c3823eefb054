// The platform's files, streams, environment, change notification and
// command line, as the library relies on them; each case holds for Windows
// (under Wine) and for the POSIX layer (the status waits exercise the rest
// of the notification).
#include "files.h"

#include <array>
#include <fstream>
#include <random>

#include "platform/platform.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

os::HANDLE open(const std::string& path, os::DWORD access, os::DWORD share) {
  return os::CreateFileA(path.c_str(), access, share, nullptr, os::kOpenExisting, 0, nullptr);
}

TEST(PlatformFiles, BothSlashesSeparateAndTheCurrentDirectoryHasADrive) {
  TempDir dir;
  write_bytes(dir.path("a.txt"), "x");
  std::string slashed = dir.path("a.txt");
  std::replace(slashed.begin(), slashed.end(), '\\', '/');
  os::WIN32_FIND_DATAA found;
  const os::HANDLE find = os::FindFirstFileA(slashed.c_str(), &found);
  ASSERT_NE(find, os::kInvalidHandle);
  EXPECT_EQ(std::string(found.cFileName), "a.txt");
  os::FindClose(find);
  // Too small a buffer: the size needed, and nothing written.
  std::string current(260, '?'), small(260, '?');
  const os::DWORD n = os::GetCurrentDirectoryA(260, current.data());
  ASSERT_GT(n, 2u);
  EXPECT_EQ(current.substr(1, 2), ":\\");
  EXPECT_TRUE(os::SetCurrentDirectoryA(current.c_str()));
  EXPECT_EQ(os::GetCurrentDirectoryA(n, small.data()), n + 1);
  EXPECT_EQ(small, std::string(260, '?'));
}

TEST(PlatformFiles, EnvironmentNamesHaveNoCase) {
  ASSERT_TRUE(os::SetEnvironmentVariableA("KzMixedCase", "v\x93\xFA"));
  char narrow[8];
  EXPECT_EQ(os::GetEnvironmentVariableA("KZMIXEDCASE", narrow, 8), 3u);
  EXPECT_EQ(std::string(narrow), "v\x93\xFA");
  wchar wide[8];
  EXPECT_EQ(os::GetEnvironmentVariableW(text<wchar>("kzmixedcase").c_str(), wide, 8), 2u);
  EXPECT_EQ(wstring(wide), widen("v\x93\xFA"));
  EXPECT_EQ(os::GetEnvironmentVariableA("KzMixedCase", narrow, 3), 4u);
  ASSERT_TRUE(os::SetEnvironmentVariableA("KZMIXEDCASE", nullptr));
  EXPECT_EQ(os::GetEnvironmentVariableA("KzMixedCase", narrow, 8), 0u);
}

// Whether a second open succeeds beside a first, by access and share mode;
// a directory cannot be opened.
TEST(PlatformFiles, OpensKeepToEachOthersShareModes) {
  TempDir dir;
  write_bytes(dir.path("s"), "x");
  const auto R = os::kGenericRead, W = os::kGenericWrite;
  const auto SR = os::kFileShareRead, SW = os::kFileShareWrite;
  // access and share of the first open, of the second, and whether it opens
  const std::array<os::DWORD, 5> cases[] = {{R, SR, R, SR, 1},
                                            {R, SR, W, SR | SW, 0},
                                            {R, 0, R, SR | SW, 0},
                                            {W, SR, R, SR, 0},
                                            {W, SR | SW, W, SR | SW, 1}};
  for (const auto& c : cases) {
    const os::HANDLE first = open(dir.path("s"), c[0], c[1]),
                     second = open(dir.path("s"), c[2], c[3]);
    EXPECT_EQ(joined(first != os::kInvalidHandle, second != os::kInvalidHandle), joined(1, c[4]))
        << ::testing::PrintToString(c);
    os::CloseHandle(second);
    os::CloseHandle(first);
  }
  std::filesystem::create_directories(native(dir.path("d")));
  EXPECT_EQ(open(dir.path("d"), R, SR), os::kInvalidHandle);
}

// Text mode reads CR LF as one newline and keeps every other CR, checked
// against a plain model on random text whose lines straddle the stream's
// buffers (the text file tests show the opens it refuses).
TEST(PlatformFiles, TextModeReadsCrLfAsOneNewline) {
  TempDir dir;
  std::mt19937 rng(5);
  for (int round = 0; round < 12; ++round) {
    std::string bytes, expected;
    const std::size_t size = 4200 + rng() % 9000;
    while (bytes.size() < size) {
      const unsigned pick = rng() % 16;
      bytes += pick == 0   ? "\r\n"
               : pick == 1 ? "\r"
               : pick == 2 ? "\n"
                           : std::string(1, 'a' + pick);
    }
    if (round % 2 == 0) bytes += "\r";  // a CR at the very end stays
    bytes.replace(4095, 2, "\r\n");     // across the first refill
    write_bytes(dir.path("t"), bytes);
    for (std::size_t i = 0; i < bytes.size(); ++i)
      if (bytes.compare(i, 2, "\r\n") != 0) expected += bytes[i];
    FILE* stream = nullptr;
    ASSERT_EQ(os::fopen_s(&stream, dir.path("t").c_str(), "rt"), 0);
    std::string got;
    for (char line[97]; os::fgets(line, sizeof line, stream) != nullptr;) got += line;
    EXPECT_NE(os::feof(stream), 0);
    os::fclose(stream);
    EXPECT_EQ(got, expected) << round;
  }
  FILE* refused = reinterpret_cast<FILE*>(1);  // a refused open gives no stream
  EXPECT_NE(os::fopen_s(&refused, dir.path("m").c_str(), "q"), 0);
  EXPECT_EQ(refused, nullptr);
}

// Wine delivers a change through its server, so a signal may come a moment
// after the write: a wait that must see one gets time.
constexpr os::DWORD kSignalGrace = 2000;

TEST(ChangeNotification, AChangeBeforeTheReArmIsKept) {
  // Windows records such a change; Wine's server drops it, so there a
  // status wait sees it only at the next change or at its timeout.
  if (sizeof(wchar_t) == 2) GTEST_SKIP() << "Wine drops a change that comes before the re-arm";
  TempDir dir;
  const os::HANDLE change =
      os::FindFirstChangeNotificationA(dir.path().c_str(), 0, os::kFileNotifyChangeLastWrite);
  ASSERT_NE(change, os::kInvalidHandle);
  write_bytes(dir.path("file"), "a");
  ASSERT_EQ(os::WaitForSingleObject(change, kSignalGrace), os::kWaitObject0);
  os::Sleep(50);
  write_bytes(dir.path("file"), "b");
  os::Sleep(200);
  ASSERT_NE(os::FindNextChangeNotification(change), 0);
  EXPECT_EQ(os::WaitForSingleObject(change, kSignalGrace), os::kWaitObject0);
  os::FindCloseChangeNotification(change);
}

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
    const bool fits = size > length;
    EXPECT_EQ(os::GetModuleFileNameW(nullptr, buffer.data(), size), fits ? length : size) << size;
    EXPECT_EQ(wstring(buffer.begin(), buffer.end()),
              (fits ? program + wchar{0} : program.substr(0, size)) +
                  wstring(fits ? size - length : 1, kSentinel<wchar>))
        << size;
  }
}

}  // namespace
