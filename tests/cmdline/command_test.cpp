// The name and the directory of a command, in both twins: a quoted path
// with blanks, a bare name, the running program for an empty line, the size
// that must hold the whole line, and every allocation failing.
#include <vector>

#include "platform/platform.h"
#include "support.h"
#include "twins.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

template <class Ch>
class CommandParts : public ::testing::Test {};
TYPED_TEST_SUITE(CommandParts, ElementTypes);

constexpr std::size_t kBuffer = 300;

TYPED_TEST(CommandParts, TakeTheNameAndTheDirectoryOfTheFirstElement) {
  using Ch = TypeParam;
  struct Case {
    const char* line;
    const char* name;
    const char* directory;
    Only only = Only::kBoth;
  } cases[] = {
      {"\"C:\\Program Files\\My App\\app.exe\" -x", "app.exe", "C:\\Program Files\\My App"},
      {"C:\\tools\\run.exe a b", "run.exe", "C:\\tools"},
      {"prog a", "prog", ""},  // a bare name stays whole and has no directory
      {" a", "", ""},          // a leading blank gives an empty command
      // Shift-JIS: "表" is 0x95 0x5C, whose trail byte is no separator.
      {"C:\\\x95\x5C\\a.exe x", "a.exe", "C:\\\x95\x5C", Only::kNarrow},
      {"C:\\d\\\x95\x5C", "\x95\x5C", "C:\\d", Only::kNarrow},
  };
  for (const Case& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    const auto line = text<Ch>(c.line);
    auto name = sentinel_buffer<Ch>(kBuffer);
    auto directory = sentinel_buffer<Ch>(kBuffer);
    EXPECT_EQ(Twin<Ch>::GetCommand(line.c_str(), name.data(), 100), 1) << c.line;
    EXPECT_EQ(Twin<Ch>::GetCommandDirectory(line.c_str(), directory.data(), 100), 1) << c.line;
    EXPECT_EQ(str(name), text<Ch>(c.name)) << c.line;
    EXPECT_EQ(str(directory), text<Ch>(c.directory)) << c.line;
    EXPECT_TRUE(untouched_from(name, 100));
    EXPECT_TRUE(untouched_from(directory, 100));
  }
}

// An empty line stands for the running program, on both builds in the
// layer's Windows form.
TYPED_TEST(CommandParts, NameTheRunningProgramForAnEmptyLine) {
  using Ch = TypeParam;
  std::vector<wchar> path(32768);
  const wstring program(path.data(), os::GetModuleFileNameW(nullptr, path.data(), 32768));
  const std::size_t last = program.rfind(u'\\');
  ASSERT_NE(last, wstring::npos);
  const Ch empty[] = {0};
  auto name = sentinel_buffer<Ch>(kBuffer);
  auto directory = sentinel_buffer<Ch>(kBuffer);
  ASSERT_EQ(Twin<Ch>::GetCommand(empty, name.data(), 260), 1);
  ASSERT_EQ(Twin<Ch>::GetCommandDirectory(empty, directory.data(), 260), 1);
  // ASCII paths only: the test program's own folder.
  EXPECT_EQ(utf8(wstring(name.begin(), name.begin() + static_cast<long>(str(name).size()))),
            utf8(program.substr(last + 1)));
  EXPECT_EQ(utf8(wstring(directory.begin(),
                         directory.begin() + static_cast<long>(str(directory).size()))),
            utf8(program.substr(0, last)));
  EXPECT_EQ(utf8(program.substr(last + 1)).rfind("kz_tests", 0), 0u);
}

// size must hold the whole line and its terminator, not only the command:
// one element less gives 0 and an empty output; a size below 1 leaves the
// output alone.
TYPED_TEST(CommandParts, NeedRoomForTheWholeLine) {
  using Ch = TypeParam;
  const auto line = text<Ch>("C:\\d\\prog.exe with arguments");
  const auto needed = static_cast<int32_t>(line.size()) + 1;
  struct Case {
    int32_t size, result;
    const char* name;
  } cases[] = {{needed + 1, 1, "prog.exe"},
               {needed, 1, "prog.exe"},
               {needed - 1, 0, ""},
               {1, 0, ""},
               {0, 0, nullptr},
               {-1, 0, nullptr}};
  for (const Case& c : cases) {
    auto name = sentinel_buffer<Ch>(kBuffer);
    EXPECT_EQ(Twin<Ch>::GetCommand(line.c_str(), name.data(), c.size), c.result) << c.size;
    if (c.name == nullptr) {
      EXPECT_TRUE(untouched_from(name, 0)) << c.size;
      continue;
    }
    EXPECT_EQ(str(name), text<Ch>(c.name)) << c.size;
    EXPECT_TRUE(untouched_from(name, static_cast<std::size_t>(c.size))) << c.size;
  }
}

TYPED_TEST(CommandParts, GiveZeroAndAnEmptyOutputWhenAnyAllocationFails) {
  using Ch = TypeParam;
  const auto line = text<Ch>("\"C:\\My Dir\\app.exe\" a \"b c\"");
  for_each_allocation_failure([&] {
    auto name = sentinel_buffer<Ch>(kBuffer);
    auto directory = sentinel_buffer<Ch>(kBuffer);
    const int32_t named = Twin<Ch>::GetCommand(line.c_str(), name.data(), 100);
    const int32_t directed = Twin<Ch>::GetCommandDirectory(line.c_str(), directory.data(), 100);
    EXPECT_EQ(str(name), named == 1 ? text<Ch>("app.exe") : std::basic_string<Ch>());
    EXPECT_EQ(str(directory), directed == 1 ? text<Ch>("C:\\My Dir") : std::basic_string<Ch>());
  });
}

}  // namespace
