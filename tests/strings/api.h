// The string toolkit's exports by element type, so one typed test runs a
// table of cases through both twins.
#pragma once

#include "support.h"

namespace kz::test {

template <class Ch>
struct Strings;

#define KZ_TWIN(name, suffix)          \
  template <class... Args>             \
  static auto name(Args... args) {     \
    return KZ_##name##suffix(args...); \
  }

#define KZ_STRING_TWINS(suffix)       \
  KZ_TWIN(StringCopyEx, suffix)       \
  KZ_TWIN(StringCopyExAfter, suffix)  \
  KZ_TWIN(GetCodeCount, suffix)       \
  KZ_TWIN(GetCodeLength, suffix)      \
  KZ_TWIN(StringSplit, suffix)        \
  KZ_TWIN(StringCSV, suffix)          \
  KZ_TWIN(DeleteStrList, suffix)      \
  KZ_TWIN(StringTrimLeft, suffix)     \
  KZ_TWIN(StringTrimRight, suffix)    \
  KZ_TWIN(StringTrim, suffix)         \
  KZ_TWIN(StringZeroSuppress, suffix) \
  KZ_TWIN(StringLengthCopy, suffix)   \
  KZ_TWIN(StringGetQuoted, suffix)    \
  KZ_TWIN(SetDoublequote, suffix)     \
  KZ_TWIN(DelDoublequote, suffix)     \
  KZ_TWIN(StringPassword, suffix)

template <>
struct Strings<char> {
  KZ_STRING_TWINS(A)
};

template <>
struct Strings<wchar> {
  KZ_STRING_TWINS(W)
};

#undef KZ_STRING_TWINS
#undef KZ_TWIN

}  // namespace kz::test
