// The journal: KZ_JournalOut. Each call stamps one line with the local date
// and time, finds its file under the root that KZ_JOURNAL_PATH or else TEMP
// names, makes the file's directory where it is missing, and appends the
// line: open, one line, close. A second writer that finds the file open
// fails its open and loses its line; nothing waits or retries.
#include <initializer_list>

#include "datetime/datetime.h"
#include "frame/memory.h"
#include "paths/dissect.h"
#include "paths/query.h"
#include "textfile/textfile.h"

namespace kz {
namespace {

// The date and time buffers; their layouts never fill them.
constexpr int32_t kStampLimit = 64;
// The formatter writes at most this many elements, terminator included.
constexpr std::size_t kFormatLimit = 1024;

// The journal's root into root: KZ_JOURNAL_PATH, or TEMP where that is unset
// or empty. False when the value does not fit.
template <class Ch>
bool journal_root(Ch (&root)[kPathLimit]) {
  static constexpr auto kJournalPath = literal<Ch>("KZ_JOURNAL_PATH");
  static constexpr auto kTemp = literal<Ch>("TEMP");
  for (const Ch* name : {kJournalPath.text, kTemp.text}) {
    root[0] = 0;
    const os::DWORD n = Text<Ch>::environment(name, root, kPathLimit);
    if (n >= static_cast<os::DWORD>(kPathLimit)) return false;
    if (root[0] != 0) return true;
  }
  return true;  // neither: the empty root, so the file lies on the drive's root
}

template <class Ch>
int32_t journal_out(const Ch* file_name, const Ch* message, uint32_t line_size, int32_t wide,
                    Ch delimiter) {
  static constexpr auto kBackslash = literal<Ch>("\\");
  static constexpr auto kAppend = literal<Ch>("a");
  static constexpr auto kLayout = literal<Ch>("%s %s > %s");
  Ch date[kStampLimit];
  Ch time[kStampLimit];
  // Two readings: at the stroke of midnight the old date can stand beside
  // the new day's time. Kept so.
  datetime::current_date_string(date, delimiter);
  datetime::current_time_string(time);

  Ch root[kPathLimit];
  Ch target[kPathLimit];
  Ch directory[kPathLimit];
  if (!journal_root(root) || Text<Ch>::copy(target, kPathLimit, root) != 0 ||
      Text<Ch>::append(target, kPathLimit, kBackslash.text) != 0 ||
      Text<Ch>::append(target, kPathLimit, file_name) != 0)
    return 0;
  if (directory_name(target, directory, kPathLimit) > 0 && check_directory(directory) == 0)
    create_directory(directory);

  TextFileHandle* file = text_file_open(target, kAppend.text, wide);
  if (file == nullptr) return 0;
  // The formatter takes no bound, so a line buffer too small for what it
  // would write is refused before it runs.
  std::size_t needed = length(date) + 1 + length(time) + 3 + length(message) + 1;
  if (needed > kFormatLimit) needed = kFormatLimit;
  int32_t result = 0;
  if (line_size >= needed) {
    Scratch<Ch> line(line_size);
    if (line) {
      Text<Ch>::format(line.get(), kLayout.text, date, time, message);
      result = text_file_puts(file, line.get());
    }
  }
  // The line is still in the stream's buffer until the close writes it.
  return text_file_close(file) ? result : 0;
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API int32_t KZ_JournalOutW(const KZ_WCHAR* file_name, const KZ_WCHAR* message,
                              uint32_t line_size, int32_t wide, KZ_WCHAR delimiter) {
  return kz::journal_out(file_name, message, line_size, wide, delimiter);
}
KZ_API int32_t KZ_JournalOutA(const char* file_name, const char* message, uint32_t line_size,
                              int32_t wide, char delimiter) {
  return kz::journal_out(file_name, message, line_size, wide, delimiter);
}

}  // extern "C"
