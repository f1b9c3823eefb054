// Helpers of the tests that touch the file system, on Linux and under Wine
// alike: a fresh directory under TEMP, library paths of it in either width,
// raw bytes in and out, and the test program run again as a helper process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support.h"

namespace kz::test {

// A fresh directory under TEMP, removed with all it holds at the end.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // The library path of name inside the directory (narrow: code page 932),
  // or of the directory itself for an empty name.
  std::string path(const std::string& name = "") const;
  template <class Ch>
  std::basic_string<Ch> at(const std::string& name = "") const;

 private:
  std::string root_;
};

// The file system's path for a narrow library path.
std::filesystem::path native(const std::string& library_path);

// The wide form of narrow code page 932 text.
wstring widen(const std::string& narrow);
// The narrow form of wide text.
std::string narrow(const wstring& wide);

// Narrow code page 932 text in the width of Ch.
template <class Ch>
std::basic_string<Ch> in(const std::string& narrow_text) {
  if constexpr (sizeof(Ch) == 1) {
    return narrow_text;
  } else {
    return widen(narrow_text);
  }
}

template <class Ch>
std::basic_string<Ch> TempDir::at(const std::string& name) const {
  return in<Ch>(path(name));
}

// Sets or removes an environment variable and puts the old value back at
// the end of its scope.
class ScopedVariable {
 public:
  ScopedVariable(const char* name, const char* value);
  ~ScopedVariable();
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  const char* name_;
  bool had_ = false;
  std::string old_;
};

// Whole files as bytes.
std::string read_bytes(const std::string& library_path);
void write_bytes(const std::string& library_path, const std::string& bytes);

// Runs this test program again with the arguments behind "--kz-helper",
// and waits for it. The helper writes its findings into a file that the
// caller names among the arguments.
void run_helper(const std::vector<std::string>& arguments);
// The same, giving the helper's exit status instead of asserting on it, so
// that it can run on a thread of its own beside other helpers.
int helper_status(const std::vector<std::string>& arguments);
// The helper's side: main hands it the arguments behind "--kz-helper".
// A helper registered under the name of its first argument runs first;
// helper_main takes the rest.
int helper_main(int argc, char** argv);
using HelperFunction = int (*)(int argc, char** argv);
struct RegisterHelper {
  RegisterHelper(const char* name, HelperFunction run);
};
int dispatch_helper(int argc, char** argv);
// Remembered by main for run_helper.
extern std::string program_path;

}  // namespace kz::test
