// The selection buffers of the file dialog: the count and the list of full
// paths, through both twins on the same selection (each byte widened to a
// unit), against a plain walk over the buffer. The selection is a heap block
// of exactly its elements, so a read past its two terminators shows.
//
// Input: a size byte, then the selection's elements (two terminators are
// added behind them).
#include <memory>

#include "fuzz_support.h"

// The paths that the selection names as the walk bounded by size takes
// them: the first text alone for a count of 1, else directory\name.
std::vector<std::string> model_paths(const std::string& selection, int32_t count, int32_t size) {
  const std::string directory(selection.c_str());
  if (count == 1) return {directory};
  std::vector<std::string> paths;
  for (std::size_t at = directory.size() + 1; static_cast<int32_t>(at) < size;) {
    const std::string name(selection.c_str() + at);
    paths.push_back(directory + "\\" + name);
    at += name.size();
    if (selection[at + 1] == 0) break;
    ++at;
  }
  return paths;
}

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
    std::string path;
    for (const Ch* p = static_cast<const Ch*>(list.strings[k]); *p != 0; ++p)
      path.push_back(static_cast<char>(*p));
    paths.push_back(path);
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
  if (count <= 0) return 0;
  // Within the count range the walk and the list agree; behind it the list
  // stops at the count.
  const auto model = model_paths(bytes, count, walk_size);
  for (std::size_t k = 0; k < paths.size(); ++k) check(k < model.size() && paths[k] == model[k]);
  check(paths.size() == std::min<std::size_t>(model.size(), static_cast<std::size_t>(count)));
  return 0;
}
