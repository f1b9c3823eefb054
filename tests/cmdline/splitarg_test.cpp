// Cutting a command string into command and arguments, in both twins: each
// rule and where it passes an element over, the null outputs, and
// double-byte text in the narrow twin (the limit of 259 elements is held by
// the guard-page table).
#include "support.h"

namespace {

using namespace kz::test;

KZ_TWIN_SUITE(ArgumentSplit);

// Both outputs hold 260 elements; "|" joins what they received. Either
// output may be null, and each alone receives what it receives beside the
// other.
template <class Ch>
std::basic_string<Ch> split(const std::basic_string<Ch>& line) {
  auto command = sentinel_buffer<Ch>(260), arguments = sentinel_buffer<Ch>(260);
  auto command_alone = sentinel_buffer<Ch>(260), arguments_alone = sentinel_buffer<Ch>(260);
  Twin<Ch>::SplitArg(line.c_str(), command.data(), arguments.data());
  Twin<Ch>::SplitArg(line.c_str(), command_alone.data(), nullptr);
  Twin<Ch>::SplitArg(line.c_str(), nullptr, arguments_alone.data());
  Twin<Ch>::SplitArg(line.c_str(), nullptr, nullptr);
  EXPECT_TRUE(untouched_from(command, str(command).size() + 1));
  EXPECT_TRUE(untouched_from(arguments, str(arguments).size() + 1));
  const auto both = str(command) + Ch('|') + str(arguments);
  EXPECT_EQ(str(command_alone) + Ch('|') + str(arguments_alone), both);
  return both;
}

TYPED_TEST(ArgumentSplit, CutsTheCommandByItsQuotesOrTheFirstBlank) {
  using Ch = TypeParam;
  const std::tuple<const char*, const char*, Only> cases[] = {
      {"prog", "prog|", kBoth},
      {"prog ", "prog|", kBoth},
      {"prog   a", "prog|  a", kBoth},
      {" prog a", "|prog a", kBoth},
      {"prog\ta b", "prog\ta|b", kBoth},  // only the blank separates
      {"\"my prog\"", "my prog|", kBoth},
      {"\"my prog\"  a", "my prog| a", kBoth},
      {"\"my prog\"a b", "my prog| b", kBoth},  // the a is the element passed over
      {"\"a\" \"b c\"", "a|\"b c\"", kBoth},
      {"\"my prog a", "my prog a|", kBoth},
      {"\"\" a", "|a", kBoth},
      {"", "|", kBoth},
      // A quote further on selects the quoted rule all the same, which
      // drops the first element unseen and counts the position behind the
      // command as if the quote had been dropped too.
      {"prog \"a\" b", "rog |\" b", kBoth},
      // Shift-JIS: "表" is 0x95 0x5C; neither byte is a blank or a quote.
      {"\x95\x5C \x95\x5C", "\x95\x5C|\x95\x5C", kNarrow},
      {"\"\x95\x5C \x95\x5C\" a", "\x95\x5C \x95\x5C|a", kNarrow}};
  for (const auto& [line, parts, only] : cases) {
    if (!runs<Ch>(only)) continue;
    EXPECT_EQ(split(text<Ch>(line)), text<Ch>(parts)) << line;
  }
}

}  // namespace
