// The file system queries in both twins, on real files in a directory of
// their own: what finds something, what enters, what is created, and the
// size and times of a file that nothing else holds.
#include <fstream>

#include "files.h"
#include "platform/filetime.h"
#include "platform/platform.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class FileQueries : public ::testing::Test {
 protected:
  TempDir dir;
  std::basic_string<Ch> at(const std::string& name = "") const { return dir.at<Ch>(name); }
};
TYPED_TEST_SUITE(FileQueries, ElementTypes);

// "表" is 0x95 0x5C: its trail byte is a backslash.
TYPED_TEST(FileQueries, CheckFileFindsFilesDirectoriesAndWildcardMatches) {
  using Ch = TypeParam;
  write_bytes(this->dir.path("a.txt"), "x");
  std::filesystem::create_directories(native(this->dir.path("sub")));
  struct Case {
    const char* name;
    int32_t result;
  } cases[] = {
      {"a.txt", 1},   {"sub", 1},   {"*.txt", 1}, {"?.TXT", 1}, {"s*", 1},
      {"*.none", 0},  {"b.txt", 0}, {"sub\\", 0},  // a trailing separator finds nothing
      {"none\\*", 0},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Twin<Ch>::CheckFile(this->at(c.name).c_str()), c.result) << c.name;
}

template <class Ch>
std::basic_string<Ch> current_directory() {
  Ch buffer[260];
  if constexpr (sizeof(Ch) == 1) {
    kz::os::GetCurrentDirectoryA(260, buffer);
  } else {
    kz::os::GetCurrentDirectoryW(260, buffer);
  }
  return buffer;
}

TYPED_TEST(FileQueries, CheckDirectoryEntersAndComesBack) {
  using Ch = TypeParam;
  write_bytes(this->dir.path("file"), "x");
  std::filesystem::create_directories(native(this->dir.path("sub")));
  const auto before = current_directory<Ch>();
  EXPECT_EQ(Twin<Ch>::CheckDirectory(this->at("sub").c_str()), 1);
  EXPECT_EQ(current_directory<Ch>(), before);
  EXPECT_EQ(Twin<Ch>::CheckDirectory(this->at("file").c_str()), 0);
  EXPECT_EQ(Twin<Ch>::CheckDirectory(this->at("missing").c_str()), 0);
  EXPECT_EQ(current_directory<Ch>(), before);
}

TYPED_TEST(FileQueries, CreateDirectoryMakesEveryLevel) {
  using Ch = TypeParam;
  const auto exists = [&](const char* name) {
    return std::filesystem::is_directory(native(this->dir.path(name)));
  };
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at("a\\b\\c").c_str()), 1);
  EXPECT_TRUE(exists("a\\b\\c"));
  // There already: 0, and nothing changes.
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at("a\\b\\c").c_str()), 0);
  // One trailing backslash goes; of two, the second makes the last call
  // find the directory the walk made.
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at("d\\e\\").c_str()), 1);
  EXPECT_TRUE(exists("d\\e"));
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at("f\\g\\\\").c_str()), 0);
  EXPECT_TRUE(exists("f\\g"));
  const Ch empty[] = {0};
  EXPECT_EQ(Twin<Ch>::CreateDirectory(empty), 0);
  // A path of 260 elements is over the limit; 259 are not.
  const std::string long_name(259 - this->dir.path("").size() - 1, 'n');
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at(long_name + "x").c_str()), 0);
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at(long_name).c_str()), 1);
}

TYPED_TEST(FileQueries, CreateDirectoryWorksRelativeToTheCurrentDirectory) {
  using Ch = TypeParam;
  const auto before = current_directory<Ch>();
  ASSERT_EQ(Twin<Ch>::CheckDirectory(this->at().c_str()), 1);
  if constexpr (sizeof(Ch) == 1) {
    ASSERT_TRUE(kz::os::SetCurrentDirectoryA(this->at().c_str()));
  } else {
    ASSERT_TRUE(kz::os::SetCurrentDirectoryW(this->at().c_str()));
  }
  EXPECT_EQ(Twin<Ch>::CreateDirectory(text<Ch>("r\\s").c_str()), 1);
  EXPECT_EQ(Twin<Ch>::CheckDirectory(text<Ch>("r\\s").c_str()), 1);
  if constexpr (sizeof(Ch) == 1) {
    kz::os::SetCurrentDirectoryA(before.c_str());
  } else {
    kz::os::SetCurrentDirectoryW(before.c_str());
  }
  EXPECT_TRUE(std::filesystem::is_directory(native(this->dir.path("r\\s"))));
}

TEST(FileQueries, NarrowCreateDirectoryTakesATrailByteForABackslash) {
  TempDir dir;
  const std::string path = dir.path("\x95\x5C\\sub");
  EXPECT_EQ(KZ_CreateDirectoryA(path.c_str()), 1);
  EXPECT_EQ(KZ_CheckDirectoryA(path.c_str()), 1);
  // The walk also tried the prefix that ends between the character's bytes.
  EXPECT_EQ(KZ_CheckDirectoryW(dir.at<wchar>("\x95\x5C\\sub").c_str()), 1);
}

TYPED_TEST(FileQueries, FileSizeGivesTheLowHalfAndTheWhole) {
  using Ch = TypeParam;
  write_bytes(this->dir.path("five"), "12345");
  uint64_t whole = 0;
  EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("five").c_str(), &whole), 5u);
  EXPECT_EQ(whole, 5u);
  EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("five").c_str(), nullptr), 5u);
  // A sparse file of 4 GiB and 5 bytes.
  std::ofstream(native(this->dir.path("big"))).close();
  std::filesystem::resize_file(native(this->dir.path("big")), (uint64_t{1} << 32) + 5);
  EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("big").c_str(), &whole), 5u);
  EXPECT_EQ(whole, (uint64_t{1} << 32) + 5);
  EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("big").c_str(), nullptr), 5u);
  // Low bits all ones look like a failure; only the whole tells them apart.
  std::filesystem::resize_file(native(this->dir.path("big")), 0xFFFFFFFFu);
  whole = 0;
  EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("big").c_str(), &whole), 0xFFFFFFFFu);
  EXPECT_EQ(whole, 0xFFFFFFFFu);
}

TYPED_TEST(FileQueries, SizeAndTimeFailOnDirectoriesMissingAndBusyFiles) {
  using Ch = TypeParam;
  std::filesystem::create_directories(native(this->dir.path("sub")));
  write_bytes(this->dir.path("busy"), "x");
  TextFileHandle* held = KZ_TextFileOpenA(this->dir.path("busy").c_str(), "a", 0);
  ASSERT_NE(held, nullptr);
  for (const char* name : {"sub", "missing", "busy"}) {
    uint64_t whole = 7;
    FILETIME write_time = {1, 2};
    EXPECT_EQ(Twin<Ch>::GetFileSize(this->at(name).c_str(), &whole), 0xFFFFFFFFu) << name;
    EXPECT_EQ(whole, 7u);
    EXPECT_EQ(Twin<Ch>::GetFileTime(this->at(name).c_str(), nullptr, nullptr, &write_time), 0);
    EXPECT_EQ(write_time.dwLowDateTime, 1u);
  }
  KZ_TextFileClose(held);
  EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("busy").c_str(), nullptr), 1u);
}

// Now as a FILETIME of UTC, from the platform's clock.
uint64_t now_ticks() {
  SYSTEMTIME local;
  kz::os::GetLocalTime(&local);
  FILETIME local_time, utc;
  kz::os::SystemTimeToFileTime(&local, &local_time);
  kz::os::LocalFileTimeToFileTime(&local_time, &utc);
  return kz::os::to_ticks(utc);
}

TYPED_TEST(FileQueries, FileTimeFillsOnlyTheTimesAsked) {
  using Ch = TypeParam;
  const uint64_t before = now_ticks() - 2 * kz::os::kTicksPerSecond;
  write_bytes(this->dir.path("t"), "x");
  const uint64_t after = now_ticks() + 2 * kz::os::kTicksPerSecond;
  const FILETIME sentinel = {0x7B7B7B7B, 0x7B7B7B7B};
  FILETIME times[3] = {sentinel, sentinel, sentinel};
  for (int wanted = 0; wanted < 3; ++wanted) {
    FILETIME got[3] = {sentinel, sentinel, sentinel};
    FILETIME* out[3] = {nullptr, nullptr, nullptr};
    out[wanted] = &got[wanted];
    EXPECT_NE(Twin<Ch>::GetFileTime(this->at("t").c_str(), out[0], out[1], out[2]), 0);
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(kz::os::to_ticks(got[k]) == kz::os::to_ticks(sentinel), k != wanted);
    times[wanted] = got[wanted];
  }
  const uint64_t written = kz::os::to_ticks(times[2]);
  EXPECT_GE(written, before);
  EXPECT_LE(written, after);
  EXPECT_LE(kz::os::to_ticks(times[0]), after);
}

}  // namespace
