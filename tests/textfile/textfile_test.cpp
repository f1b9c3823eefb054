// Text files in both encodings through both twins: what lands on disk, what
// comes back line by line, the marks of the stream, and the share rule of
// open files within one process.
#include "files.h"

namespace {

using namespace kz::test;

template <class Ch>
class TextFiles : public ::testing::Test {
 protected:
  TextFileHandle* open(const std::string& name, const char* mode, int32_t wide) const {
    return Twin<Ch>::TextFileOpen(dir.at<Ch>(name).c_str(), text<Ch>(mode).c_str(), wide);
  }
  // Puts each line through the twin of Ch.
  void put(const std::string& name, const char* mode, int32_t wide,
           std::initializer_list<std::string> lines) const {
    TextFileHandle* file = open(name, mode, wide);
    ASSERT_NE(file, nullptr);
    for (const auto& line : lines) EXPECT_EQ(Twin<Ch>::TextFilePuts(file, in<Ch>(line).c_str()), 1);
    KZ_TextFileClose(file);
  }
  TempDir dir;
};
TYPED_TEST_SUITE(TextFiles, ElementTypes);

const std::string kJapanese = "\x93\xFA\x96\x7B";  // "日本" in code page 932

// Both twins, both encodings: the lines come back as written, and the bytes on disk are CR LF lines
// of code page 932 or of UTF-16LE behind one mark, however many appends wrote them.
TYPED_TEST(TextFiles, LinesComeBackInEitherTwinAndEncoding) {
  using Ch = TypeParam;
  const std::string lines[] = {"abc", kJapanese, "", "50% \\", "\xB1\xB2"};
  const std::string disk[] = {"abc\r\n" + kJapanese + "\r\n",
                              std::string("\xFF\xFE"
                                          "a\0b\0c\0\r\0\n\0\xE5\x65\x2C\x67\r\0\n\0",
                                          20)};
  for (int32_t wide : {0, 1}) {
    const std::string name = "disk" + std::to_string(wide);
    for (const std::string& line : lines) {
      this->put(name, "a", wide, {line});
      EXPECT_TRUE(line != kJapanese || read_bytes(this->dir.path(name)) == disk[wide]) << wide;
    }
    TextFileHandle* file = this->open(name, "r", wide);
    for (const auto& line : lines) {
      Ch got[32];
      EXPECT_EQ(Twin<Ch>::TextFileGets(file, got, 32), 1);
      EXPECT_EQ(std::basic_string<Ch>(got), in<Ch>(line)) << wide;
    }
    EXPECT_EQ(KZ_TextFileEof(file), 0);
    KZ_TextFileClose(file);
  }
  // Flag 2 is a narrow file too; the narrow twin's text then goes through the
  // wide stream calls of a narrow stream, which write nothing behind a unit
  // beyond one byte.
  this->put("two.txt", "a", 2, {"abc", kJapanese});
  EXPECT_EQ(read_bytes(this->dir.path("two.txt")), sizeof(Ch) == 1 ? "abc\r\n" : disk[0]);
}

// At the end, behind a line without a newline and behind a cut, on the route
// without conversion (the file's encoding is the twin's) and with it.
TYPED_TEST(TextFiles, TheLastLineTheEndAndALongLine) {
  using Ch = TypeParam;
  for (int32_t wide : {0, 1}) {
    const bool converts = (wide == 1) == (sizeof(Ch) == 1);
    SCOPED_TRACE(wide);
    this->put("two.txt", "w", wide, {"one", "abcdefghijklmnopqrst"});
    TextFileHandle* file = this->open("two.txt", "r", wide);
    auto buffer = sentinel_buffer<Ch>(24);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 24), 1);
    // A long line loses the element behind the cut.
    buffer = sentinel_buffer<Ch>(24);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 10), 1);
    EXPECT_EQ(str(buffer), text<Ch>("abcdefgh"));
    EXPECT_TRUE(untouched_from(buffer, 10));
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 24), 1);
    EXPECT_EQ(str(buffer), text<Ch>("jklmnopqrst"));
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 24), 0);
    EXPECT_EQ(KZ_TextFileEof(file), 1);
    EXPECT_EQ(str(buffer), converts ? text<Ch>("jklmnopqrst") : std::basic_string<Ch>());
    // Offsets are the file's bytes: the first line of a wide file starts
    // behind its mark. Seeking clears the end-of-file mark.
    EXPECT_EQ(KZ_TextFileSeek(file, wide == 1 ? 2 : 0, 0), 1);
    EXPECT_EQ(KZ_TextFileEof(file), 0);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 24), 1);
    EXPECT_EQ(str(buffer), text<Ch>("one"));
    KZ_TextFileClose(file);
    // A last line without its newline comes with result 0; a wide file
    // needs no mark.
    write_bytes(this->dir.path("open.txt"),
                wide == 1 ? std::string("l\0\n\0x\0y\0", 8) : std::string("l\nxy"));
    file = this->open("open.txt", "r", wide);
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 1);
    EXPECT_EQ(str(buffer), text<Ch>("l"));
    EXPECT_EQ(Twin<Ch>::TextFileGets(file, buffer.data(), 16), 0);
    EXPECT_EQ(str(buffer), converts ? text<Ch>("l") : text<Ch>("x"));
    KZ_TextFileClose(file);
  }
}

// Bad opens; then, within one process, a file open for reading shares with
// readers but not with a writer, and a write on it sets the error mark, which
// stays.
TYPED_TEST(TextFiles, OpensThatFailAndTheShareRule) {
  using Ch = TypeParam;
  // The mode, "t" and ",ccs=UNICODE" must fit 32 elements.
  const std::tuple<const char*, std::string, int32_t> bad[] = {
      {"missing.txt", "r", 0}, {"x.txt", "q", 0}, {"", "r", 0}, {"x.txt", std::string(19, 'w'), 1}};
  for (const auto& [name, mode, wide] : bad)
    EXPECT_EQ(this->open(name, mode.c_str(), wide), nullptr) << name << " " << mode;
  KZ_TextFileClose(nullptr);
  write_bytes(this->dir.path("s.txt"), "x\r\n");
  TextFileHandle* reader = this->open("s.txt", "r", 0);
  TextFileHandle* second = this->open("s.txt", "r", 0);
  EXPECT_NE(second, nullptr);
  EXPECT_EQ(this->open("s.txt", "r+", 0), nullptr);
  KZ_TextFileClose(second);
  // The size (and the times, through the same open) opens without sharing;
  // a writer shares with no one.
  EXPECT_EQ(KZ_GetFileSizeA(this->dir.path("s.txt").c_str(), nullptr), 0xFFFFFFFFu);
  // The handle is a stream a caller can use with the C library directly.
  TextFileHandle* writer = this->open("w.txt", "a", 0);
  EXPECT_EQ(this->open("w.txt", "r", 0), nullptr);
  std::fprintf(KZ_TextFileHandle(writer), "n=%d\n", 5);
  EXPECT_EQ(Twin<Ch>::TextFilePuts(writer, in<Ch>("end").c_str()), 1);
  KZ_TextFileClose(writer);
  EXPECT_EQ(read_bytes(this->dir.path("w.txt")), "n=5\r\nend\r\n");
  EXPECT_EQ(Twin<Ch>::TextFilePuts(reader, in<Ch>("no").c_str()), 0);
  EXPECT_EQ(KZ_TextFileError(reader), 1);
  Ch line[8];
  EXPECT_EQ(Twin<Ch>::TextFileGets(reader, line, 8), 0);
  EXPECT_EQ(KZ_TextFileError(reader), 1);
  KZ_TextFileClose(reader);
}

}  // namespace
