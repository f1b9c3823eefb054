// Journal and text-file writes on a file system that runs out of room: the
// call that finds no room reports it, and the lines before stay whole. The
// small file system is a tmpfs of 64 KiB, which only root on Linux can
// mount; elsewhere the test skips.
#include <cstdlib>
#include <sstream>

#include "files.h"

namespace kz::test {
namespace {

const std::string kLine = "a line of forty-four bytes, give or take...";

// The number of lines in the file, each the stamp and kLine; -1 for a
// line that is not whole, unless it is the last and may be `torn`.
int whole_lines(const std::string& bytes, std::size_t stamp, bool torn) {
  std::istringstream file(bytes);
  int whole = 0;
  for (std::string line; std::getline(file, line); ++whole)
    if (line.size() <= stamp || line.substr(stamp) != kLine + "\r")
      return torn && file.peek() == EOF ? whole : -1;
  return whole;
}

TEST(StressFullDisk, AWriteThatFindsNoRoomFailsAndEarlierLinesStayWhole) {
  TempDir dir;
  const std::string mount_point = native(dir.path()).string();
  if (std::system(("mount -t tmpfs -o size=64k kz-full '" + mount_point + "' 2>/dev/null").c_str()))
    GTEST_SKIP() << "no small file system to fill: mounting a tmpfs needs root on Linux";
  struct Unmount {
    std::string at;
    ~Unmount() { std::system(("umount '" + at + "'").c_str()); }
  } unmount{mount_point};
  ScopedVariable root("KZ_JOURNAL_PATH", dir.path().c_str());
  int journal_lines = 0;
  while (journal_lines < 5000 && KZ_JournalOutA("full.log", kLine.c_str(), 128, 0, '/') == 1)
    ++journal_lines;
  EXPECT_LT(journal_lines, 5000);
  EXPECT_EQ(whole_lines(read_bytes(dir.path("full.log")), 22, false), journal_lines);

  // A text file's stream writes its buffer when full, which ends anywhere in
  // a line: the failure shows at the line that fills the buffer, and the
  // last line that reached the file may be cut.
  std::filesystem::remove(native(dir.path("full.log")));
  TextFileHandle* file = KZ_TextFileOpenA(dir.path("lines.txt").c_str(), "w", 0);
  ASSERT_NE(file, nullptr);
  int put = 0;
  while (put < 5000 && KZ_TextFilePutsA(file, (std::string(3, ' ') + kLine).c_str()) == 1) ++put;
  EXPECT_LT(put, 5000);
  EXPECT_EQ(KZ_TextFileError(file), 1);
  KZ_TextFileClose(file);
  const int whole = whole_lines(read_bytes(dir.path("lines.txt")), 3, true);
  EXPECT_GT(whole, 0);
  EXPECT_LE(whole, put);
}

}  // namespace
}  // namespace kz::test
