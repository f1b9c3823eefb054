// The file system queries in both twins, on real files in a directory of
// their own: what finds something, what enters, what is created, and the
// size and times of a file that nothing else holds.
#include <chrono>

#include "files.h"
#include "frame/text.h"

namespace {

using namespace kz::test;

template <class Ch>
class FileQueries : public ::testing::Test {
 protected:
  FileQueries() {
    write_bytes(dir.path("a.txt"), "x");
    std::filesystem::create_directories(native(dir.path("sub")));
  }
  std::basic_string<Ch> at(const std::string& name = "") const { return dir.at<Ch>(name); }
  static std::basic_string<Ch> current() {
    Ch buffer[260];
    kz::Text<Ch>::current_directory(260, buffer);
    return buffer;
  }
  TempDir dir;
};
TYPED_TEST_SUITE(FileQueries, ElementTypes);

// A trailing separator finds no file; no query changes the current directory.
TYPED_TEST(FileQueries, ChecksFindWhatIsThereAndCreateDirectoryMakesEveryLevel) {
  using Ch = TypeParam;
  const std::tuple<const char*, int32_t, int32_t> cases[] = {{"a.txt", 1, 0}, {"sub", 1, 1},
                                                             {"?.TXT", 1, 0}, {"*.none", 0, 0},
                                                             {"sub\\", 0, 1}, {"none\\*", 0, 0}};
  const auto before = this->current();
  for (const auto& [name, file, directory] : cases) {
    EXPECT_EQ(Twin<Ch>::CheckFile(this->at(name).c_str()), file) << name;
    EXPECT_EQ(Twin<Ch>::CheckDirectory(this->at(name).c_str()), directory) << name;
    EXPECT_EQ(this->current(), before);
  }
  // Every level is made; 259 elements are within the limit, 260 over it; a
  // relative path counts from the current directory. The narrow walk also
  // tries the prefix that ends between the bytes of "表" (0x95 0x5C).
  const std::string long_name(259 - this->dir.path().size() - 1, 'n');
  const std::tuple<std::string, std::string, int32_t> levels[] = {
      {"a\\b\\c", "a\\b\\c", 1}, {"a\\b\\c", "a\\b\\c", 0},  // there already
      {"d\\e\\", "d\\e", 1},                                 // one trailing backslash goes
      {"f\\g\\\\", "f\\g", 0},  // of two, the walk made the level the last call finds
      {long_name + "x", "", 0},  {long_name, long_name, 1}, {"\x95\x5C\\sub", "\x95\x5C\\sub", 1}};
  for (const auto& [path, made, result] : levels) {
    EXPECT_EQ(Twin<Ch>::CreateDirectory(this->at(path).c_str()), result) << path;
    EXPECT_TRUE(std::filesystem::is_directory(native(this->dir.path(made))));
  }
  EXPECT_EQ(Twin<Ch>::CreateDirectory(text<Ch>("").c_str()), 0);
  ASSERT_TRUE(kz::Text<Ch>::set_current_directory(this->at().c_str()));
  EXPECT_EQ(Twin<Ch>::CreateDirectory(text<Ch>("r\\s").c_str()), 1);
  kz::Text<Ch>::set_current_directory(before.c_str());
  EXPECT_TRUE(std::filesystem::is_directory(native(this->dir.path("r\\s"))));
}

// Sizes beside 4 GiB, in sparse files; low bits all ones look like a failure
// and only the whole tells them apart. Directories, missing and busy files
// give neither size nor times.
TYPED_TEST(FileQueries, FileSizeGivesTheLowHalfAndTheWholeFileTimeOnlyTheTimesAsked) {
  using Ch = TypeParam;
  write_bytes(this->dir.path("big"), "");
  const auto big = native(this->dir.path("big"));
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
  // Only the time asked for is written; the last write lies between the
  // clock before and after the write.
  using namespace std::chrono;
  const auto now = [](int seconds) {  // in ticks from 1601, 11,644,473,600 s before 1970
    const auto since_1970 = duration_cast<microseconds>(system_clock::now().time_since_epoch());
    return (since_1970 + 11'644'473'600s + 1s * seconds).count() * 10;
  };
  const int64_t before = now(-2);
  write_bytes(this->dir.path("t"), "x");
  const int64_t after = now(2);
  for (int wanted = 0; wanted < 3; ++wanted) {
    FILETIME got[3] = {moment(7), moment(7), moment(7)}, *out[3] = {};
    out[wanted] = &got[wanted];
    EXPECT_NE(Twin<Ch>::GetFileTime(this->at("t").c_str(), out[0], out[1], out[2]), 0);
    for (int k = 0; k < 3; ++k) EXPECT_EQ(ticks(got[k]) == 7, k != wanted);
    EXPECT_LE(ticks(got[wanted]), after);
    EXPECT_GE(ticks(got[wanted]), wanted == 2 ? before : 0);
  }
}

}  // namespace
