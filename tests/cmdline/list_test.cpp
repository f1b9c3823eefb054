// Command lines as string lists and the name and directory of their
// command, in both twins: what the lists hold, the running program for an
// empty line, the narrow element buffer's limit, and the process's own line
// read back in a child started with known arguments. Sizes, the fixed
// limits and allocation failures are held by the guard-page and allocation
// tables.
#include "files.h"
#include "platform/platform.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(CommandLineLists);

// The line's elements, each closed by "|", and the parameters as the same
// list less the first; the command alone gives an empty list without an
// array.
template <class Ch>
std::basic_string<Ch> elements(const std::basic_string<Ch>& line) {
  StrList list{}, parameters{};
  EXPECT_EQ(Twin<Ch>::CmdLineList(line.c_str(), &list), 1);
  EXPECT_EQ(Twin<Ch>::GetCmdLineParam(line.c_str(), &parameters), 1);
  EXPECT_TRUE(list.count != 1 || parameters.strings == nullptr);
  const auto all = take<Ch>(list);
  EXPECT_EQ(all.substr(0, all.find(Ch('|')) + 1) + take<Ch>(parameters), all);
  return all;
}

// The command's name and directory, each closed by "|", through buffers of
// 300 elements that must stay untouched behind the size given.
template <class Ch>
std::basic_string<Ch> parts(const std::basic_string<Ch>& line, int32_t size) {
  std::basic_string<Ch> both;
  for (bool directory : {false, true}) {
    auto out = sentinel_buffer<Ch>(300);
    const int32_t result = directory ? Twin<Ch>::GetCommandDirectory(line.c_str(), out.data(), size)
                                     : Twin<Ch>::GetCommand(line.c_str(), out.data(), size);
    EXPECT_EQ(result, 1);
    EXPECT_TRUE(untouched_from(out, str(out).size() + 1));
    both += str(out) + Ch('|');
  }
  return both;
}

TYPED_TEST(CommandLineLists, HoldEveryElementAndTheCommandsNameAndDirectory) {
  using Ch = TypeParam;
  const std::tuple<const char*, const char*, const char*, Only> cases[] = {
      {"prog a b", "prog|a|b|", "prog||", kBoth},  // a bare name has no directory
      {"prog \"\" x", "prog||x|", "prog||", kBoth},
      {" a", "|a|", "||", kBoth},
      {"\"C:\\My App\\app.exe\" -x", "C:\\My App\\app.exe|-x|", "app.exe|C:\\My App|", kBoth},
      // Shift-JIS: "表" is 0x95 0x5C, whose trail byte is no separator.
      {"C:\\\x95\x5C\\a.exe x", "C:\\\x95\x5C\\a.exe|x|", "a.exe|C:\\\x95\x5C|", kNarrow},
      {"C:\\d\\\x95\x5C", "C:\\d\\\x95\x5C|", "\x95\x5C|C:\\d|", kNarrow}};
  for (const auto& [line, list, command, only] : cases) {
    if (!runs<Ch>(only)) continue;
    EXPECT_EQ(elements(text<Ch>(line)), text<Ch>(list)) << line;
    EXPECT_EQ(parts(text<Ch>(line), 100), text<Ch>(command)) << line;
  }
  // An empty line stands for the running program, in the layer's Windows form
  // on both builds; the narrow twin gives its platform conversion (ASCII
  // paths only: the test program's own folder).
  const wstring program = module_path(), bar(1, wchar('|'));
  const std::size_t last = program.rfind(u'\\');
  const auto in_twin = [](const wstring& wide) { return in<Ch>(narrow(wide)); };
  EXPECT_EQ(elements(std::basic_string<Ch>()), in_twin(program + bar));
  EXPECT_EQ(parts(std::basic_string<Ch>(), 260),
            in_twin(program.substr(last + 1) + bar + program.substr(0, last) + bar));
  EXPECT_EQ(utf8(program.substr(last + 1)).rfind("kz_tests", 0), 0u);
}

// Each element goes back to narrow text through 260 bytes: 259 fit, 260
// (in 134 wide elements) give 0 and nothing to release.
TEST(CommandLineListNarrow, KeepsEachElementTo259Bytes) {
  std::string ideographs;
  for (int k = 0; k < 130; ++k) ideographs += "\x93\xFA";
  EXPECT_EQ(elements("p a x" + ideographs.substr(2)), "p|a|x" + ideographs.substr(2) + "|");
  const std::string line = "p a " + ideographs;
  StrList list{}, parameters{};
  EXPECT_EQ(KZ_CmdLineListA(line.c_str(), &list), 0);
  EXPECT_EQ(KZ_GetCmdLineParamA(line.c_str(), &parameters), 0);
  EXPECT_EQ(joined(list.count, list.strings == nullptr, parameters.strings == nullptr),
            joined(0, 1, 1));
}

// The arguments of the child below (its filter last): blanks, tabs,
// quotes, backslashes at the end and before quotes, an empty one and
// Japanese text.
// clang-format off
const std::vector<std::string> kChildArguments = {
    "two words", "tab\there", "quote\"in", "\"quoted\"", "trailing\\", "a\\\\\"b", "",
    "\\\\srv\\x\\", "plain", "日本語 ｶ", "--gtest_also_run_disabled_tests",
    "--gtest_filter=*GetsItsArgumentsBack"};
// clang-format on

// Runs only in the child, which the next test starts: its own command line,
// read through both twins, holds the arguments it was given.
TEST(CommandLineChild, DISABLED_GetsItsArgumentsBack) {
  StrList wide_list{}, narrow_list{};
  ASSERT_EQ(KZ_GetCmdLineW(&wide_list), 1);
  ASSERT_EQ(KZ_GetCmdLineA(&narrow_list), 1);
  // The narrow line must fit 259 wide elements: the arguments are kept short.
  EXPECT_LT(std::char_traits<wchar>::length(kz::os::GetCommandLineW()), 260u);
  wstring expected = module_path() + wchar('|');
  for (const std::string& argument : kChildArguments) expected += utf16(argument) + wchar('|');
  EXPECT_EQ(utf8(take<wchar>(wide_list)), utf8(expected));
  EXPECT_EQ(take<char>(narrow_list), narrow(expected));
}

TEST(CommandLineChild, GivesTheArgumentsItWasStartedWithBack) {
  EXPECT_EQ(run_this_program(kChildArguments), 0);
}

}  // namespace
