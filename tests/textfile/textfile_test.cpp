// Text files in both encodings through both twins: what lands on disk, what
// comes back line by line, the marks of the stream, and the share rule of
// open files within one process.
#include "files.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class TextFiles : public ::testing::Test {
 protected:
  TempDir dir;
};
TYPED_TEST_SUITE(TextFiles, ElementTypes);

// "日本" in code page 932, and a text of the other twin's width.
const std::string kJapanese = "\x93\xFA\x96\x7B";

template <class Ch>
std::basic_string<Ch> in(const std::string& narrow_text) {
  if constexpr (sizeof(Ch) == 1) {
    return narrow_text;
  } else {
    return widen(narrow_text);
  }
}

template <class Ch>
TextFileHandle* open(const TempDir& dir, const char* name, const char* mode, int32_t wide) {
  return Twin<Ch>::TextFileOpen(dir.at<Ch>(name).c_str(), text<Ch>(mode).c_str(), wide);
}

// Every writer twin, every reader twin, both encodings: the lines come back
// as written.
TYPED_TEST(TextFiles, LinesComeBackInEitherTwinAndEncoding) {
  using Ch = TypeParam;
  const std::string lines[] = {"abc", "", kJapanese + "x", "50% \\", "\xB1\xB2"};
  for (int32_t wide : {0, 1}) {
    TextFileHandle* file = open<Ch>(this->dir, "lines.txt", "w", wide);
    ASSERT_NE(file, nullptr);
    for (const auto& line : lines) EXPECT_EQ(Twin<Ch>::TextFilePuts(file, in<Ch>(line).c_str()), 1);
    KZ_TextFileClose(file);
    for (bool narrow_reader : {true, false}) {
      SCOPED_TRACE(testing::Message() << "wide " << wide << " narrow reader " << narrow_reader);
      file = KZ_TextFileOpenA(this->dir.path("lines.txt").c_str(), "r", wide);
      ASSERT_NE(file, nullptr);
      for (const auto& line : lines) {
        if (narrow_reader) {
          char buffer[32];
          EXPECT_EQ(KZ_TextFileGetsA(file, buffer, 32), 1);
          EXPECT_EQ(std::string(buffer), line);
        } else {
          wchar buffer[32];
          EXPECT_EQ(KZ_TextFileGetsW(file, buffer, 32), 1);
          EXPECT_EQ(wstring(buffer), widen(line));
        }
      }
      EXPECT_EQ(KZ_TextFileEof(file), 0);
      KZ_TextFileClose(file);
    }
  }
}

TYPED_TEST(TextFiles, NarrowFilesHaveCrLfAndWideFilesUtf16WithAMark) {
  using Ch = TypeParam;
  struct Case {
    int32_t wide;
    const char* mode;
    std::string bytes;
  } cases[] = {
      {0, "w", "abc\r\n" + kJapanese + "\r\n"},
      {1, "w",
       std::string("\xFF\xFE"
                   "a\0b\0c\0\r\0\n\0\xE5\x65\x2C\x67\r\0\n\0",
                   20)},
      // Flag 2 is a narrow file as well.
      {2, "a", "abc\r\n" + kJapanese + "\r\n"},
  };
  for (const auto& c : cases) {
    TextFileHandle* file = open<Ch>(this->dir, "disk.txt", c.mode, c.wide);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(Twin<Ch>::TextFilePuts(file, in<Ch>("abc").c_str()), 1);
    const int32_t second = Twin<Ch>::TextFilePuts(file, in<Ch>(kJapanese).c_str());
    KZ_TextFileClose(file);
    EXPECT_EQ(second, 1);
    // Flag 2 sends the narrow twin's text through the wide stream calls of a
    // narrow stream, which write nothing from a unit beyond one byte on.
    const bool cut = c.wide == 2 && sizeof(Ch) == 1;
    EXPECT_EQ(read_bytes(this->dir.path("disk.txt")), cut ? "abc\r\n" : c.bytes) << c.wide;
    std::filesystem::remove(native(this->dir.path("disk.txt")));
  }
}

TYPED_TEST(TextFiles, AppendingKeepsTheMarkAndTheEncodingOfTheFile) {
  using Ch = TypeParam;
  for (int round = 0; round < 2; ++round) {
    TextFileHandle* file = open<Ch>(this->dir, "append.txt", "a", 1);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(Twin<Ch>::TextFilePuts(file, in<Ch>("z").c_str()), 1);
    KZ_TextFileClose(file);
  }
  EXPECT_EQ(read_bytes(this->dir.path("append.txt")),
            std::string("\xFF\xFEz\0\r\0\n\0z\0\r\0\n\0", 14));
  // A wide file without a mark is UTF-16LE all the same.
  write_bytes(this->dir.path("bare.txt"), std::string("q\0\r\0\n\0", 6));
  TextFileHandle* file = open<Ch>(this->dir, "bare.txt", "r", 1);
  ASSERT_NE(file, nullptr);
  Ch line[8];
  EXPECT_EQ(Twin<Ch>::TextFileGets(file, line, 8), 1);
  EXPECT_EQ(std::basic_string<Ch>(line), text<Ch>("q"));
  KZ_TextFileClose(file);
}

// Reading at the end and behind a line without a newline, on the route
// without conversion (the file's encoding is the twin's) and with it.
TYPED_TEST(TextFiles, TheLastLineAndTheEndOfTheFile) {
  using Ch = TypeParam;
  for (int32_t wide : {0, 1}) {
    const bool converts = (wide == 1) == (sizeof(Ch) == 1);
    SCOPED_TRACE(wide);
    TextFileHandle* file = open<Ch>(this->dir, "two.txt", "w", wide);
    Twin<Ch>::TextFilePuts(file, in<Ch>("one").c_str());
    Twin<Ch>::TextFilePuts(file, in<Ch>("two").c_str());
    KZ_TextFileClose(file);
    file = open<Ch>(this->dir, "two.txt", "r", wide);
    auto buffer = sentinel_buffer<Ch>(16);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 1);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 1);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 0);
    EXPECT_EQ(KZ_TextFileEof(file), 1);
    EXPECT_EQ(str(buffer), converts ? text<Ch>("two") : std::basic_string<Ch>());
    // Back to the first line: the end-of-file mark goes. Offsets are the
    // file's bytes, so the first line of a wide file starts behind its mark.
    EXPECT_EQ(KZ_TextFileSeek(file, wide == 1 ? 2 : 0, 0), 1);
    EXPECT_EQ(KZ_TextFileEof(file), 0);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 1);
    EXPECT_EQ(str(buffer), text<Ch>("one"));
    KZ_TextFileClose(file);

    // A last line without its newline comes with result 0.
    write_bytes(this->dir.path("open.txt"),
                wide == 1 ? std::string("\xFF\xFEl\0\n\0x\0y\0", 10) : std::string("l\nxy"));
    file = open<Ch>(this->dir, "open.txt", "r", wide);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 1);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 0);
    EXPECT_EQ(str(buffer), converts ? text<Ch>("l") : text<Ch>("x"));
    KZ_TextFileClose(file);
  }
}

TYPED_TEST(TextFiles, ALongLineLosesTheElementBehindTheCut) {
  using Ch = TypeParam;
  for (int32_t wide : {0, 1}) {
    TextFileHandle* file = open<Ch>(this->dir, "long.txt", "w", wide);
    Twin<Ch>::TextFilePuts(file, text<Ch>("abcdefghijklmnopqrst").c_str());
    KZ_TextFileClose(file);
    file = open<Ch>(this->dir, "long.txt", "r", wide);
    auto buffer = sentinel_buffer<Ch>(12);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 10), 1);
    EXPECT_EQ(str(buffer), text<Ch>("abcdefgh"));
    EXPECT_TRUE(untouched_from(buffer, 10));
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 10), 1);
    EXPECT_EQ(str(buffer), text<Ch>("jklmnopq"));
    KZ_TextFileClose(file);
  }
}

TYPED_TEST(TextFiles, OpensThatFail) {
  using Ch = TypeParam;
  EXPECT_EQ(open<Ch>(this->dir, "missing.txt", "r", 0), nullptr);
  EXPECT_EQ(open<Ch>(this->dir, "x.txt", "q", 0), nullptr);
  // The mode, "t" and ",ccs=UNICODE" must fit 32 elements.
  EXPECT_EQ(open<Ch>(this->dir, "x.txt", "wwwwwwwwwwwwwwwwwww", 1), nullptr);
  EXPECT_EQ(open<Ch>(this->dir, "x.txt", std::string(31, 'w').c_str(), 0), nullptr);
  EXPECT_EQ(open<Ch>(this->dir, "", "r", 0), nullptr);
  KZ_TextFileClose(nullptr);
}

// A file open for writing is shared with no one; one open for reading with
// readers.
TYPED_TEST(TextFiles, OpenFilesKeepToTheirShareRule) {
  using Ch = TypeParam;
  write_bytes(this->dir.path("s.txt"), "x\r\n");
  struct Case {
    const char *held, *second;
    bool opens;
  } cases[] = {
      {"r", "r", true}, {"r", "a", false}, {"a", "r", false}, {"w", "a", false}, {"r+", "r", false},
  };
  for (const auto& c : cases) {
    TextFileHandle* held = open<Ch>(this->dir, "s.txt", c.held, 0);
    ASSERT_NE(held, nullptr);
    TextFileHandle* second = open<Ch>(this->dir, "s.txt", c.second, 0);
    EXPECT_EQ(second != nullptr, c.opens) << c.held << " " << c.second;
    KZ_TextFileClose(second);
    KZ_TextFileClose(held);
  }
  // Once closed, the file opens again.
  TextFileHandle* again = open<Ch>(this->dir, "s.txt", "a", 0);
  EXPECT_NE(again, nullptr);
  KZ_TextFileClose(again);
}

TYPED_TEST(TextFiles, TheErrorMarkStays) {
  using Ch = TypeParam;
  write_bytes(this->dir.path("ro.txt"), "x\r\ny\r\n");
  TextFileHandle* file = open<Ch>(this->dir, "ro.txt", "r", 0);
  EXPECT_EQ(Twin<Ch>::TextFilePuts(file, in<Ch>("no").c_str()), 0);
  EXPECT_EQ(KZ_TextFileError(file), 1);
  Ch line[8];
  EXPECT_EQ(Twin<Ch>::TextFileGets(file, line, 8), 0);
  EXPECT_EQ(KZ_TextFileError(file), 1);
  KZ_TextFileClose(file);
}

// The stream is one a caller can use with the C library directly.
TEST(TextFiles, TheHandleIsAUsableStream) {
  TempDir dir;
  TextFileHandle* file = KZ_TextFileOpenA(dir.path("c.txt").c_str(), "w", 0);
  ASSERT_NE(file, nullptr);
  std::fprintf(KZ_TextFileHandle(file), "n=%d\n", 5);
  EXPECT_EQ(KZ_TextFilePutsA(file, "end"), 1);
  KZ_TextFileClose(file);
  EXPECT_EQ(read_bytes(dir.path("c.txt")), "n=5\r\nend\r\n");
}

TEST(TextFiles, AFailedAllocationIsAnOrdinaryFailure) {
  TempDir dir;
  const std::string path = dir.path("f.txt");
  for_each_allocation_failure([&] {
    TextFileHandle* file = KZ_TextFileOpenA(path.c_str(), "w", 1);
    if (file == nullptr) return;
    const int32_t put = KZ_TextFilePutsA(file, "abc");
    KZ_TextFileClose(file);
    if (put == 0) return;
    file = KZ_TextFileOpenA(path.c_str(), "r", 1);
    if (file == nullptr) return;
    char line[8] = "old";
    const int32_t got = KZ_TextFileGetsA(file, line, 8);
    EXPECT_EQ(std::string(line), got == 1 ? "abc" : "old");
    KZ_TextFileClose(file);
  });
}

}  // namespace
