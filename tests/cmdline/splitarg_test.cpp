// Cutting a command string into command and arguments, in both twins: each
// rule and where it passes an element over, the null outputs, the limit of
// 259 elements, and double-byte text in the narrow twin.
#include "support.h"
#include "twins.h"

namespace {

using namespace kz::test;

template <class Ch>
class ArgumentSplit : public ::testing::Test {};
TYPED_TEST_SUITE(ArgumentSplit, ElementTypes);

constexpr std::size_t kBuffer = 260;

TYPED_TEST(ArgumentSplit, CutsTheCommandByItsQuotesOrTheFirstBlank) {
  using Ch = TypeParam;
  struct Case {
    const char* text;
    const char* command;
    const char* arguments;
    Only only = Only::kBoth;
  } cases[] = {
      {"prog a b", "prog", "a b"},
      {"prog", "prog", ""},
      {"prog ", "prog", ""},
      {"prog   a", "prog", "  a"},
      {" prog a", "", "prog a"},
      {"prog\ta b", "prog\ta", "b"},  // only the blank separates
      {"\"my prog\" a b", "my prog", "a b"},
      {"\"my prog\"", "my prog", ""},
      {"\"my prog\" ", "my prog", ""},
      {"\"my prog\"  a", "my prog", " a"},
      {"\"my prog\"a b", "my prog", " b"},  // the a is the element passed over
      {"\"a\" \"b c\"", "a", "\"b c\""},
      {"\"my prog a", "my prog a", ""},
      {"\"\"", "", ""},
      {"\"\" a", "", "a"},
      {"", "", ""},
      // A quote further on selects the quoted rule all the same, which
      // drops the first element unseen and counts the position behind the
      // command as if the quote had been dropped too.
      {"prog \"a\" b", "rog ", "\" b"},
      // Shift-JIS: "表" is 0x95 0x5C; neither byte is a blank or a quote.
      {"\x95\x5C \x95\x5C", "\x95\x5C", "\x95\x5C", Only::kNarrow},
      {"\"\x95\x5C \x95\x5C\" a", "\x95\x5C \x95\x5C", "a", Only::kNarrow},
  };
  for (const Case& c : cases) {
    if (!runs<Ch>(c.only)) continue;
    auto command = sentinel_buffer<Ch>(kBuffer);
    auto arguments = sentinel_buffer<Ch>(kBuffer);
    Twin<Ch>::SplitArg(text<Ch>(c.text).c_str(), command.data(), arguments.data());
    EXPECT_EQ(str(command), text<Ch>(c.command)) << c.text;
    EXPECT_EQ(str(arguments), text<Ch>(c.arguments)) << c.text;
    EXPECT_TRUE(untouched_from(command, std::char_traits<char>::length(c.command) + 1)) << c.text;
    EXPECT_TRUE(untouched_from(arguments, std::char_traits<char>::length(c.arguments) + 1))
        << c.text;
  }
}

TYPED_TEST(ArgumentSplit, FillsTheOtherOutputWhenOneIsNull) {
  using Ch = TypeParam;
  const auto line = text<Ch>("\"my prog\" a b");
  auto command = sentinel_buffer<Ch>(kBuffer);
  auto arguments = sentinel_buffer<Ch>(kBuffer);
  Twin<Ch>::SplitArg(line.c_str(), command.data(), nullptr);
  Twin<Ch>::SplitArg(line.c_str(), nullptr, arguments.data());
  EXPECT_EQ(str(command), text<Ch>("my prog"));
  EXPECT_EQ(str(arguments), text<Ch>("a b"));
  Twin<Ch>::SplitArg(line.c_str(), nullptr, nullptr);
}

// 259 elements fit the working copy; 260 leave both outputs empty.
TYPED_TEST(ArgumentSplit, TakesATextOf259ElementsAndRefusesOneMore) {
  using Ch = TypeParam;
  for (std::size_t tail : {253u, 254u}) {
    const auto line = text<Ch>(std::string("prog a").append(tail, 'x'));
    auto command = sentinel_buffer<Ch>(kBuffer);
    auto arguments = sentinel_buffer<Ch>(kBuffer);
    Twin<Ch>::SplitArg(line.c_str(), command.data(), arguments.data());
    const bool fits = line.size() <= 259;
    EXPECT_EQ(str(command), fits ? text<Ch>("prog") : std::basic_string<Ch>()) << line.size();
    EXPECT_EQ(str(arguments).size(), fits ? tail + 1 : 0u) << line.size();
    EXPECT_TRUE(untouched_from(arguments, fits ? tail + 2 : 1)) << line.size();
  }
}

}  // namespace
