// Cutting a command string into the command and the rest of the line:
// KZ_SplitArg. It looks only for a double quote and a blank and keeps the
// arguments as one piece, quotes included, all in fixed buffers of 260
// elements. The narrow twin scans through the narrow copy, which never
// takes a blank or a quote for half of a double-byte character.
#include "cmdline/cmdline.h"
#include "strings/scan.h"

namespace kz {
namespace {

template <class Ch>
void split_arg(const Ch* text, Ch* command, Ch* arguments) {
  if (command != nullptr) command[0] = 0;
  if (arguments != nullptr) arguments[0] = 0;
  Ch work[kWorkLimit];
  // A text beyond the limit leaves both outputs empty.
  if (text == nullptr || Text<Ch>::copy(work, kWorkLimit, text) != 0) return;
  Ch command_part[kWorkLimit] = {};
  Ch argument_part[kWorkLimit] = {};
  const auto quote = static_cast<Ch>(kDoubleQuote);
  int32_t behind;  // the position behind the command
  // Any double quote in the text selects the quoted rule, which takes the
  // first element for the opening quote without looking at it: a text that
  // holds a quote further on loses its first element. Intended; a command
  // string either begins with its quoted command or holds no quote at all.
  if (code_count(work, quote) > 0) {
    behind = copy_until(command_part, work + 1, quote, kWorkLimit, false) + 2;
  } else {
    behind = copy_until(command_part, work, static_cast<Ch>(' '), kWorkLimit, false);
  }
  // The element at `behind` is passed over whatever it is: the blank, or
  // the first element behind a closing quote.
  if (static_cast<int32_t>(length(work)) > behind)
    Text<Ch>::copy(argument_part, kWorkLimit, work + behind + 1);
  if (command != nullptr && command_part[0] != 0) Text<Ch>::copy(command, kWorkLimit, command_part);
  if (arguments != nullptr && argument_part[0] != 0)
    Text<Ch>::copy(arguments, kWorkLimit, argument_part);
}

}  // namespace
}  // namespace kz

extern "C" {

KZ_API void KZ_SplitArgW(const KZ_WCHAR* text, KZ_WCHAR* command, KZ_WCHAR* arguments) {
  kz::split_arg(text, command, arguments);
}
KZ_API void KZ_SplitArgA(const char* text, char* command, char* arguments) {
  kz::split_arg(text, command, arguments);
}

}  // extern "C"
