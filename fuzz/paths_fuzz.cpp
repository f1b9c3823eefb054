// Drives path dissection through both twins with arbitrary paths and
// sizes. Every buffer is a heap block of exactly the size the library is
// told (SplitPath's of its fixed sizes), so AddressSanitizer catches any
// access behind it; the results are checked against the buffers and the
// pieces against the path.
//
// Input: a size byte, then the path (narrow: the bytes up to the first NUL;
// wide: the bytes in pairs).
#include "fuzz_support.h"

template <class Ch>
void drive(const std::basic_string<Ch>& text, int32_t size) {
  using Api = Twin<Ch>;
  const std::vector<Ch> path = exact(text);
  const auto n = static_cast<int32_t>(text.size());
  check(Api::GetDriveNumber(path.data()) == -1 || (n >= 2 && path[1] == Ch(':')));

  // Each result fits its buffer: a length below size that matches the text,
  // or -1, and no piece is longer than the path. With room for the whole
  // path, only the drive and the extension may fail on a path that is there.
  for (int32_t room : {size, n + 1}) {
    if (room < 1) continue;
    std::vector<Ch> out(static_cast<std::size_t>(room));
    const bool whole = room == n + 1 && n > 0;
    const auto fits = [&](int32_t result, bool must) {
      check(result >= (must ? 0 : -1) && result < room && result <= n);
      if (result >= 0) check(length(out.data()) == static_cast<std::size_t>(result));
    };
    fits(Api::GetDriveName(path.data(), out.data(), room), false);
    fits(Api::GetFileExt(path.data(), out.data(), room), false);
    fits(Api::GetDirectoryName(path.data(), out.data(), room), whole);
    fits(Api::GetFileName(path.data(), out.data(), room), whole);
    fits(Api::GetNotExtPath(path.data(), out.data(), room), whole);
  }

  std::vector<Ch> drive_part(3), directory(260), name(260), extension(260);
  Api::SplitPath(path.data(), drive_part.data(), directory.data(), name.data(), extension.data());
  const std::size_t pieces = length(drive_part.data()) + length(directory.data()) +
                             length(name.data()) + length(extension.data());
  check(pieces <= text.size() && (pieces == 0 || pieces + 2 >= text.size()));
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 1) return 0;
  const int32_t room = static_cast<int32_t>(data[0]) - 1;
  both_twins(data, size, 1, [&](const auto& text) { drive(text, room); });
  return 0;
}
