// The platform's files, streams and environment, as the library relies on
// them; each case holds for Windows (under Wine) and for the POSIX layer.
#include "files.h"

#include <algorithm>
#include <random>

#include "platform/platform.h"

namespace {

using namespace kz::test;
namespace os = kz::os;

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

  char current[260];
  const os::DWORD n = os::GetCurrentDirectoryA(260, current);
  ASSERT_GT(n, 2u);
  EXPECT_EQ(current[1], ':');
  EXPECT_EQ(current[2], '\\');
  EXPECT_TRUE(os::SetCurrentDirectoryA(current));
  // Too small a buffer: the size needed, and nothing written.
  char small[4] = {'?', '?', '?', '?'};
  EXPECT_EQ(os::GetCurrentDirectoryA(n, small), n + 1);
  EXPECT_EQ(small[0], '?');
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

// Whether a second open succeeds beside a first, by access and share mode.
TEST(PlatformFiles, OpensKeepToEachOthersShareModes) {
  TempDir dir;
  write_bytes(dir.path("s"), "x");
  const auto R = os::kGenericRead, W = os::kGenericWrite;
  const auto SR = os::kFileShareRead, SW = os::kFileShareWrite;
  struct Case {
    os::DWORD access, share, second_access, second_share;
    bool opens;
  } cases[] = {
      {R, SR, R, SR, true},  {R, SR, W, SR | SW, false},     {R, 0, R, SR | SW, false},
      {W, SR, R, SR, false}, {W, SR | SW, W, SR | SW, true},
  };
  for (const auto& c : cases) {
    const os::HANDLE first = os::CreateFileA(dir.path("s").c_str(), c.access, c.share, nullptr,
                                             os::kOpenExisting, 0, nullptr);
    ASSERT_NE(first, os::kInvalidHandle);
    const os::HANDLE second =
        os::CreateFileA(dir.path("s").c_str(), c.second_access, c.second_share, nullptr,
                        os::kOpenExisting, 0, nullptr);
    EXPECT_EQ(second != os::kInvalidHandle, c.opens)
        << c.access << " " << c.share << " " << c.second_access << " " << c.second_share;
    if (second != os::kInvalidHandle) os::CloseHandle(second);
    os::CloseHandle(first);
  }
  std::filesystem::create_directories(native(dir.path("d")));
  EXPECT_EQ(os::CreateFileA(dir.path("d").c_str(), R, SR, nullptr, os::kOpenExisting, 0, nullptr),
            os::kInvalidHandle);
}

// Text mode reads CR LF as one newline and keeps every other CR, checked
// against a plain model on random text whose lines straddle the stream's
// buffers.
TEST(PlatformFiles, TextModeReadsCrLfAsOneNewline) {
  TempDir dir;
  std::mt19937 rng(5);
  for (int round = 0; round < 12; ++round) {
    std::string bytes;
    const std::size_t size = 4000 + rng() % 9000;
    while (bytes.size() < size) {
      const unsigned pick = rng() % 16;
      bytes += pick < 3 ? std::string("\r\n").substr(pick == 2, pick == 0 ? 2 : 1)
                        : std::string(1, 'a' + pick);
    }
    if (round % 2 == 0) bytes += "\r";  // a CR at the very end stays
    write_bytes(dir.path("t"), bytes);
    std::string expected;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      if (bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n') continue;
      expected += bytes[i];
    }
    FILE* stream = nullptr;
    ASSERT_EQ(os::fopen_s(&stream, dir.path("t").c_str(), "rt"), 0);
    std::string got;
    char line[97];
    while (os::fgets(line, sizeof line, stream) != nullptr) got += line;
    EXPECT_NE(os::feof(stream), 0);
    os::fclose(stream);
    EXPECT_EQ(got, expected) << round;
  }
  FILE* stream = reinterpret_cast<FILE*>(1);  // modes and paths the runtime refuses
  EXPECT_NE(os::fopen_s(&stream, dir.path("m").c_str(), "q"), 0);
  EXPECT_EQ(stream, nullptr);
  EXPECT_NE(os::fopen_s(&stream, dir.path("missing").c_str(), "r"), 0);
  EXPECT_NE(os::fopen_s(&stream, dir.path("").c_str(), "r"), 0);
}

}  // namespace
