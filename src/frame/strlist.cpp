// Release of a string list: KZ_DeleteStrList. The twins are mirrors: the
// record has one layout for both kinds of text and the release never reads a
// string.
#include "frame/strlist.h"

#include "frame/memory.h"

namespace kz {

void release_list(StrList* list) {
  if (list == nullptr) return;
  for (int32_t i = 0; i < list->count; ++i) release(list->strings[i]);
  if (list->strings != nullptr) {
    release(list->strings);
    list->strings = nullptr;
  }
  list->count = 0;
}

}  // namespace kz

extern "C" {
KZ_API void KZ_DeleteStrListW(StrList* list) { kz::release_list(list); }
KZ_API void KZ_DeleteStrListA(StrList* list) { kz::release_list(list); }
}
