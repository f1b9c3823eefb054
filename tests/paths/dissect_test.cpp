// Path dissection in both twins: the cases at each branch, the bounds of
// every buffer, and properties that tie the pieces back to the path and the
// narrow twin to the wide one.
#include <random>

#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class Dissection : public ::testing::Test {};
TYPED_TEST_SUITE(Dissection, ElementTypes);

enum class Op { kDrive, kDirectory, kName, kExt, kNotExt };

template <class Ch>
int32_t run(Op op, const Ch* path, Ch* out, int32_t size) {
  switch (op) {
    case Op::kDrive:
      return Twin<Ch>::GetDriveName(path, out, size);
    case Op::kDirectory:
      return Twin<Ch>::GetDirectoryName(path, out, size);
    case Op::kName:
      return Twin<Ch>::GetFileName(path, out, size);
    case Op::kExt:
      return Twin<Ch>::GetFileExt(path, out, size);
    case Op::kNotExt:
      break;
  }
  return Twin<Ch>::GetNotExtPath(path, out, size);
}

// Shift-JIS: "表" is 0x95 0x5C, a trail byte equal to the backslash.
TYPED_TEST(Dissection, TakesThePathApartAtItsLastSeparator) {
  using Ch = TypeParam;
  struct Case {
    Op op;
    const char *path, *expected;
    int32_t result;
    Only only = Only::kBoth;
  } cases[] = {
      {Op::kDrive, "C:\\x", "C", 1},
      {Op::kDrive, "abc:def", "abc", 3},
      {Op::kDrive, "\\dir\\file", "", -1},
      {Op::kDrive, "\"a:b\":c", "a:b", 3},
      {Op::kDrive, ":x", "", 0},
      {Op::kDirectory, "C:\\dir\\sub\\file.txt", "C:\\dir\\sub", 10},
      {Op::kDirectory, "C:\\file.txt", "C:", 2},
      {Op::kDirectory, "C:\\dir\\", "C:\\dir", 6},
      {Op::kDirectory, "C:file.txt", "", 0},
      {Op::kDirectory, "\\file.txt", "", 0},
      {Op::kDirectory, "a/b/c", "", 0},
      {Op::kName, "C:\\dir\\file.txt", "file.txt", 8},
      {Op::kName, "C:file.txt", "file.txt", 8},
      {Op::kName, "\\file.txt", "file.txt", 8},
      {Op::kName, "C:\\dir\\", "", 0},
      {Op::kName, "notepad", "notepad", 7},
      {Op::kName, "x", "x", 1},
      {Op::kExt, "C:\\dir\\file.tar.gz", "gz", 2},
      {Op::kExt, "C:\\dir\\file.", "", 0},
      {Op::kExt, ".profile", "profile", 7},
      {Op::kExt, "C:\\a.b\\c", "b\\c", 3},
      {Op::kExt, "C:\\dir\\file", "", 0},
      {Op::kNotExt, "C:\\dir\\file.tar.gz", "C:\\dir\\file.tar", 15},
      {Op::kNotExt, ".profile", "", 0},
      {Op::kNotExt, "C:\\a.b\\c", "C:\\a", 4},
      {Op::kNotExt, "C:\\dir\\file", "C:\\dir\\file", 11},
      // The narrow scans step over a double-byte character whole.
      {Op::kDirectory, "C:\\\x95\x5C\\f", "C:\\\x95\x5C", 5, Only::kNarrow},
      {Op::kDirectory, "C:\\\x95\x5C", "C:", 2, Only::kNarrow},
      {Op::kName, "C:\\\x95\x5C", "\x95\x5C", 2, Only::kNarrow},
      {Op::kName, "\x95:", "", 0, Only::kNarrow},  // 0x3A is no trail byte
      {Op::kName, "\x95\\", "\x95\\", 2, Only::kNarrow},
      {Op::kExt, "a.b\x81.c", "c", 1, Only::kNarrow},  // 0x2E is no trail byte
      // A lead byte before the terminator is no pair: the byte is compared.
      {Op::kExt, ".\x81", "\x81", 1, Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto path = text<Ch>(c.path);
    auto out = sentinel_buffer<Ch>(40);
    SCOPED_TRACE(c.path);
    EXPECT_EQ(run(c.op, path.c_str(), out.data(), 32), c.result);
    EXPECT_EQ(str(out), text<Ch>(c.expected));
    EXPECT_TRUE(untouched_from(out, 32));
  }
}

TYPED_TEST(Dissection, NullOrEmptyPathsFailAndEmptyTheirBuffersButTheDirectorys) {
  using Ch = TypeParam;
  const Ch empty[] = {0};
  for (Op op : {Op::kDrive, Op::kDirectory, Op::kName, Op::kExt, Op::kNotExt}) {
    for (const Ch* path : {static_cast<const Ch*>(nullptr), empty}) {
      auto out = sentinel_buffer<Ch>(4);
      const Ch sentinel = out[0];
      EXPECT_EQ(run(op, path, out.data(), 4), -1);
      EXPECT_EQ(out[0], op == Op::kDirectory ? sentinel : Ch(0));
    }
  }
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(static_cast<const Ch*>(nullptr)), -1);
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(empty), -1);
}

// Each result is tried in a buffer of the needed size - 1, needed and
// needed + 1 elements: it fits exactly, or the call fails without writing
// behind the buffer.
TYPED_TEST(Dissection, ResultsFitTheirBufferOrFail) {
  using Ch = TypeParam;
  struct Case {
    Op op;
    const char* path;
    int32_t needed;  // elements the call needs, terminator included
  } cases[] = {
      {Op::kDrive, "abc:x", 4}, {Op::kName, "d\\name", 5},
      {Op::kExt, "a.ext", 4},   {Op::kNotExt, "stem.e", 5},
      {Op::kNotExt, "stem", 5}, {Op::kDirectory, "ab\\c", 5},  // the whole path must fit
  };
  for (const auto& c : cases) {
    const auto path = text<Ch>(c.path);
    SCOPED_TRACE(c.path);
    for (int32_t size : {c.needed - 1, c.needed, c.needed + 1}) {
      auto out = sentinel_buffer<Ch>(16);
      const int32_t result = run(c.op, path.c_str(), out.data(), size);
      EXPECT_TRUE(untouched_from(out, static_cast<std::size_t>(size)));
      if (size < c.needed) {
        EXPECT_EQ(result, -1) << size;
      } else {
        EXPECT_GE(result, 0) << size;
        EXPECT_EQ(static_cast<std::size_t>(result), str(out).size());
      }
    }
    // A size of 0 leaves no room even for the terminator: nothing is written.
    auto out = sentinel_buffer<Ch>(4);
    EXPECT_EQ(run(c.op, path.c_str(), out.data(), 0), -1);
    EXPECT_TRUE(untouched_from(out, 0));
  }
}

TYPED_TEST(Dissection, DriveNumberUpperCasesTheFirstElement) {
  using Ch = TypeParam;
  struct Case {
    const char* path;
    int32_t result;
    Only only = Only::kBoth;
  } cases[] = {
      {"c:\\x", 3},
      {"A:", 1},
      {"z:", 26},
      {"1:\\x", -15},  // no test for a letter
      {"x", -1},
      {"\\dir\\file", -1},
      {"\xB1:", 0xB1 - 256 - 64, Only::kNarrow},  // a signed byte
      {"\xE0:", 0xC0 - 64, Only::kWide},          // à upper-cased to À
      {"\xFF:", 0x178 - 64, Only::kWide},         // ÿ to Ÿ
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    EXPECT_EQ(Twin<Ch>::GetDriveNumber(text<Ch>(c.path).c_str()), c.result) << c.path;
  }
  // The work area holds 259 elements and the terminator: a longer path fails.
  auto path = text<Ch>("c:") + std::basic_string<Ch>(257, Ch('x'));
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(path.c_str()), 3);
  path.push_back(Ch('x'));
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(path.c_str()), -1);
}

TYPED_TEST(Dissection, DirectoryNameMayOverwriteItsPath) {
  using Ch = TypeParam;
  auto path = text<Ch>("C:\\dir\\file.txt");
  EXPECT_EQ(Twin<Ch>::GetDirectoryName(path.c_str(), path.data(), 16), 6);
  EXPECT_EQ(std::basic_string<Ch>(path.c_str()), text<Ch>("C:\\dir"));
}

TYPED_TEST(Dissection, DriveNameGivesUpWhenItsScratchCannotBeHad) {
  using Ch = TypeParam;
  const auto path = text<Ch>("C:\\x");
  for_each_allocation_failure([&] {
    Ch out[8];
    const int32_t result = Twin<Ch>::GetDriveName(path.c_str(), out, 8);
    if (result == -1) {
      EXPECT_EQ(out[0], Ch(0));
    } else {
      EXPECT_EQ(result, 1);
    }
  });
}

template <class Ch>
struct Pieces {
  Ch drive[3], directory[260], name[260], extension[260];
  std::basic_string<Ch> joined(bool backslash, bool dot) const {
    std::basic_string<Ch> out = drive;
    out += directory;
    if (backslash) out.push_back(Ch('\\'));
    out += name;
    if (dot) out.push_back(Ch('.'));
    return out + extension;
  }
};

TYPED_TEST(Dissection, SplitPathGivesDriveDirectoryNameAndExtension) {
  using Ch = TypeParam;
  struct Case {
    const char *path, *drive, *directory, *name, *extension;
    Only only = Only::kBoth;
  } cases[] = {
      {"C:\\dir\\sub\\file.txt", "C:", "\\dir\\sub", "file", "txt"},
      {"C:\\file.txt", "C:", "", "file", "txt"},
      {"C:\\dir\\.profile", "C:", "\\dir", "", "profile"},
      {"\\\\srv\\share\\file.txt", "\\\\", "srv\\share", "file", "txt"},
      {"ab\\c.d", "ab", "", "c", "d"},
      // Shapes the library settles itself: no dot behind the last
      // backslash, no backslash from element 2 on, one element.
      {"C:\\a.b\\c", "C:", "\\a.b", "c", ""},
      {"C:file.txt", "C:", "", "file", "txt"},
      {"\\x.txt", "\\x", "", "", "txt"},
      {"x", "x", "", "", ""},
      {"C:\\\x95\x5C\\f.e", "C:", "\\\x95\x5C", "f", "e", Only::kNarrow},
      {"C:\\\x95\x5C", "C:", "", "\x95\x5C", "", Only::kNarrow},
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    Pieces<Ch> p;
    Twin<Ch>::SplitPath(text<Ch>(c.path).c_str(), p.drive, p.directory, p.name, p.extension);
    SCOPED_TRACE(c.path);
    EXPECT_EQ(std::basic_string<Ch>(p.drive), text<Ch>(c.drive));
    EXPECT_EQ(std::basic_string<Ch>(p.directory), text<Ch>(c.directory));
    EXPECT_EQ(std::basic_string<Ch>(p.name), text<Ch>(c.name));
    EXPECT_EQ(std::basic_string<Ch>(p.extension), text<Ch>(c.extension));
  }
}

TYPED_TEST(Dissection, SplitPathEmptiesEverythingForAPieceOverTheLimit) {
  using Ch = TypeParam;
  const std::basic_string<Ch> long_piece(260, Ch('x'));
  const auto drive = text<Ch>("C:\\");
  for (const auto& path :
       {drive + long_piece + text<Ch>("\\n.e"), drive + long_piece + text<Ch>(".e"),
        drive + text<Ch>("n.") + long_piece}) {
    Pieces<Ch> p;
    Twin<Ch>::SplitPath(path.c_str(), p.drive, p.directory, p.name, p.extension);
    EXPECT_EQ(p.drive[0] | p.directory[0] | p.name[0] | p.extension[0], 0);
  }
  // 259 elements fit.
  const auto fits = drive + std::basic_string<Ch>(259, Ch('x')) + text<Ch>(".e");
  Pieces<Ch> p;
  Twin<Ch>::SplitPath(fits.c_str(), p.drive, p.directory, p.name, p.extension);
  EXPECT_EQ(std::basic_string<Ch>(p.name).size(), 259u);
  const Ch empty[] = {0};
  for (const Ch* path : {static_cast<const Ch*>(nullptr), empty}) {
    Pieces<Ch> q;
    q.drive[0] = q.directory[0] = q.name[0] = q.extension[0] = Ch('?');
    Twin<Ch>::SplitPath(path, q.drive, q.directory, q.name, q.extension);
    EXPECT_EQ(q.drive[0] | q.directory[0] | q.name[0] | q.extension[0], 0);
  }
}

// Random paths over the elements that matter, a slash and, in narrow text,
// double-byte characters, one with a trail byte 0x5C, and a lone lead
// byte.
template <class Ch>
std::basic_string<Ch> random_path(std::mt19937& rng, bool lone_lead) {
  static const char* const pieces[] = {"a", "\\", ":", ".", "/", "\x95\x5C", "\x82\xA0", "\xE0"};
  const std::size_t count = sizeof(Ch) == 2 ? 5 : lone_lead ? 8 : 7;
  std::basic_string<Ch> out;
  const int length = static_cast<int>(rng() % 12) + 1;
  for (int i = 0; i < length; ++i) out += text<Ch>(pieces[rng() % count]);
  return out;
}

template <class Ch>
using String = std::basic_string<Ch>;

TYPED_TEST(Dissection, PiecesJoinBackIntoThePath) {
  using Ch = TypeParam;
  std::mt19937 rng(11);
  for (int round = 0; round < 4000; ++round) {
    const auto path = random_path<Ch>(rng, true);
    SCOPED_TRACE(round);
    Ch directory[64], name[64], ext[64], stem[64];
    const int32_t dir_length = Twin<Ch>::GetDirectoryName(path.c_str(), directory, 64);
    const int32_t name_length = Twin<Ch>::GetFileName(path.c_str(), name, 64);
    const int32_t stem_length = Twin<Ch>::GetNotExtPath(path.c_str(), stem, 64);
    ASSERT_GE(Twin<Ch>::GetFileExt(path.c_str(), ext, 64), 0);
    ASSERT_GE(dir_length | name_length | stem_length, 0);
    // Stem, dot and extension give the path; without a colon, so do the
    // directory, its backslash and the name.
    const bool dot = static_cast<std::size_t>(stem_length) < path.size();
    EXPECT_EQ(String<Ch>(stem) + (dot ? text<Ch>(".") : String<Ch>()) + ext, path);
    if (path.find(Ch(':')) == String<Ch>::npos && dir_length > 0) {
      EXPECT_EQ(String<Ch>(directory) + text<Ch>("\\") + name, path);
    }
    // The four pieces of the split, with the backslash and the dot that
    // separate them, give the path.
    Pieces<Ch> p;
    Twin<Ch>::SplitPath(path.c_str(), p.drive, p.directory, p.name, p.extension);
    bool joins = false;
    for (bool backslash : {false, true}) {
      for (bool with_dot : {false, true}) joins = joins || p.joined(backslash, with_dot) == path;
    }
    EXPECT_TRUE(joins);
  }
}

// Stepping over a double-byte character whole makes each narrow result the
// narrow form of the wide twin's result on the same path.
TEST(Dissection, NarrowResultsAreTheWideResultsOfTheSamePath) {
  std::mt19937 rng(7);
  const auto widen = [](const std::string& narrow) {
    std::vector<wchar> wide(narrow.size() + 1);
    KZ_SJIS2UNICODE(narrow.c_str(), wide.data(), static_cast<int32_t>(wide.size()));
    return wstring(wide.data());
  };
  for (int round = 0; round < 4000; ++round) {
    const auto path = random_path<char>(rng, false);
    const auto wide_path = widen(path);
    SCOPED_TRACE(round);
    for (Op op : {Op::kDirectory, Op::kName, Op::kExt, Op::kNotExt}) {
      char narrow_out[64];
      wchar wide_out[64];
      ASSERT_GE(run(op, path.c_str(), narrow_out, 64), 0);
      ASSERT_GE(run(op, wide_path.c_str(), wide_out, 64), 0);
      EXPECT_EQ(widen(narrow_out), wstring(wide_out));
    }
  }
}

}  // namespace
