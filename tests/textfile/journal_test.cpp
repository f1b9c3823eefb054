// The journal end to end in both twins: where the line lands, what it looks
// like on disk in either encoding, and the calls that write nothing.
#include <regex>

#include "files.h"

namespace {

using namespace kz::test;

template <class Ch>
class Journal : public ::testing::Test {
 protected:
  int32_t out(const std::string& name, const std::string& message, int32_t wide = 0,
              char separator = '/') const {
    return Twin<Ch>::JournalOut(text<Ch>(name).c_str(), in<Ch>(message).c_str(), 64, wide,
                                Ch(separator));
  }
  // The messages of a narrow journal file, each line checked whole.
  std::vector<std::string> messages(const char* name, char separator = '/') const {
    const std::string bytes = read_bytes(dir.path(name)), s(1, separator);
    const std::regex line("\\d{4}" + s + "\\d\\d" + s + R"(\d\d \d\d:\d\d:\d\d > ([^\r\n]*)\r\n)");
    std::vector<std::string> found;
    for (std::sregex_iterator at(bytes.begin(), bytes.end(), line), end; at != end; ++at)
      found.push_back((*at)[1]);
    EXPECT_EQ(std::regex_replace(bytes, line, ""), "") << "torn or foreign bytes";
    return found;
  }
  TempDir dir;
  ScopedVariable root{"KZ_JOURNAL_PATH", dir.path().c_str()};
};
TYPED_TEST_SUITE(Journal, ElementTypes);

using Lines = std::vector<std::string>;

// The message is an argument of the format, never the format; levels of the
// file name below the root are made one by one; without a root, TEMP holds
// the journal; a file held by another writer gets no line. Wide journals are
// UTF-16LE with a mark from either twin; a narrow one from the wide twin is
// code page 932.
TYPED_TEST(Journal, AppendsStampedLinesUnderTheJournalRootOrTempInEitherEncoding) {
  for (const char* message : {"started", "", "100%s %d"})
    EXPECT_EQ(this->out("a\\b\\c.log", message, 0, '-'), 1);
  EXPECT_EQ(this->messages("a\\b\\c.log", '-'), (Lines{"started", "", "100%s %d"}));
  const ScopedVariable temp("TEMP", this->dir.path().c_str());
  for (const char* value : {static_cast<const char*>(nullptr), ""}) {
    const ScopedVariable root("KZ_JOURNAL_PATH", value);
    EXPECT_EQ(this->out("t.log", "x"), 1);
  }
  TextFileHandle* held = KZ_TextFileOpenA(this->dir.path("t.log").c_str(), "a", 0);
  EXPECT_EQ(this->out("t.log", "y"), 0);
  KZ_TextFileClose(held);
  EXPECT_EQ(this->messages("t.log"), (Lines{"x", "x"}));

  const std::string japanese = "\x93\xFA\x96\x7B";
  for (int i = 0; i < 2; ++i) EXPECT_EQ(this->out("w.log", japanese, 1), 1);
  const std::string raw = read_bytes(this->dir.path("w.log"));
  EXPECT_EQ(raw.substr(0, 2), "\xFF\xFE");
  const wstring units(reinterpret_cast<const wchar*>(raw.data() + 2), (raw.size() - 2) / 2);
  write_bytes(this->dir.path("w.txt"), narrow(units));
  EXPECT_EQ(this->messages("w.txt"), (Lines{japanese, japanese}));
  EXPECT_EQ(this->out("n.log", japanese), 1);
  EXPECT_EQ(this->messages("n.log"), Lines{japanese});
}

}  // namespace
