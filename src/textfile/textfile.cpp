// Line-oriented text files: KZ_TextFileOpen, KZ_TextFileClose,
// KZ_TextFileGets, KZ_TextFilePuts, KZ_TextFileEof, KZ_TextFileError,
// KZ_TextFileSeek and KZ_TextFileHandle.
//
// The file's encoding is chosen at the open, the caller's text type at each
// call; a twin converts only when the two differ. The open tests its flag
// for 1 and so do the wide twins, while the narrow twins take any flag but 0
// as wide: flag 2 opens a narrow stream that the narrow twins then read and
// write through the wide stream calls. Kept so, as files already rely on it.
#include "textfile/textfile.h"

#include <type_traits>

#include "frame/convert.h"
#include "frame/memory.h"

namespace kz {
namespace {

constexpr int32_t kModeLimit = 32;

// Whether a twin of element type Ch goes the wide route on this file.
template <class Ch>
bool wide_route(const TextFileHandle* file) {
  return Text<Ch>::narrow ? file->wide != 0 : file->wide == 1;
}

template <class Ch>
using Other = std::conditional_t<Text<Ch>::narrow, wchar, char>;

// The stream's marks tell whether a whole line came: neither the end of the
// file nor an error.
bool whole_line(FILE* stream) { return os::ferror(stream) == 0 && os::feof(stream) == 0; }

// Reads a line of the stream's own width into buffer and cuts its last
// element, the newline where there is one. A read that gives nothing
// leaves the empty text.
template <class Ch>
void read_cut(Ch* buffer, int32_t size, FILE* stream) {
  if (Text<Ch>::read_line(buffer, size, stream) == nullptr) {
    buffer[0] = 0;
    return;
  }
  const std::size_t n = length(buffer);
  buffer[n == 0 ? 0 : n - 1] = 0;
}

template <class Ch>
int32_t gets(TextFileHandle* file, Ch* out, int32_t size) {
  if (size < 1) return 0;
  if (wide_route<Ch>(file) == !Text<Ch>::narrow) {
    read_cut(out, size, file->stream);
    return whole_line(file->stream) ? 1 : 0;
  }
  // The line comes in the file's width and is converted for the caller only
  // when it is whole; otherwise the caller's buffer stays as it was.
  Scratch<Other<Ch>> line(static_cast<std::size_t>(size));
  if (!line) return 0;
  read_cut(line.get(), size, file->stream);
  if (!whole_line(file->stream)) return 0;
  if constexpr (Text<Ch>::narrow) {
    if (to_narrow(line.get(), out, size) == 1) out[size - 1] = 0;
  } else {
    if (to_wide(line.get(), out, size) == 1) out[size - 1] = 0;
  }
  return 1;
}

// Writes text of the stream's own width with a newline.
template <class Ch>
bool write_with_newline(const Ch* text, FILE* stream) {
  const std::size_t n = length(text);
  Scratch<Ch> line(n + 2);
  if (!line) return false;
  for (std::size_t i = 0; i < n; ++i) line.get()[i] = text[i];
  line.get()[n] = Ch('\n');
  line.get()[n + 1] = 0;
  Text<Ch>::write_line(line.get(), stream);
  return os::ferror(stream) == 0;
}

}  // namespace

template <class Ch>
TextFileHandle* text_file_open(const Ch* path, const Ch* mode, int32_t wide) {
  static constexpr auto kTextMode = literal<Ch>("t");
  static constexpr auto kUnicode = literal<Ch>(",ccs=UNICODE");
  Ch work[kModeLimit];
  if (Text<Ch>::copy(work, kModeLimit, mode) != 0 ||
      Text<Ch>::append(work, kModeLimit, kTextMode.text) != 0 ||
      (wide == 1 && Text<Ch>::append(work, kModeLimit, kUnicode.text) != 0))
    return nullptr;
  FILE* stream = nullptr;
  if (Text<Ch>::open_stream(&stream, path, work) != 0 || stream == nullptr) return nullptr;
  auto* file = static_cast<TextFileHandle*>(allocate(sizeof(TextFileHandle)));
  if (file == nullptr) {
    // Without a record no one could close the stream: it goes now.
    os::fclose(stream);
    return nullptr;
  }
  *file = TextFileHandle{wide, stream};
  return file;
}

template <class Ch>
int32_t text_file_puts(TextFileHandle* file, const Ch* text) {
  if (wide_route<Ch>(file) == !Text<Ch>::narrow) return write_with_newline(text, file->stream);
  const Converted<Other<Ch>> converted(text);
  if (!converted) return 0;
  return write_with_newline(converted.get(), file->stream) ? 1 : 0;
}

bool text_file_close(TextFileHandle* file) {
  if (file == nullptr) return true;
  const bool flushed = os::fclose(file->stream) == 0;
  release(file);
  return flushed;
}

template TextFileHandle* text_file_open(const char*, const char*, int32_t);
template TextFileHandle* text_file_open(const wchar*, const wchar*, int32_t);
template int32_t text_file_puts(TextFileHandle*, const char*);
template int32_t text_file_puts(TextFileHandle*, const wchar*);

}  // namespace kz

extern "C" {

KZ_API TextFileHandle* KZ_TextFileOpenW(const KZ_WCHAR* path, const KZ_WCHAR* mode, int32_t wide) {
  return kz::text_file_open(path, mode, wide);
}
KZ_API TextFileHandle* KZ_TextFileOpenA(const char* path, const char* mode, int32_t wide) {
  return kz::text_file_open(path, mode, wide);
}
KZ_API void KZ_TextFileClose(TextFileHandle* file) { kz::text_file_close(file); }
KZ_API int32_t KZ_TextFileGetsW(TextFileHandle* file, KZ_WCHAR* out, int32_t size) {
  return kz::gets(file, out, size);
}
KZ_API int32_t KZ_TextFileGetsA(TextFileHandle* file, char* out, int32_t size) {
  return kz::gets(file, out, size);
}
KZ_API int32_t KZ_TextFilePutsW(TextFileHandle* file, const KZ_WCHAR* text) {
  return kz::text_file_puts(file, text);
}
KZ_API int32_t KZ_TextFilePutsA(TextFileHandle* file, const char* text) {
  return kz::text_file_puts(file, text);
}
KZ_API int32_t KZ_TextFileEof(TextFileHandle* file) {
  return kz::os::feof(file->stream) != 0 ? 1 : 0;
}
KZ_API int32_t KZ_TextFileError(TextFileHandle* file) {
  return kz::os::ferror(file->stream) != 0 ? 1 : 0;
}
KZ_API int32_t KZ_TextFileSeek(TextFileHandle* file, int32_t offset, int32_t origin) {
  return kz::os::fseek(file->stream, offset, origin) == 0 ? 1 : 0;
}
KZ_API FILE* KZ_TextFileHandle(TextFileHandle* file) { return file->stream; }

}  // extern "C"
