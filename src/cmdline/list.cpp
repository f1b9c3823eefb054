// Command lines as string lists: KZ_CmdLineList, KZ_GetCmdLine and
// KZ_GetCmdLineParam.
//
// Only the wide list calls the platform's split. The narrow list converts
// the line into a wide buffer of 260 elements, splits that, and converts
// each element back through a buffer of 260 bytes; a line or an element
// beyond those buffers gives 0 instead of a cut text.
#include "cmdline/cmdline.h"
#include "frame/convert.h"
#include "frame/strlist.h"

namespace kz {
namespace {

// Copies count texts, element(k) for k from 0, each into an allocation of
// its own, and stores them in list. A text that cannot be had (null) or
// copied releases what was made and empties list; when the array itself
// cannot be had, list stays as it was.
template <class Ch, class Element>
int32_t fill(StrList* list, int32_t count, Element element) {
  void** strings = allocate_array<void*>(static_cast<std::size_t>(count));
  if (strings == nullptr) return 0;
  list->strings = strings;
  for (int32_t k = 0; k < count; ++k) {
    const Ch* text = element(k);
    strings[k] = text == nullptr ? nullptr : duplicate(text);
    if (strings[k] == nullptr) {
      list->count = k;
      release_list(list);
      return 0;
    }
  }
  list->count = count;
  return 1;
}

}  // namespace

int32_t command_line_list(const wchar* line, StrList* list) {
  if (line == nullptr) return 0;
  int count = 0;
  wchar** elements = os::CommandLineToArgvW(line, &count);
  if (elements == nullptr) return 0;
  const int32_t made = fill<wchar>(list, count, [&](int32_t k) { return elements[k]; });
  os::LocalFree(elements);
  return made;
}

int32_t command_line_list(const char* line, StrList* list) {
  // A conversion that does not fit its buffer gives 1; an empty text -1 and
  // the empty text.
  if (line == nullptr) return 0;
  wchar wide_line[kWorkLimit];
  if (to_wide(line, wide_line, kWorkLimit) == 1) return 0;
  StrList wide_list{};
  if (command_line_list(wide_line, &wide_list) == 0) return 0;
  char narrow[kWorkLimit];
  const int32_t made = fill<char>(list, wide_list.count, [&](int32_t k) -> const char* {
    // An element of more than 259 bytes fails like an allocation.
    return to_narrow(entry<wchar>(wide_list, k), narrow, kWorkLimit) == 1 ? nullptr : narrow;
  });
  release_list(&wide_list);
  return made;
}

namespace {

// Every element but the first. A list of the command alone gives 1 and an
// empty list with a null array.
template <class Ch>
int32_t parameters(const Ch* line, StrList* list) {
  list->strings = nullptr;
  StrList all{};
  if (command_line_list(line, &all) == 0) return 0;
  int32_t made = 1;
  if (all.count > 1)
    made = fill<Ch>(list, all.count - 1, [&](int32_t k) { return entry<Ch>(all, k + 1); });
  else
    list->count = 0;
  release_list(&all);
  return made;
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_CmdLineListW(const KZ_WCHAR* line, StrList* list) {
  return kz::command_line_list(line, list);
}
KZ_API int32_t KZ_CmdLineListA(const char* line, StrList* list) {
  return kz::command_line_list(line, list);
}
KZ_API int32_t KZ_GetCmdLineW(StrList* list) {
  return kz::command_line_list(kz::os::GetCommandLineW(), list);
}
KZ_API int32_t KZ_GetCmdLineA(StrList* list) {
  return kz::command_line_list(kz::os::GetCommandLineA(), list);
}
KZ_API int32_t KZ_GetCmdLineParamW(const KZ_WCHAR* line, StrList* list) {
  return kz::parameters(line, list);
}
KZ_API int32_t KZ_GetCmdLineParamA(const char* line, StrList* list) {
  return kz::parameters(line, list);
}

}  // extern "C"
