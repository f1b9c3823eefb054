// The name and the directory of a command: KZ_GetCommand and
// KZ_GetCommandDirectory. The line is split by the list operations, and
// path dissection takes the file name or the directory of its element 0;
// an empty line gives the running program's path there.
#include "cmdline/cmdline.h"
#include "frame/strlist.h"
#include "paths/dissect.h"

namespace kz {
namespace {

enum class Part { kName, kDirectory };

// 1 when the split succeeded, whatever element 0 gave; 0 with out empty
// when out has no room for the line, the working copy cannot be had or the
// split fails. The whole line, not only its command, must fit size.
template <class Ch>
int32_t command_part(const Ch* line, Ch* out, int32_t size, Part part) {
  if (size < 1) return 0;
  out[0] = 0;
  if (line == nullptr) return 0;
  Scratch<Ch> work(static_cast<std::size_t>(size));
  if (!work || Text<Ch>::copy(work.get(), static_cast<std::size_t>(size), line) != 0) return 0;
  StrList list{};
  if (command_line_list(work.get(), &list) == 0) return 0;
  const Ch* command = entry<Ch>(list, 0);
  // Dissection gives out what fits size, or empties it; its result is not
  // needed here.
  if (part == Part::kName)
    file_name(command, out, size);
  else
    directory_name(command, out, size);
  release_list(&list);
  return 1;
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_GetCommandW(const KZ_WCHAR* line, KZ_WCHAR* name, int32_t size) {
  return kz::command_part(line, name, size, kz::Part::kName);
}
KZ_API int32_t KZ_GetCommandA(const char* line, char* name, int32_t size) {
  return kz::command_part(line, name, size, kz::Part::kName);
}
KZ_API int32_t KZ_GetCommandDirectoryW(const KZ_WCHAR* line, KZ_WCHAR* directory, int32_t size) {
  return kz::command_part(line, directory, size, kz::Part::kDirectory);
}
KZ_API int32_t KZ_GetCommandDirectoryA(const char* line, char* directory, int32_t size) {
  return kz::command_part(line, directory, size, kz::Part::kDirectory);
}

}  // extern "C"
