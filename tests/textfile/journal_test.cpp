// The journal end to end in both twins: where the line lands, what it looks
// like on disk in either encoding, and the calls that write nothing.
#include <regex>

#include "files.h"
#include "platform/platform.h"
#include "twins.h"

namespace {

using namespace kz::test;

// Sets or removes an environment variable for one test and puts the old
// value back afterwards.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value) : name_(name) {
    char old[1024];
    const auto n = kz::os::GetEnvironmentVariableA(name, old, sizeof old);
    had_ = n > 0 && n < sizeof old;
    if (had_) old_ = old;
    kz::os::SetEnvironmentVariableA(name, value);
  }
  ~ScopedVariable() { kz::os::SetEnvironmentVariableA(name_, had_ ? old_.c_str() : nullptr); }

 private:
  const char* name_;
  bool had_ = false;
  std::string old_;
};

template <class Ch>
class Journal : public ::testing::Test {
 protected:
  TempDir dir;
};
TYPED_TEST_SUITE(Journal, ElementTypes);

const std::regex kLine(R"(\d{4}/\d\d/\d\d \d\d:\d\d:\d\d > ([^\r\n]*)\r\n)");

// The messages of a narrow journal file, each line checked whole.
std::vector<std::string> messages(const std::string& bytes) {
  std::vector<std::string> out;
  for (std::size_t at = 0; at < bytes.size();) {
    const std::size_t end = bytes.find("\r\n", at);
    if (end == std::string::npos) {
      ADD_FAILURE() << "a torn line: " << bytes.substr(at);
      break;
    }
    std::smatch match;
    const std::string line = bytes.substr(at, end + 2 - at);
    if (std::regex_match(line, match, kLine)) {
      out.push_back(match[1]);
    } else {
      ADD_FAILURE() << "not a journal line: " << line;
    }
    at = end + 2;
  }
  return out;
}

TYPED_TEST(Journal, AppendsStampedLinesUnderTheJournalRoot) {
  using Ch = TypeParam;
  const ScopedVariable root("KZ_JOURNAL_PATH", this->dir.path().c_str());
  const auto name = text<Ch>("app\\today.log");
  EXPECT_EQ(Twin<Ch>::JournalOut(name.c_str(), text<Ch>("started").c_str(), 64, 0, Ch('/')), 1);
  EXPECT_EQ(Twin<Ch>::JournalOut(name.c_str(), text<Ch>("").c_str(), 64, 0, Ch('/')), 1);
  // The message is an argument of the format, never the format.
  EXPECT_EQ(Twin<Ch>::JournalOut(name.c_str(), text<Ch>("100%s %d").c_str(), 64, 0, Ch('/')), 1);
  const auto lines = messages(read_bytes(this->dir.path("app\\today.log")));
  EXPECT_EQ(lines, (std::vector<std::string>{"started", "", "100%s %d"}));
  // Levels of the file name below the root are made one by one.
  EXPECT_EQ(Twin<Ch>::JournalOut(text<Ch>("a\\b\\c.log").c_str(), text<Ch>("deep").c_str(), 64, 0,
                                 Ch('-')),
            1);
  const std::string deep = read_bytes(this->dir.path("a\\b\\c.log"));
  EXPECT_TRUE(std::regex_match(deep, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d > deep\r\n)")));
}

TYPED_TEST(Journal, FallsBackToTempWhenTheRootIsUnsetOrEmpty) {
  using Ch = TypeParam;
  const ScopedVariable temp("TEMP", this->dir.path().c_str());
  for (const char* value : {static_cast<const char*>(nullptr), ""}) {
    const ScopedVariable root("KZ_JOURNAL_PATH", value);
    EXPECT_EQ(
        Twin<Ch>::JournalOut(text<Ch>("t.log").c_str(), text<Ch>("x").c_str(), 64, 0, Ch('/')), 1);
  }
  EXPECT_EQ(messages(read_bytes(this->dir.path("t.log"))), (std::vector<std::string>{"x", "x"}));
}

TYPED_TEST(Journal, WideJournalsAreUtf16InEitherTwin) {
  using Ch = TypeParam;
  const ScopedVariable root("KZ_JOURNAL_PATH", this->dir.path().c_str());
  const std::string japanese = "\x93\xFA\x96\x7B";
  std::basic_string<Ch> message;
  if constexpr (sizeof(Ch) == 1) {
    message = japanese;
  } else {
    message = widen(japanese);
  }
  EXPECT_EQ(Twin<Ch>::JournalOut(text<Ch>("w.log").c_str(), message.c_str(), 64, 1, Ch('/')), 1);
  EXPECT_EQ(Twin<Ch>::JournalOut(text<Ch>("w.log").c_str(), message.c_str(), 64, 1, Ch('/')), 1);
  // Read back through the library: two whole lines.
  TextFileHandle* file = KZ_TextFileOpenA(this->dir.path("w.log").c_str(), "r", 1);
  ASSERT_NE(file, nullptr);
  std::string bytes;
  char line[64];
  while (KZ_TextFileGetsA(file, line, 64) == 1) bytes += std::string(line) + "\r\n";
  KZ_TextFileClose(file);
  EXPECT_EQ(messages(bytes), (std::vector<std::string>{japanese, japanese}));
  const std::string raw = read_bytes(this->dir.path("w.log"));
  EXPECT_EQ(raw.substr(0, 2), "\xFF\xFE");
  EXPECT_EQ(raw.size(), 2 + 2 * (2 * (10 + 1 + 8 + 3 + 2 + 2)));
  // A narrow journal from the wide twin is code page 932.
  EXPECT_EQ(Twin<Ch>::JournalOut(text<Ch>("n.log").c_str(), message.c_str(), 64, 0, Ch('/')), 1);
  EXPECT_EQ(messages(read_bytes(this->dir.path("n.log"))), (std::vector<std::string>{japanese}));
}

TYPED_TEST(Journal, CallsThatWriteNothing) {
  using Ch = TypeParam;
  const ScopedVariable root("KZ_JOURNAL_PATH", this->dir.path().c_str());
  const auto name = text<Ch>("sizes.log");
  // A line of seven elements needs 7 + 23 with its terminator.
  const auto message = text<Ch>("seven77");
  EXPECT_EQ(Twin<Ch>::JournalOut(name.c_str(), message.c_str(), 29, 0, Ch('/')), 0);
  EXPECT_EQ(Twin<Ch>::JournalOut(name.c_str(), message.c_str(), 0, 0, Ch('/')), 0);
  EXPECT_EQ(Twin<Ch>::JournalOut(name.c_str(), message.c_str(), 30, 0, Ch('/')), 1);
  EXPECT_EQ(messages(read_bytes(this->dir.path("sizes.log"))),
            (std::vector<std::string>{"seven77"}));
  // A file held by another writer: no line, but the directory made stays.
  write_bytes(this->dir.path("held.log"), "");
  TextFileHandle* held = KZ_TextFileOpenA(this->dir.path("held.log").c_str(), "a", 0);
  EXPECT_EQ(Twin<Ch>::JournalOut(text<Ch>("held.log").c_str(), message.c_str(), 64, 0, Ch('/')), 0);
  KZ_TextFileClose(held);
  EXPECT_EQ(read_bytes(this->dir.path("held.log")), "");
  // A root and name of 260 elements or more write nothing.
  const std::string long_name(260, 'n');
  EXPECT_EQ(Twin<Ch>::JournalOut(text<Ch>(long_name).c_str(), message.c_str(), 64, 0, Ch('/')), 0);
}

}  // namespace
