// Points and rectangles as one line of delimited decimal numbers, and back:
// KZ_PointString, KZ_RectString, KZ_StringPoint and KZ_StringRect.
//
// The writers put a blank behind each delimiter and the readers drop every
// blank before they split, so a blank as the delimiter reads back as one
// field; intended, the readers have always ignored blanks.
#include "frame/memory.h"
#include "frame/strlist.h"
#include "frame/text.h"
#include "strings/split.h"

namespace kz::numeric {
namespace {

constexpr int kBlank = ' ';

template <class Ch>
struct Layout {
  static constexpr auto kPoint = literal<Ch>("%d%c %d");
  static constexpr auto kRect = literal<Ch>("%d%c %d%c %d%c %d");
};

// The delimiter reaches the formatter as the call's argument promotion
// makes it: a char sign-extended to int, of which the formatter writes the
// low 8 bits.
template <class Ch>
void point_text(const PointRecord* point, Ch* destination, Ch delimiter) {
  Text<Ch>::format(destination, Layout<Ch>::kPoint.text, point->x, delimiter, point->y);
}

template <class Ch>
void rect_text(const RectRecord* rect, Ch* destination, Ch delimiter) {
  Text<Ch>::format(destination, Layout<Ch>::kRect.text, rect->left, delimiter, rect->top, delimiter,
                   rect->right, delimiter, rect->bottom);
}

// The text without its blanks, split at the delimiter with quotes on, each
// field read as a leading integer. Gives the number of fields read into
// `values` (at most `wanted`), or -1 when there is no working copy or no
// list. A field without a number reads as 0.
template <class Ch>
std::int32_t read_fields(const Ch* text, Ch delimiter, std::int32_t (&values)[4],
                         std::int32_t wanted, std::int32_t* fields) {
  const std::size_t n = length(text);
  Scratch<Ch> copy(n + 1);
  if (!copy) return -1;
  std::size_t kept = 0;
  for (std::size_t i = 0; i < n; ++i) {
    // Byte-step over a pair: the lead byte is copied without the blank
    // test, and the trail byte comes up as a position of its own.
    if constexpr (Text<Ch>::narrow) {
      if (Text<Ch>::pair_at(text + i)) {
        copy.get()[kept++] = text[i];
        continue;
      }
    }
    if (text[i] != kBlank) copy.get()[kept++] = text[i];
  }
  copy.get()[kept] = 0;

  StrList list{0, nullptr};
  if (split(copy.get(), delimiter, &list, true) == 0) return -1;
  *fields = list.count;
  const std::int32_t read = list.count < wanted ? list.count : wanted;
  for (std::int32_t k = 0; k < read; ++k) values[k] = Text<Ch>::to_int(entry<Ch>(list, k));
  release_list(&list);
  return read;
}

// Exactly two fields.
template <class Ch>
std::int32_t point_value(const Ch* text, PointRecord* point, Ch delimiter) {
  std::int32_t values[4];
  std::int32_t fields = 0;
  if (read_fields(text, delimiter, values, 2, &fields) < 0 || fields != 2) return 0;
  point->x = values[0];
  point->y = values[1];
  return 1;
}

// At least four fields; those behind the fourth are not looked at.
template <class Ch>
std::int32_t rect_value(const Ch* text, RectRecord* rect, Ch delimiter) {
  std::int32_t values[4];
  std::int32_t fields = 0;
  if (read_fields(text, delimiter, values, 4, &fields) < 4) return 0;
  rect->left = values[0];
  rect->top = values[1];
  rect->right = values[2];
  rect->bottom = values[3];
  return 1;
}

}  // namespace
}  // namespace kz::numeric

extern "C" {

KZ_API void KZ_PointStringW(const PointRecord* point, KZ_WCHAR* destination, KZ_WCHAR delimiter) {
  kz::numeric::point_text(point, destination, delimiter);
}
KZ_API void KZ_PointStringA(const PointRecord* point, char* destination, char delimiter) {
  kz::numeric::point_text(point, destination, delimiter);
}
KZ_API void KZ_RectStringW(const RectRecord* rect, KZ_WCHAR* destination, KZ_WCHAR delimiter) {
  kz::numeric::rect_text(rect, destination, delimiter);
}
KZ_API void KZ_RectStringA(const RectRecord* rect, char* destination, char delimiter) {
  kz::numeric::rect_text(rect, destination, delimiter);
}
KZ_API int32_t KZ_StringPointW(const KZ_WCHAR* text, PointRecord* point, KZ_WCHAR delimiter) {
  return kz::numeric::point_value(text, point, delimiter);
}
KZ_API int32_t KZ_StringPointA(const char* text, PointRecord* point, char delimiter) {
  return kz::numeric::point_value(text, point, delimiter);
}
KZ_API int32_t KZ_StringRectW(const KZ_WCHAR* text, RectRecord* rect, KZ_WCHAR delimiter) {
  return kz::numeric::rect_value(text, rect, delimiter);
}
KZ_API int32_t KZ_StringRectA(const char* text, RectRecord* rect, char delimiter) {
  return kz::numeric::rect_value(text, rect, delimiter);
}

}  // extern "C"
