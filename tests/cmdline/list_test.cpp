// Command lines as string lists and the name and directory of their
// command, in both twins: what the lists hold, the running program for an
// empty line, the narrow twin held against the wide one and the platform's
// conversion, the narrow buffers' limits, the room for the whole line, every
// allocation failing, and the process's own line read back in a child
// started with known arguments.
#include "files.h"
#include "platform/platform.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(CommandLineLists);

// The list's strings as one vector; the list is released.
template <class Ch>
std::vector<std::basic_string<Ch>> strings_of(StrList& list) {
  std::vector<std::basic_string<Ch>> strings;
  for (int32_t i = 0; i < list.count; ++i) strings.emplace_back(static_cast<Ch*>(list.strings[i]));
  Twin<Ch>::DeleteStrList(&list);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.strings, nullptr);
  return strings;
}

// A record that no filler has touched, so that a failure that leaves it as
// it was shows; after a failure it holds nothing to release.
void* marker[1];
constexpr StrList kUntouched{7, marker};
bool holds_nothing(const StrList& list) {
  return (list.count == 7 && list.strings == marker) ||
         (list.count == 0 && list.strings == nullptr);
}

// The line's elements, and the parameters as the same list less the first;
// the command alone gives an empty list without an array.
template <class Ch>
std::vector<std::basic_string<Ch>> elements(const std::basic_string<Ch>& line) {
  StrList list = kUntouched, parameters = kUntouched;
  EXPECT_EQ(Twin<Ch>::CmdLineList(line.c_str(), &list), 1);
  EXPECT_EQ(Twin<Ch>::GetCmdLineParam(line.c_str(), &parameters), 1);
  EXPECT_TRUE(list.count != 1 || parameters.strings == nullptr);
  auto all = strings_of<Ch>(list), rest = strings_of<Ch>(parameters);
  rest.insert(rest.begin(), all.empty() ? std::basic_string<Ch>() : all[0]);
  EXPECT_EQ(rest, all);
  return all;
}

// The command's name and directory, each through a buffer of size elements
// that must stay untouched from size on; results 1, or "!" for a 0.
template <class Ch>
std::basic_string<Ch> parts(const std::basic_string<Ch>& line, int32_t size) {
  std::basic_string<Ch> both;
  for (bool directory : {false, true}) {
    auto out = sentinel_buffer<Ch>(300);
    const int32_t result = directory ? Twin<Ch>::GetCommandDirectory(line.c_str(), out.data(), size)
                                     : Twin<Ch>::GetCommand(line.c_str(), out.data(), size);
    EXPECT_TRUE(untouched_from(out, static_cast<std::size_t>(std::max(size, 0))));
    both +=
        result == 1 ? str(out) : text<Ch>("!") + (size > 0 ? str(out) : std::basic_string<Ch>());
    both += Ch('|');
  }
  return both;
}

TYPED_TEST(CommandLineLists, HoldEveryElementAndTheCommandsNameAndDirectory) {
  using Ch = TypeParam;
  const std::tuple<const char*, std::vector<std::string>, const char*, Only> cases[] = {
      {"prog a b", {"prog", "a", "b"}, "prog||", kBoth},  // a bare name has no directory
      {"prog \"\" x", {"prog", "", "x"}, "prog||", kBoth},
      {" a", {"", "a"}, "||", kBoth},
      {"\"C:\\My App\\app.exe\" -x", {"C:\\My App\\app.exe", "-x"}, "app.exe|C:\\My App|", kBoth},
      // Shift-JIS: "表" is 0x95 0x5C, whose trail byte is no separator.
      {"C:\\\x95\x5C\\a.exe x", {"C:\\\x95\x5C\\a.exe", "x"}, "a.exe|C:\\\x95\x5C|", kNarrow},
      {"C:\\d\\\x95\x5C", {"C:\\d\\\x95\x5C"}, "\x95\x5C|C:\\d|", kNarrow}};
  for (const auto& [line, list, command, only] : cases) {
    if (!runs<Ch>(only)) continue;
    std::vector<std::basic_string<Ch>> expected;
    for (const auto& element : list) expected.push_back(text<Ch>(element));
    EXPECT_EQ(elements(text<Ch>(line)), expected) << line;
    EXPECT_EQ(parts(text<Ch>(line), 100), text<Ch>(command)) << line;
  }
  // The size must hold the whole line and its terminator, not only the
  // command: one element less gives 0 and empty outputs, a size below 1
  // leaves them alone.
  const auto line = text<Ch>("C:\\d\\prog.exe with arguments");
  const auto needed = static_cast<int32_t>(line.size()) + 1;
  for (int32_t size : {needed + 1, needed, needed - 1, 1, 0, -1})
    EXPECT_EQ(parts(line, size), text<Ch>(size >= needed ? "prog.exe|C:\\d|" : "!|!|")) << size;
}

// An empty line stands for the running program, in the layer's Windows form
// on both builds; the narrow twin gives its platform conversion.
TYPED_TEST(CommandLineLists, AnEmptyLineIsTheRunningProgram) {
  using Ch = TypeParam;
  const wstring program = module_path();
  const std::size_t last = program.rfind(u'\\');
  ASSERT_NE(last, wstring::npos);
  // ASCII paths only: the test program's own folder.
  const auto in_twin = [](const wstring& wide) { return in<Ch>(narrow(wide)); };
  const std::basic_string<Ch> empty;
  EXPECT_EQ(elements(empty), std::vector{in_twin(program)});
  const wstring bar(1, wchar('|'));
  EXPECT_EQ(parts(empty, 260),
            in_twin(program.substr(last + 1) + bar + program.substr(0, last) + bar));
  EXPECT_EQ(utf8(program.substr(last + 1)).rfind("kz_tests", 0), 0u);
}

// The narrow line goes through a wide buffer of 260 elements and each
// element back through 260 bytes: 259 of either fit, 260 give 0 and nothing
// to release. A double-byte character takes one wide element but two bytes.
TEST(CommandLineListNarrow, KeepsToItsTwoBuffersOf260) {
  std::string ideographs;
  for (int k = 0; k < 130; ++k) ideographs += "\x93\xFA";
  // Each line's last element is all but its first four bytes.
  const std::pair<std::string, bool> cases[] = {
      {"p a " + std::string(255, 'a'), true},  // 259 wide elements
      {"p a " + std::string(256, 'a'), false},
      {"p a x" + ideographs.substr(2), true},  // an element of 259 bytes
      {"p a " + ideographs, false},            // 260 bytes, in 134 wide elements
  };
  for (const auto& [line, fits] : cases) {
    if (fits) {
      EXPECT_EQ(elements(line).back(), line.substr(4)) << "the element arrives whole";
      continue;
    }
    StrList list = kUntouched, parameters = kUntouched;
    EXPECT_EQ(KZ_CmdLineListA(line.c_str(), &list), 0);
    EXPECT_EQ(KZ_GetCmdLineParamA(line.c_str(), &parameters), 0);
    EXPECT_TRUE(holds_nothing(list) && parameters.strings == nullptr);
  }
}

// Fail once and fail forever, at every allocation (the platform's own block
// included where the layer allocates it): 0, and nothing left to release,
// which the leak checker confirms, or an empty output.
TYPED_TEST(CommandLineLists, GiveZeroAndHoldNothingWhenAnyAllocationFails) {
  using Ch = TypeParam;
  const auto line = text<Ch>("\"C:\\My Dir\\app.exe\" \"a b\" \"\" c");
  for_each_allocation_failure([&] {
    StrList list = kUntouched;
    if (Twin<Ch>::CmdLineList(line.c_str(), &list) == 1)
      EXPECT_EQ(strings_of<Ch>(list).size(), 4u);
    else
      EXPECT_TRUE(holds_nothing(list));
    list = kUntouched;
    if (Twin<Ch>::GetCmdLineParam(line.c_str(), &list) == 1)
      EXPECT_EQ(strings_of<Ch>(list).size(), 3u);
    else
      EXPECT_EQ(list.strings, nullptr);
    const auto got = parts(line, 100);
    bool known = false;
    for (const char* ok : {"app.exe|C:\\My Dir|", "!|C:\\My Dir|", "app.exe|!|", "!|!|"})
      known |= got == text<Ch>(ok);
    EXPECT_TRUE(known);
  });
}

// The arguments of the child below: blanks, tabs, quotes, backslashes at
// the end and before quotes, an empty one and Japanese text.
const std::vector<std::string> kChildArguments = {
    "two words",  "tab\there",
    "quote\"in",  "\"quoted\"",
    "trailing\\", "a\\\\\"b",
    "",           "\\\\srv\\x\\",
    "plain",      "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E \xEF\xBD\xB6"};

// Runs only in the child, which the next test starts: its own command line,
// read through both twins, ends in the arguments it was given.
TEST(CommandLineChild, DISABLED_GetsItsArgumentsBack) {
  StrList wide_list{}, narrow_list{};
  ASSERT_EQ(KZ_GetCmdLineW(&wide_list), 1);
  ASSERT_EQ(KZ_GetCmdLineA(&narrow_list), 1);
  // The narrow line must fit 259 wide elements: the arguments are kept short.
  EXPECT_LT(std::char_traits<wchar>::length(kz::os::GetCommandLineW()), 260u);
  const auto wide_elements = strings_of<wchar>(wide_list);
  const auto narrow_elements = strings_of<char>(narrow_list);
  ASSERT_EQ(wide_elements.size(), kChildArguments.size() + 3);
  ASSERT_EQ(narrow_elements.size(), kChildArguments.size() + 3);
  EXPECT_EQ(wide_elements[0], module_path());
  EXPECT_EQ(narrow_elements[0], narrow(module_path()));
  for (std::size_t k = 0; k < kChildArguments.size(); ++k) {
    EXPECT_EQ(utf8(wide_elements[k + 3]), kChildArguments[k]) << k;
    EXPECT_EQ(narrow_elements[k + 3], narrow(utf16(kChildArguments[k]))) << k;
  }
}

TEST(CommandLineChild, GivesTheArgumentsItWasStartedWithBack) {
  std::vector<std::string> arguments = {
      "--gtest_filter=CommandLineChild.DISABLED_GetsItsArgumentsBack",
      "--gtest_also_run_disabled_tests"};
  arguments.insert(arguments.end(), kChildArguments.begin(), kChildArguments.end());
  EXPECT_EQ(run_this_program(arguments), 0);
}

}  // namespace
