// kzb path, and the path family's part of the tour.
#include "kzb.h"

namespace kzb {
namespace {

// The four parts of a path, each buffer as large as the split call needs.
struct PathParts {
  KZ_WCHAR drive[3] = {};
  KZ_WCHAR directory[260] = {};
  KZ_WCHAR name[260] = {};
  KZ_WCHAR extension[260] = {};
};

PathParts split(const wstring& path) {
  PathParts parts;
  KZ_SplitPathW(path.c_str(), parts.drive, parts.directory, parts.name, parts.extension);
  return parts;
}

}  // namespace

extern const Command kCommand_path;

int run_path(const Args& args) {
  if (args.size() != 1) return usage_error(kCommand_path, "one PATH needed");
  const wstring path = from_utf8(args[0]);
  // The split has room for 259 elements a part; a longer path could
  // overrun it, so it is refused here.
  if (path.empty() || path.size() >= 260)
    return usage_error(kCommand_path, "PATH must have 1 to 259 characters, not %u",
                       static_cast<unsigned>(path.size()));
  const PathParts parts = split(path);
  out().print("drive: %s\n", to_utf8(parts.drive).c_str());
  out().print("directory: %s\n", to_utf8(parts.directory).c_str());
  out().print("name: %s\n", to_utf8(parts.name).c_str());
  out().print("extension: %s\n", to_utf8(parts.extension).c_str());
  return finish(kOk);
}

const Command kCommand_path = {"path", R"usage(path PATH
  Takes PATH apart as text (nothing is looked up on disk) and writes its
  drive, directory, name and extension, one labelled line each. PATH is
  taken as a full path: the drive is always its first two characters.
  Example: kzb path 'C:\logs\app.2024.txt'
)usage",
                               run_path};

void tour_paths() {
  out().print("\nPaths\n");
  for (const char* path : {"C:\\logs\\app.2024.txt", "data\\.profile"}) {
    const PathParts parts = split(from_utf8(path));
    // Built by appending: GCC 12 warns wrongly (-Wrestrict) about "x" + text.
    std::string call = "KZ_SplitPathW(\"";
    call.append(path).append("\")");
    std::string result;
    for (const KZ_WCHAR* part : {parts.drive, parts.directory, parts.name, parts.extension})
      result.append(result.empty() ? "\"" : " \"").append(to_utf8(part)).append("\"");
    show(call.c_str(), result);
  }
  show("KZ_GetDriveNumberW(\"c:\\\\x\")",
       std::to_string(KZ_GetDriveNumberW(from_utf8("c:\\x").c_str())));
}

}  // namespace kzb
