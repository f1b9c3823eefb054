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
  FileQueries() {
    write_bytes(dir.path("a.txt"), "x");
    std::filesystem::create_directories(native(dir.path("sub")));
  }
  TempDir dir;
  std::basic_string<Ch> at(const std::string& name = "") const { return dir.at<Ch>(name); }
};
TYPED_TEST_SUITE(FileQueries, ElementTypes);

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

template <class Ch>
bool set_current_directory(const std::basic_string<Ch>& path) {
  if constexpr (sizeof(Ch) == 1) {
    return kz::os::SetCurrentDirectoryA(path.c_str());
  } else {
    return kz::os::SetCurrentDirectoryW(path.c_str());
  }
}

TYPED_TEST(FileQueries, CheckFileAndCheckDirectoryFindWhatIsThere) {
  using Ch = TypeParam;
  struct Case {
    const char* name;
    int32_t file, directory;
  } cases[] = {
      {"a.txt", 1, 0},   {"sub", 1, 1},   {"?.TXT", 1, 0},
      {"*.none", 0, 0},  {"sub\\", 0, 1},  // a trailing separator finds no file
      {"none\\*", 0, 0},
  };
  const auto before = current_directory<Ch>();
  for (const auto& c : cases) {
    EXPECT_EQ(Twin<Ch>::CheckFile(this->at(c.name).c_str()), c.file) << c.name;
    EXPECT_EQ(Twin<Ch>::CheckDirectory(this->at(c.name).c_str()), c.directory) << c.name;
    EXPECT_EQ(current_directory<Ch>(), before);
  }
}

TYPED_TEST(FileQueries, CreateDirectoryMakesEveryLevel) {
  using Ch = TypeParam;
  struct Case {
    const char *path, *made;
    int32_t result;
  } cases[] = {
      {"a\\b\\c", "a\\b\\c", 1},
      {"a\\b\\c", "a\\b\\c", 0},  // there already
      {"d\\e\\", "d\\e", 1},      // one trailing backslash goes
      {"f\\g\\\\", "f\\g", 0},    // of two, the walk made the level the last call finds
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at(c.path).c_str()), c.result) << c.path;
    EXPECT_TRUE(std::filesystem::is_directory(native(this->dir.path(c.made))));
  }
  const Ch empty[] = {0};
  EXPECT_EQ(Twin<Ch>::CreateDirectory(empty), 0);
  // 259 elements are within the limit, 260 are over it.
  const std::string long_name(259 - this->dir.path("").size() - 1, 'n');
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at(long_name + "x").c_str()), 0);
  EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at(long_name).c_str()), 1);
  // Relative to the current directory.
  const auto before = current_directory<Ch>();
  ASSERT_TRUE(set_current_directory(this->at()));
  EXPECT_EQ(Twin<Ch>::CreateDirectory(text<Ch>("r\\s").c_str()), 1);
  set_current_directory(before);
  EXPECT_TRUE(std::filesystem::is_directory(native(this->dir.path("r\\s"))));
}

TEST(FileQueries, NarrowCreateDirectoryTakesATrailByteForABackslash) {
  TempDir dir;
  EXPECT_EQ(KZ_CreateDirectoryA(dir.path("\x95\x5C\\sub").c_str()), 1);
  // The walk also tried the prefix that ends between the character's bytes.
  EXPECT_EQ(KZ_CheckDirectoryW(dir.at<wchar>("\x95\x5C\\sub").c_str()), 1);
}

// Sizes beside 4 GiB, in sparse files; low bits all ones look like a failure
// and only the whole tells them apart. Directories, missing and busy files
// give neither size nor times.
TYPED_TEST(FileQueries, FileSizeGivesTheLowHalfAndTheWhole) {
  using Ch = TypeParam;
  const auto big = native(this->dir.path("big"));
  std::ofstream(big).close();
  for (uint64_t size : {uint64_t{5}, (uint64_t{1} << 32) + 5, uint64_t{0xFFFFFFFF}}) {
    std::filesystem::resize_file(big, size);
    uint64_t whole = 0;
    EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("big").c_str(), &whole), uint32_t(size));
    EXPECT_EQ(whole, size);
    EXPECT_EQ(Twin<Ch>::GetFileSize(this->at("big").c_str(), nullptr), uint32_t(size));
  }
  TextFileHandle* held = KZ_TextFileOpenA(this->dir.path("a.txt").c_str(), "a", 0);
  ASSERT_NE(held, nullptr);
  for (const char* name : {"sub", "missing", "a.txt"}) {
    uint64_t whole = 7;
    FILETIME write_time = {1, 2};
    EXPECT_EQ(Twin<Ch>::GetFileSize(this->at(name).c_str(), &whole), 0xFFFFFFFFu) << name;
    EXPECT_EQ(whole, 7u);
    EXPECT_EQ(Twin<Ch>::GetFileTime(this->at(name).c_str(), nullptr, nullptr, &write_time), 0);
    EXPECT_EQ(write_time.dwLowDateTime, 1u);
  }
  KZ_TextFileClose(held);
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
  for (int wanted = 0; wanted < 3; ++wanted) {
    FILETIME got[3] = {sentinel, sentinel, sentinel};
    FILETIME* out[3] = {nullptr, nullptr, nullptr};
    out[wanted] = &got[wanted];
    EXPECT_NE(Twin<Ch>::GetFileTime(this->at("t").c_str(), out[0], out[1], out[2]), 0);
    for (int k = 0; k < 3; ++k)
      EXPECT_EQ(kz::os::to_ticks(got[k]) == kz::os::to_ticks(sentinel), k != wanted);
    EXPECT_LE(kz::os::to_ticks(got[wanted]), after);
    if (wanted == 2) {
      EXPECT_GE(kz::os::to_ticks(got[wanted]), before);
    }
  }
}

}  // namespace
