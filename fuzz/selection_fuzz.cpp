// The selection buffers of the file dialog: the count and the list of full
// paths, through both twins on the same selection (each byte widened to a
// unit), which must agree (tests/cmdline holds the paths against a walk of
// its own). The selection is a heap block of exactly its elements, so a read
// past its two terminators shows.
//
// Input: a size byte, then the selection's elements (two terminators are
// added behind them).
#include <memory>

#include "fuzz_support.h"

template <class Ch>
std::vector<std::string> selected(const std::string& bytes, int32_t size, int32_t* count,
                                  int32_t* stored) {
  auto selection = std::make_unique<Ch[]>(bytes.size());
  for (std::size_t i = 0; i < bytes.size(); ++i)
    selection[i] = static_cast<Ch>(static_cast<unsigned char>(bytes[i]));
  *count = Twin<Ch>::GetComnSelectFileCount(selection.get());
  StrList list{};
  *stored = Twin<Ch>::GetComnSelectFiles(selection.get(), size, &list);
  std::vector<std::string> paths;
  for (int32_t k = 0; k < list.count; ++k) {
    const auto* path = static_cast<const Ch*>(list.strings[k]);
    paths.emplace_back(path, path + length(path));  // each unit cut to a byte
  }
  if (*stored >= 0) Twin<Ch>::DeleteStrList(&list);
  return paths;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const int32_t walk_size = data[0] < 16 ? data[0] : data[0] * 2;  // 0 to 510
  const std::string bytes = std::string(data + 1, data + size) + std::string(2, '\0');
  int32_t count = 0, stored = 0, wide_count = 0, wide_stored = 0;
  const auto paths = selected<char>(bytes, walk_size, &count, &stored);
  check(selected<wchar>(bytes, walk_size, &wide_count, &wide_stored) == paths);
  check(wide_count == count && wide_stored == stored);
  check((count == -1) == (bytes[0] == 0) && stored <= count);
  check(stored == (count <= 0 ? count : static_cast<int32_t>(paths.size())));
  return 0;
}
