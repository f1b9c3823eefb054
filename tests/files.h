// Helpers of the tests that touch the file system or other processes, on
// Linux and under Wine alike: a fresh directory under TEMP, library paths of
// it in either width, raw bytes in and out, and the test program run again
// as a helper process.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "support.h"

namespace kz::test {

// Code page 932 text as wide text, and back, by the platform's conversion.
wstring widen(const std::string& narrow);
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

// A fresh directory under TEMP, removed with all it holds at the end.
class TempDir {
 public:
  TempDir();
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  // The library path of name inside the directory (narrow: code page 932),
  // or of the directory itself for an empty name; `at` in the width of Ch.
  std::string path(const std::string& name = "") const;
  template <class Ch>
  std::basic_string<Ch> at(const std::string& name = "") const {
    return in<Ch>(path(name));
  }

 private:
  std::string root_;
};

// The file system's path for a narrow library path.
std::filesystem::path native(const std::string& library_path);

// The running program's full path, as the platform gives it.
wstring module_path();

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

// Runs this test program again as "--kz-helper NAME ARGUMENTS...", waits for
// it and gives its exit status. Main hands what follows "--kz-helper" to
// dispatch_helper, which runs the helper registered under NAME; helpers
// write their findings into files named among their arguments.
int helper_status(const std::vector<std::string>& arguments);
using HelperFunction = int (*)(int argc, char** argv);
struct RegisterHelper {
  RegisterHelper(const char* name, HelperFunction run);
};
int dispatch_helper(int argc, char** argv);

}  // namespace kz::test
