// Multi-file selections of the platform's file dialog:
// KZ_GetComnSelectFileCount and KZ_GetComnSelectFiles. A selection is one
// path and two terminators, or a directory and names, each terminated, and
// one more terminator behind the last name. The twins are mirrors; the
// narrow ones need no pair test, since no double-byte character holds 0.
#include "cmdline/cmdline.h"
#include "frame/strlist.h"

namespace kz {
namespace {

// The count looks at positions 0 to 259 only, whatever the buffer's size.
inline constexpr int32_t kCountRange = kWorkLimit;

template <class Ch>
int32_t selection_count(const Ch* selection) {
  if (selection == nullptr || selection[0] == 0) return -1;
  int32_t first_end = 0;
  while (first_end < kCountRange && selection[first_end] != 0) ++first_end;
  // A first text that fills the range leaves no names to walk, but the
  // element behind position 260 still tells the single form.
  if (selection[first_end + 1] == 0) return 1;
  int32_t names = 0;
  for (int32_t i = first_end + 1; i < kCountRange; ++i) {
    if (selection[i] != 0) continue;
    ++names;
    if (selection[i + 1] == 0) break;
  }
  return names;
}

template <class Ch>
int32_t selection_files(const Ch* selection, int32_t size, StrList* list) {
  if (selection == nullptr || selection[0] == 0) return -1;
  list->count = 0;
  list->strings = nullptr;
  const int32_t slots = selection_count(selection);
  if (slots == 0) return 0;
  void** strings = allocate_array<void*>(static_cast<std::size_t>(slots));
  if (strings == nullptr) return -1;
  list->strings = strings;
  const auto fail = [&] {
    release_list(list);
    return 0;
  };

  if (slots == 1) {
    // The single form: the first text as it stands, the size unused.
    strings[0] = duplicate(selection);
    if (strings[0] == nullptr) return fail();
    list->count = 1;
    return 1;
  }

  // A count of two or more found terminators inside the range, so the
  // directory and every counted name joined to it fit 260 elements.
  Ch directory[kWorkLimit];
  Text<Ch>::copy(directory, kWorkLimit, selection);
  const auto position_of_names = static_cast<int32_t>(length(directory)) + 1;
  Ch path[kWorkLimit];
  const Ch separator[] = {static_cast<Ch>('\\'), 0};
  // The walk stops at size and never stores more names than the count saw.
  for (int32_t p = position_of_names; p < size && list->count < slots;) {
    Text<Ch>::copy(path, kWorkLimit, directory);
    Text<Ch>::append(path, kWorkLimit, separator);
    Text<Ch>::append(path, kWorkLimit, selection + p);
    strings[list->count] = duplicate(path);
    if (strings[list->count] == nullptr) return fail();
    ++list->count;
    p += static_cast<int32_t>(length(selection + p));
    if (selection[p + 1] == 0) break;
    ++p;
  }
  return list->count;
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_GetComnSelectFileCountW(const KZ_WCHAR* selection) {
  return kz::selection_count(selection);
}
KZ_API int32_t KZ_GetComnSelectFileCountA(const char* selection) {
  return kz::selection_count(selection);
}
KZ_API int32_t KZ_GetComnSelectFilesW(const KZ_WCHAR* selection, int32_t size, StrList* list) {
  return kz::selection_files(selection, size, list);
}
KZ_API int32_t KZ_GetComnSelectFilesA(const char* selection, int32_t size, StrList* list) {
  return kz::selection_files(selection, size, list);
}

}  // extern "C"
