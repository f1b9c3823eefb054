// Path dissection in both twins: one row per branch, the bounds of every
// buffer, and properties that join the pieces back into the path and tie the
// narrow twin to the wide one.
#include <random>

#include "files.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(Dissection);

enum Op { kDrive, kDirectory, kName, kExt, kNotExt, kNumber };

template <class Ch>
int32_t run(Op op, const Ch* path, Ch* out, int32_t size) {
  using T = Twin<Ch>;
  return op == kNumber      ? T::GetDriveNumber(path)
         : op == kDrive     ? T::GetDriveName(path, out, size)
         : op == kDirectory ? T::GetDirectoryName(path, out, size)
         : op == kName      ? T::GetFileName(path, out, size)
         : op == kExt       ? T::GetFileExt(path, out, size)
                            : T::GetNotExtPath(path, out, size);
}

template <class Ch>
using String = std::basic_string<Ch>;

// SplitPath's four pieces; all empty when any does not fit.
template <class Ch>
std::vector<String<Ch>> pieces(const Ch* path) {
  Ch drive[3] = {'?'}, directory[260] = {'?'}, name[260] = {'?'}, extension[260] = {'?'};
  Twin<Ch>::SplitPath(path, drive, directory, name, extension);
  return {drive, directory, name, extension};
}

// Rows the join properties below cannot pin down; the sizes around each
// bound and the drive number's work area are held by the guard-page table. Shift-JIS "表" is 0x95
// 0x5C: its trail byte equals the backslash.
TYPED_TEST(Dissection, TakesThePathApartAtItsLastSeparator) {
  using Ch = TypeParam;
  const std::tuple<Op, const char*, const char*, int32_t, Only> cases[] = {
      {kDrive, "abc:def", "abc", 3, kBoth},
      {kDrive, "\\dir\\file", "", -1, kBoth},
      {kDrive, "\"a:b\":c", "a:b", 3, kBoth},
      {kDrive, ":x", "", 0, kBoth},
      {kDirectory, "C:\\file.txt", "C:", 2, kBoth},
      {kDirectory, "C:file.txt", "", 0, kBoth},
      {kDirectory, "a/b/c", "", 0, kBoth},
      {kName, "C:file.txt", "file.txt", 8, kBoth},
      {kExt, "C:\\a.b\\c", "b\\c", 3, kBoth},
      {kName, "\x95:", "", 0, kNarrow},      // 0x3A is no trail byte
      {kExt, "a.b\x81.c", "c", 1, kNarrow},  // nor is 0x2E
      {kExt, ".\x81", "\x81", 1, kNarrow},   // a lead byte before the end
      // The drive number: the first element upper-cased, less 64.
      {kNumber, "c:\\x", "", 3, kBoth},
      {kNumber, "1:\\x", "", -15, kBoth},  // no test for a letter
      {kNumber, "x", "", -1, kBoth},
      {kNumber, "\xB1:", "", 0xB1 - 256 - 64, kNarrow},  // a signed byte
      {kNumber, "\xFF:", "", 0x178 - 64, kWide},         // ÿ upper-cased to Ÿ
  };
  for (const auto& [op, path, expected, result, only] : cases) {
    if (!runs<Ch>(only)) continue;
    auto out = sentinel_buffer<Ch>(40);
    EXPECT_EQ(run(op, text<Ch>(path).c_str(), out.data(), 32), result) << path;
    EXPECT_TRUE(op == kNumber ? untouched_from(out, 0) : holds(out, text<Ch>(expected), 0, 32));
  }
  // Null and empty paths fail and empty the buffer, all but the directory's,
  // which may also overwrite its own path (and the drive number's, which has
  // none).
  const Ch empty[] = {0};
  for (Op op : {kDrive, kDirectory, kName, kExt, kNotExt, kNumber})
    for (const Ch* path : {static_cast<const Ch*>(nullptr), empty}) {
      auto out = sentinel_buffer<Ch>(4);
      EXPECT_EQ(run(op, path, out.data(), 4), -1);
      EXPECT_EQ(out[0], op == kDirectory || op == kNumber ? kSentinel<Ch> : Ch(0));
    }
  auto path = text<Ch>("C:\\dir\\file.txt");
  EXPECT_EQ(Twin<Ch>::GetDirectoryName(path.c_str(), path.data(), 16), 6);
  EXPECT_EQ(String<Ch>(path.c_str()), text<Ch>("C:\\dir"));
  const std::pair<String<Ch>, std::string> splits[] = {
      {text<Ch>("\\\\srv\\share\\f.t"), "\\\\|srv\\share|f|t"},
      {text<Ch>("C:\\dir\\.profile"), "C:|\\dir||profile"},
      {text<Ch>("\\x.txt"), "\\x|||txt"},  // no backslash from element 2 on
      {text<Ch>("x"), "x|||"},
      {text<Ch>("C:\\") + String<Ch>(259, 'x') + text<Ch>("\\n.e"), "|||"},
      {text<Ch>("C:\\n.") + String<Ch>(260, 'x'), "|||"},
      {String<Ch>(), "|||"}};
  for (const auto& [path, expected] : splits) {
    const auto p = pieces(path.c_str());
    EXPECT_EQ(p[0] + Ch('|') + p[1] + Ch('|') + p[2] + Ch('|') + p[3], text<Ch>(expected));
  }
  EXPECT_EQ(pieces<Ch>(nullptr), pieces(text<Ch>("").c_str()));
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

// The stem, a dot and the extension make the path; so do the directory, a
// backslash and the name where no colon stands; and SplitPath's pieces with
// or without the backslash and the dot between them. Stepping over a
// double-byte character whole makes each narrow result the narrow form of
// the wide twin's result on the same path.
TYPED_TEST(Dissection, PiecesJoinBackIntoThePath) {
  using Ch = TypeParam;
  std::mt19937 rng(11);
  for (int round = 0; round < 8000; ++round) {
    const bool lone_lead = round % 2;
    const auto path = random_path<Ch>(rng, lone_lead);
    Ch directory[64], name[64], ext[64], stem[64];
    const int32_t dir_length = Twin<Ch>::GetDirectoryName(path.c_str(), directory, 64);
    const int32_t stem_length = Twin<Ch>::GetNotExtPath(path.c_str(), stem, 64);
    ASSERT_GE(Twin<Ch>::GetFileName(path.c_str(), name, 64), 0);
    ASSERT_GE(Twin<Ch>::GetFileExt(path.c_str(), ext, 64) | dir_length | stem_length, 0);
    const bool dot = static_cast<std::size_t>(stem_length) < path.size();
    EXPECT_EQ(String<Ch>(stem) + (dot ? text<Ch>(".") : String<Ch>()) + ext, path);
    if (path.find(Ch(':')) == String<Ch>::npos && dir_length > 0) {
      EXPECT_EQ(String<Ch>(directory) + text<Ch>("\\") + name, path) << round;
    }
    const auto p = pieces(path.c_str());
    bool joins = false;
    for (const char* backslash : {"", "\\"})
      for (const char* dot : {"", "."})
        joins |= p[0] + p[1] + text<Ch>(backslash) + p[2] + text<Ch>(dot) + p[3] == path;
    EXPECT_TRUE(joins);
    if (lone_lead) continue;
    if constexpr (sizeof(Ch) == 1)
      for (Op op : {kDrive, kDirectory, kName, kExt, kNotExt}) {
        char narrow_out[64] = {};  // a refused directory leaves its buffer
        wchar wide_out[64] = {};
        const int32_t narrow_result = run(op, path.c_str(), narrow_out, 64);
        ASSERT_EQ(narrow_result < 0, run(op, widen(path).c_str(), wide_out, 64) < 0);
        EXPECT_EQ(widen(narrow_out), wstring(wide_out)) << round;
      }
  }
}

}  // namespace
