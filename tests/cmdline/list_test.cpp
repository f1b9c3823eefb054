// Command lines as string lists, in both twins: what the lists hold, the
// narrow twin held against the wide one and the platform's conversion, the
// narrow buffers' limits, every allocation failing, and the process's own
// line read back in a child started with known arguments.
#include <string>
#include <vector>

#include "platform/platform.h"
#include "support.h"
#include "twins.h"

namespace {

namespace os = kz::os;
using namespace kz::test;

template <class Ch>
class CommandLineLists : public ::testing::Test {};
TYPED_TEST_SUITE(CommandLineLists, ElementTypes);

// The list's strings as one vector; the list is released.
template <class Ch>
std::vector<std::basic_string<Ch>> take(StrList& list) {
  std::vector<std::basic_string<Ch>> strings;
  for (int32_t i = 0; i < list.count; ++i) strings.emplace_back(static_cast<Ch*>(list.strings[i]));
  Twin<Ch>::DeleteStrList(&list);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.strings, nullptr);
  return strings;
}

template <class Ch>
std::vector<std::basic_string<Ch>> texts(std::initializer_list<const char*> items) {
  std::vector<std::basic_string<Ch>> out;
  for (const char* item : items) out.push_back(text<Ch>(item));
  return out;
}

// A record that no filler has touched, so that a failure that leaves it as
// it was shows.
StrList untouched_list() {
  static void* marker[1];
  return StrList{7, marker};
}

bool holds_nothing_to_release(const StrList& list) {
  const StrList marker = untouched_list();
  const bool as_it_was = list.count == marker.count && list.strings == marker.strings;
  return as_it_was || (list.count == 0 && list.strings == nullptr);
}

// The narrow form of wide text by the platform, for what the narrow twin
// should give.
std::string narrow(const wstring& wide) {
  std::string out(wide.size() * 2 + 1, '\0');
  const int written = os::WideCharToMultiByte(os::kAnsiCodePage, 0, wide.c_str(), -1, out.data(),
                                              static_cast<int>(out.size()), nullptr, nullptr);
  out.resize(written > 0 ? static_cast<std::size_t>(written) - 1 : 0);
  return out;
}

wstring program_path() {
  std::vector<wchar> path(32768);
  return wstring(path.data(), os::GetModuleFileNameW(nullptr, path.data(), 32768));
}

template <class Ch>
std::basic_string<Ch> in_twin(const wstring& wide) {
  if constexpr (sizeof(Ch) == 1)
    return narrow(wide);
  else
    return wide;
}

TYPED_TEST(CommandLineLists, HoldEveryElementAndTheParametersAllButTheFirst) {
  using Ch = TypeParam;
  struct Case {
    const char* line;
    std::initializer_list<const char*> elements;
  } cases[] = {
      {"prog a b", {"prog", "a", "b"}},
      {"prog", {"prog"}},
      {"prog \"\" x", {"prog", "", "x"}},
      {" a", {"", "a"}},
  };
  for (const Case& c : cases) {
    const auto line = text<Ch>(c.line);
    const auto expected = texts<Ch>(c.elements);
    StrList list = untouched_list();
    ASSERT_EQ(Twin<Ch>::CmdLineList(line.c_str(), &list), 1) << c.line;
    EXPECT_EQ(take<Ch>(list), expected) << c.line;
    list = untouched_list();
    ASSERT_EQ(Twin<Ch>::GetCmdLineParam(line.c_str(), &list), 1) << c.line;
    if (expected.size() == 1) {
      // The command alone: an empty list without an array.
      EXPECT_EQ(list.count, 0);
      EXPECT_EQ(list.strings, nullptr);
    }
    EXPECT_EQ(take<Ch>(list), decltype(expected)(expected.begin() + 1, expected.end())) << c.line;
  }
}

TYPED_TEST(CommandLineLists, GiveTheRunningProgramForAnEmptyLine) {
  using Ch = TypeParam;
  const Ch empty[] = {0};
  StrList list = untouched_list();
  ASSERT_EQ(Twin<Ch>::CmdLineList(empty, &list), 1);
  const auto elements = take<Ch>(list);
  ASSERT_EQ(elements.size(), 1u);
  EXPECT_EQ(elements[0], in_twin<Ch>(program_path()));
  list = untouched_list();
  ASSERT_EQ(Twin<Ch>::GetCmdLineParam(empty, &list), 1);
  EXPECT_EQ(list.count, 0);
  EXPECT_EQ(list.strings, nullptr);
}

// Every line of the recorded corpus that has a narrow form: the narrow list
// is the wide list with each element in the narrow code page.
TEST(CommandLineListNarrow, EqualsTheWideListConvertedElementByElement) {
  const std::vector<wstring> lines = {
      utf16("prog \xE6\x97\xA5\xE6\x9C\xAC \"\xE8\xA1\xA8\\\" \xE3\x82\xBD\""),
      utf16("\"C:\\\xE6\x97\xA5\xE6\x9C\xAC\\\xE3\x82\xA2 x.exe\" \xEF\xBD\xB6\xEF\xBE\x85"),
      utf16("prog a\xE3\x80\x80"
            "b \"\xE3\x80\x80\""),
      utf16("\xE8\xA1\xA8 \xE8\xA1\xA8\\\\\"\xE8\xA1\xA8\""),
  };
  for (const wstring& line : lines) {
    StrList wide_list{}, narrow_list{};
    ASSERT_EQ(KZ_CmdLineListW(line.c_str(), &wide_list), 1);
    ASSERT_EQ(KZ_CmdLineListA(narrow(line).c_str(), &narrow_list), 1) << utf8(line);
    std::vector<std::string> expected;
    for (const wstring& element : take<wchar>(wide_list)) expected.push_back(narrow(element));
    EXPECT_EQ(take<char>(narrow_list), expected) << utf8(line);
  }
}

// The narrow line goes through a wide buffer of 260 elements and each
// element back through 260 bytes: 259 of either fit, 260 give 0 and nothing
// to release. A double-byte character takes one wide element but two bytes.
TEST(CommandLineListNarrow, KeepsToItsTwoBuffersOf260) {
  const auto ideographs = [](int count) {
    std::string s;
    for (int k = 0; k < count; ++k) s += "\x93\xFA";  // one character, two bytes
    return s;
  };
  struct Case {
    std::string prefix, last;  // the line is prefix + last
    bool fits;
  } cases[] = {
      {"p ", std::string(257, 'a'), true},                          // 259 wide elements
      {"p ", std::string(258, 'a'), false},                         // 260
      {"p a ", std::string(1, 'x').append(ideographs(129)), true},  // an element of 259 bytes
      {"p a ", ideographs(130), false},  // 260 bytes, in 132 wide elements
  };
  for (const Case& c : cases) {
    std::string line = c.prefix;
    line += c.last;
    StrList list = untouched_list();
    ASSERT_EQ(KZ_CmdLineListA(line.c_str(), &list), c.fits ? 1 : 0) << line.size();
    if (c.fits)
      EXPECT_EQ(take<char>(list).back(), c.last) << "the element arrives whole";
    else
      EXPECT_TRUE(holds_nothing_to_release(list));
    list = untouched_list();
    ASSERT_EQ(KZ_GetCmdLineParamA(line.c_str(), &list), c.fits ? 1 : 0);
    if (c.fits)
      EXPECT_EQ(take<char>(list).back(), c.last);
    else
      EXPECT_EQ(list.strings, nullptr);
  }
}

// Fail once and fail forever, at every allocation the three lists make
// (the platform's own block included where the layer allocates it): 0 and
// nothing left to release, which the leak checker confirms.
TYPED_TEST(CommandLineLists, GiveZeroAndHoldNothingWhenAnyAllocationFails) {
  using Ch = TypeParam;
  const auto line = text<Ch>("prog \"a b\" \"\" c");
  for_each_allocation_failure([&] {
    StrList list = untouched_list();
    if (Twin<Ch>::CmdLineList(line.c_str(), &list) == 1)
      EXPECT_EQ(take<Ch>(list).size(), 4u);
    else
      EXPECT_TRUE(holds_nothing_to_release(list));
    list = untouched_list();
    if (Twin<Ch>::GetCmdLineParam(line.c_str(), &list) == 1)
      EXPECT_EQ(take<Ch>(list).size(), 3u);
    else
      EXPECT_EQ(list.strings, nullptr);
    list = untouched_list();
    if (Twin<Ch>::GetCmdLine(&list) == 1)
      EXPECT_GE(take<Ch>(list).size(), 1u);
    else
      EXPECT_TRUE(holds_nothing_to_release(list));
  });
}

// The arguments of the child below: blanks, tabs, quotes, backslashes at
// the end and before quotes, an empty one and Japanese text.
const std::vector<std::string> kChildArguments = {
    "two words",  "tab\there",
    "quote\"in",  "\"quoted\"",
    "trailing\\", "a\\\\\"b",
    "",           "\\\\srv\\x\\",
    "plain",      "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E \xEF\xBD\xB6",
};
const char kChildFilter[] = "--gtest_filter=CommandLineChild.DISABLED_GetsItsArgumentsBack";
const char kChildSwitch[] = "--gtest_also_run_disabled_tests";

// Runs only in the child, which the next test starts: its own command line,
// read through both twins, ends in the arguments it was given.
TEST(CommandLineChild, DISABLED_GetsItsArgumentsBack) {
  StrList wide_list{}, narrow_list{};
  ASSERT_EQ(KZ_GetCmdLineW(&wide_list), 1);
  ASSERT_EQ(KZ_GetCmdLineA(&narrow_list), 1);
  // The narrow line must fit 259 wide elements: the arguments are kept short.
  EXPECT_LT(std::char_traits<wchar>::length(os::GetCommandLineW()), 260u);
  const auto wide_elements = take<wchar>(wide_list);
  const auto narrow_elements = take<char>(narrow_list);
  ASSERT_EQ(wide_elements.size(), kChildArguments.size() + 3);
  ASSERT_EQ(narrow_elements.size(), kChildArguments.size() + 3);
  EXPECT_EQ(wide_elements[0], program_path());
  EXPECT_EQ(narrow_elements[0], narrow(program_path()));
  for (std::size_t k = 0; k < kChildArguments.size(); ++k) {
    EXPECT_EQ(utf8(wide_elements[k + 3]), kChildArguments[k]) << k;
    EXPECT_EQ(narrow_elements[k + 3], narrow(utf16(kChildArguments[k]))) << k;
  }
}

TEST(CommandLineChild, GivesTheArgumentsItWasStartedWithBack) {
  std::vector<std::string> arguments = {kChildFilter, kChildSwitch};
  arguments.insert(arguments.end(), kChildArguments.begin(), kChildArguments.end());
  EXPECT_EQ(run_this_program(arguments), 0);
}

}  // namespace
