// Drives the command-line family through both twins with arbitrary text:
// the lists, the command's name and directory, the argument split and the
// selections. Every output is a heap block of exactly the size the library
// is told, so AddressSanitizer catches any access behind it, and the leak
// checker any list that a failure did not give back.
//
// Input: a size byte, then the elements (narrow: bytes; wide: the bytes in
// pairs). The text is the elements up to the first 0; the selection is all
// of them with two terminators added.
#include "fuzz_support.h"

template <class Ch>
void drive(std::basic_string<Ch> elements, int32_t size) {
  using Api = Twin<Ch>;
  const std::vector<Ch> line(elements.c_str(), elements.c_str() + length(elements.c_str()) + 1);

  // The parameters are the list without its first element (tests/cmdline
  // compares the elements on every row of its own).
  StrList all{}, parameters{};
  const int32_t listed = Api::CmdLineList(line.data(), &all);
  check(listed == Api::GetCmdLineParam(line.data(), &parameters));
  if (listed == 1) {
    check(all.count >= 1 && parameters.count == all.count - 1);
    Api::DeleteStrList(&all);
    Api::DeleteStrList(&parameters);
  }

  // The name and the directory fit the output or leave it empty.
  if (size > 0) {
    std::vector<Ch> name(static_cast<std::size_t>(size)), directory(name.size());
    Api::GetCommand(line.data(), name.data(), size);
    Api::GetCommandDirectory(line.data(), directory.data(), size);
    check(length(name.data()) < name.size() && length(directory.data()) < directory.size());
  }

  // The split keeps to its outputs of 260 elements, however long the text.
  std::vector<Ch> command(260), arguments(260);
  Api::SplitArg(line.data(), command.data(), arguments.data());
  check(length(command.data()) + length(arguments.data()) < line.size());

  // A selection never stores more names than it counts.
  elements.append(2, Ch(0));
  const std::vector<Ch> selection(elements.begin(), elements.end());
  const int32_t count = Api::GetComnSelectFileCount(selection.data());
  StrList files{};
  const int32_t stored = Api::GetComnSelectFiles(selection.data(), size, &files);
  check(stored <= count && stored == (stored < 0 ? -1 : files.count));
  if (stored >= 0) Api::DeleteStrList(&files);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const int32_t buffer_size = static_cast<int32_t>(data[0]) - 2;  // -2 to 253
  const std::string elements(data + 1, data + size);
  drive(elements, buffer_size);
  drive(pairs(elements), buffer_size);
  return 0;
}
