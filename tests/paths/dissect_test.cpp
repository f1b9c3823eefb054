// Path dissection in both twins: one row per branch, the bounds of every
// buffer, and properties that join the pieces back into the path and tie the
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
constexpr Op kOps[] = {Op::kDrive, Op::kDirectory, Op::kName, Op::kExt, Op::kNotExt};

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

template <class Ch>
using String = std::basic_string<Ch>;

// Rows the join properties below cannot pin down. Shift-JIS "表" is
// 0x95 0x5C: its trail byte equals the backslash.
TYPED_TEST(Dissection, TakesThePathApartAtItsLastSeparator) {
  using Ch = TypeParam;
  struct Case {
    Op op;
    const char *path, *expected;
    int32_t result;
    Only only = Only::kBoth;
  } cases[] = {
      {Op::kDrive, "abc:def", "abc", 3},
      {Op::kDrive, "\\dir\\file", "", -1},
      {Op::kDrive, "\"a:b\":c", "a:b", 3},
      {Op::kDrive, ":x", "", 0},
      {Op::kDirectory, "C:\\file.txt", "C:", 2},
      {Op::kDirectory, "C:file.txt", "", 0},
      {Op::kDirectory, "a/b/c", "", 0},
      {Op::kName, "C:file.txt", "file.txt", 8},
      {Op::kExt, "C:\\a.b\\c", "b\\c", 3},
      {Op::kDirectory, "C:\\\x95\x5C\\f", "C:\\\x95\x5C", 5, Only::kNarrow},
      {Op::kName, "C:\\\x95\x5C", "\x95\x5C", 2, Only::kNarrow},
      {Op::kName, "\x95:", "", 0, Only::kNarrow},      // 0x3A is no trail byte
      {Op::kExt, "a.b\x81.c", "c", 1, Only::kNarrow},  // nor is 0x2E
      {Op::kExt, ".\x81", "\x81", 1, Only::kNarrow},   // a lead byte before the end
  };
  for (const auto& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto out = sentinel_buffer<Ch>(40);
    SCOPED_TRACE(c.path);
    EXPECT_EQ(run(c.op, text<Ch>(c.path).c_str(), out.data(), 32), c.result);
    EXPECT_EQ(str(out), text<Ch>(c.expected));
    EXPECT_TRUE(untouched_from(out, 32));
  }
}

// Needed - 1, needed, needed + 1 and 0 elements: the result fits exactly, or
// the call fails without writing behind the buffer. Null and empty paths fail
// and empty the buffer, all but the directory's.
TYPED_TEST(Dissection, ResultsFitTheirBufferOrFail) {
  using Ch = TypeParam;
  struct Case {
    Op op;
    const char* path;
    int32_t needed;
  } cases[] = {
      {Op::kDrive, "abc:x", 4}, {Op::kName, "d\\name", 5},    {Op::kExt, "a.ext", 4},
      {Op::kNotExt, "stem", 5}, {Op::kDirectory, "ab\\c", 5},  // the whole path must fit
  };
  for (const auto& c : cases) {
    const auto path = text<Ch>(c.path);
    for (int32_t size : {c.needed - 1, c.needed, c.needed + 1, 0}) {
      auto out = sentinel_buffer<Ch>(16);
      const int32_t result = run(c.op, path.c_str(), out.data(), size);
      EXPECT_TRUE(untouched_from(out, static_cast<std::size_t>(size))) << c.path;
      EXPECT_EQ(result, size < c.needed ? -1 : static_cast<int32_t>(str(out).size())) << c.path;
    }
  }
  const Ch empty[] = {0};
  for (Op op : kOps) {
    for (const Ch* path : {static_cast<const Ch*>(nullptr), empty}) {
      auto out = sentinel_buffer<Ch>(4);
      const Ch sentinel = out[0];
      EXPECT_EQ(run(op, path, out.data(), 4), -1);
      EXPECT_EQ(out[0], op == Op::kDirectory ? sentinel : Ch(0));
    }
  }
  auto path = text<Ch>("C:\\dir\\file.txt");  // the directory may overwrite its path
  EXPECT_EQ(Twin<Ch>::GetDirectoryName(path.c_str(), path.data(), 16), 6);
  EXPECT_EQ(String<Ch>(path.c_str()), text<Ch>("C:\\dir"));
  for_each_allocation_failure([&] {
    Ch out[8];
    const int32_t result = Twin<Ch>::GetDriveName(path.c_str(), out, 8);
    EXPECT_TRUE(result == 1 || (result == -1 && out[0] == 0));
  });
}

TYPED_TEST(Dissection, DriveNumberUpperCasesTheFirstElement) {
  using Ch = TypeParam;
  struct Case {
    const char* path;
    int32_t result;
    Only only = Only::kBoth;
  } cases[] = {
      {"c:\\x", 3},
      {"1:\\x", -15},  // no test for a letter
      {"x", -1},
      {"", -1},
      {"\xB1:", 0xB1 - 256 - 64, Only::kNarrow},  // a signed byte
      {"\xFF:", 0x178 - 64, Only::kWide},         // ÿ upper-cased to Ÿ
  };
  for (const auto& c : cases) {
    if (runs<Ch>(c.only)) {
      EXPECT_EQ(Twin<Ch>::GetDriveNumber(text<Ch>(c.path).c_str()), c.result);
    }
  }
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(static_cast<const Ch*>(nullptr)), -1);
  // 259 elements and the terminator fit the work area; one more fails.
  auto path = text<Ch>("c:") + String<Ch>(257, Ch('x'));
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(path.c_str()), 3);
  path.push_back(Ch('x'));
  EXPECT_EQ(Twin<Ch>::GetDriveNumber(path.c_str()), -1);
}

template <class Ch>
struct Pieces {
  Ch drive[3], directory[260], name[260], extension[260];
  explicit Pieces(const Ch* path) {
    drive[0] = directory[0] = name[0] = extension[0] = Ch('?');
    Twin<Ch>::SplitPath(path, drive, directory, name, extension);
  }
  bool empty() const { return (drive[0] | directory[0] | name[0] | extension[0]) == 0; }
  // The pieces with or without the backslash and the dot between them.
  bool join_into(const String<Ch>& path) const {
    for (int glue = 0; glue < 4; ++glue) {
      String<Ch> out = String<Ch>(drive) + directory;
      if (glue & 1) out.push_back(Ch('\\'));
      out += name;
      if (glue & 2) out.push_back(Ch('.'));
      if (out + extension == path) return true;
    }
    return false;
  }
};

TYPED_TEST(Dissection, SplitPathOddShapesAndTheLimitOfEachPiece) {
  using Ch = TypeParam;
  struct Case {
    const char *path, *drive, *directory, *name, *extension;
  } cases[] = {
      {"\\\\srv\\share\\f.t", "\\\\", "srv\\share", "f", "t"},
      {"C:\\dir\\.profile", "C:", "\\dir", "", "profile"},
      {"\\x.txt", "\\x", "", "", "txt"},  // no backslash from element 2 on
      {"x", "x", "", "", ""},
  };
  for (const auto& c : cases) {
    const Pieces<Ch> p(text<Ch>(c.path).c_str());
    EXPECT_EQ(
        String<Ch>(p.drive) + text<Ch>("|") + p.directory + text<Ch>("|") + p.name + text<Ch>("|") +
            p.extension,
        text<Ch>(std::string(c.drive) + "|" + c.directory + "|" + c.name + "|" + c.extension));
  }
  const String<Ch> piece(259, Ch('x')), over(260, Ch('x'));
  const auto drive = text<Ch>("C:\\");
  EXPECT_EQ(String<Ch>(Pieces<Ch>((drive + piece + text<Ch>(".e")).c_str()).name), piece);
  for (const auto& path : {drive + over + text<Ch>("\\n.e"), drive + over + text<Ch>(".e"),
                           drive + text<Ch>("n.") + over, String<Ch>()})
    EXPECT_TRUE(Pieces<Ch>(path.c_str()).empty());
  EXPECT_TRUE(Pieces<Ch>(nullptr).empty());
}

// Random paths over the elements that matter; narrow ones also hold
// double-byte characters, one with the trail byte 0x5C, and a lone lead byte.
template <class Ch>
String<Ch> random_path(std::mt19937& rng, bool lone_lead) {
  static const char* const pieces[] = {"a", "\\", ":", ".", "/", "\x95\x5C", "\x82\xA0", "\xE0"};
  const std::size_t count = sizeof(Ch) == 2 ? 5 : lone_lead ? 8 : 7;
  String<Ch> out;
  for (int i = static_cast<int>(rng() % 12); i >= 0; --i) out += text<Ch>(pieces[rng() % count]);
  return out;
}

TYPED_TEST(Dissection, PiecesJoinBackIntoThePath) {
  using Ch = TypeParam;
  std::mt19937 rng(11);
  for (int round = 0; round < 4000; ++round) {
    const auto path = random_path<Ch>(rng, true);
    SCOPED_TRACE(round);
    Ch directory[64], name[64], ext[64], stem[64];
    const int32_t dir_length = Twin<Ch>::GetDirectoryName(path.c_str(), directory, 64);
    const int32_t stem_length = Twin<Ch>::GetNotExtPath(path.c_str(), stem, 64);
    ASSERT_GE(Twin<Ch>::GetFileName(path.c_str(), name, 64), 0);
    ASSERT_GE(Twin<Ch>::GetFileExt(path.c_str(), ext, 64) | dir_length | stem_length, 0);
    const bool dot = static_cast<std::size_t>(stem_length) < path.size();
    EXPECT_EQ(String<Ch>(stem) + (dot ? text<Ch>(".") : String<Ch>()) + ext, path);
    if (path.find(Ch(':')) == String<Ch>::npos && dir_length > 0) {
      EXPECT_EQ(String<Ch>(directory) + text<Ch>("\\") + name, path);
    }
    EXPECT_TRUE(Pieces<Ch>(path.c_str()).join_into(path));
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
    for (Op op : kOps) {
      char narrow_out[64];
      wchar wide_out[64];
      const int32_t narrow_result = run(op, path.c_str(), narrow_out, 64);
      ASSERT_EQ(narrow_result < 0, run(op, widen(path).c_str(), wide_out, 64) < 0) << round;
      if (narrow_result >= 0) {
        EXPECT_EQ(widen(narrow_out), wstring(wide_out)) << round;
      }
    }
  }
}

}  // namespace
