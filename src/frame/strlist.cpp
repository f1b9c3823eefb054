// Release of a string list. The twins are mirrors: the record has one
// layout for both kinds of text and the release never reads a string.
#include "frame/memory.h"
#include "kz_basis.h"

namespace {

void release_list(StrList* list) {
  if (list == nullptr) return;
  for (int32_t i = 0; i < list->count; ++i) kz::release(list->strings[i]);
  if (list->strings != nullptr) {
    kz::release(list->strings);
    list->strings = nullptr;
  }
  list->count = 0;
}

}  // namespace

extern "C" {
KZ_API void KZ_DeleteStrListW(StrList* list) { release_list(list); }
KZ_API void KZ_DeleteStrListA(StrList* list) { release_list(list); }
}
