#include "files.h"

#include <atomic>
#include <chrono>
#include <fstream>
#include <iterator>
#include <map>

#include "platform/platform.h"

namespace kz::test {

wstring widen(const std::string& narrow) {
  std::vector<wchar> wide(narrow.size() + 1);
  kz::os::MultiByteToWideChar(kz::os::kAnsiCodePage, 0, narrow.c_str(), -1, wide.data(),
                              static_cast<int>(wide.size()));
  return wide.data();
}

std::string narrow(const wstring& wide) {
  std::vector<char> out(2 * wide.size() + 1);
  kz::os::WideCharToMultiByte(kz::os::kAnsiCodePage, 0, wide.c_str(), -1, out.data(),
                              static_cast<int>(out.size()), nullptr, nullptr);
  return out.data();
}

std::filesystem::path native(const std::string& library_path) {
  wstring wide = widen(library_path);
  std::replace(wide.begin(), wide.end(), wchar('\\'), wchar('/'));
  return std::filesystem::path(wide);
}

wstring module_path() {
  std::vector<wchar> path(32768);
  return wstring(path.data(), kz::os::GetModuleFileNameW(nullptr, path.data(), 32768));
}

// Processes that ctest runs at once share rand's sequence, so the clock and
// a count make the name.
TempDir::TempDir() {
  static std::atomic<int> serial{0};
  char temp[260] = {};
  kz::os::GetEnvironmentVariableA("TEMP", temp, sizeof temp);
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  root_ = std::string(temp) + "\\kz-test-" + std::to_string(now) + "-" + std::to_string(serial++);
  std::filesystem::create_directories(native(root_));
}

TempDir::~TempDir() {
  std::error_code ignored;
  std::filesystem::remove_all(native(root_), ignored);
}

std::string TempDir::path(const std::string& name) const {
  return name.empty() ? root_ : root_ + "\\" + name;
}

ScopedVariable::ScopedVariable(const char* name, const char* value) : name_(name) {
  char old[1024];
  const auto n = kz::os::GetEnvironmentVariableA(name, old, sizeof old);
  had_ = n > 0 && n < sizeof old;
  if (had_) old_ = old;
  kz::os::SetEnvironmentVariableA(name, value);
}

ScopedVariable::~ScopedVariable() {
  kz::os::SetEnvironmentVariableA(name_, had_ ? old_.c_str() : nullptr);
}

std::string read_bytes(const std::string& library_path) {
  std::ifstream in(native(library_path), std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void write_bytes(const std::string& library_path, const std::string& bytes) {
  std::ofstream(native(library_path), std::ios::binary | std::ios::trunc) << bytes;
}

// The helpers by name, in a function's static: registrations run before main.
static std::map<std::string, HelperFunction>& helpers() {
  static std::map<std::string, HelperFunction> registered;
  return registered;
}

RegisterHelper::RegisterHelper(const char* name, HelperFunction run) { helpers()[name] = run; }

int dispatch_helper(int argc, char** argv) {
  const auto found = argc >= 1 ? helpers().find(argv[0]) : helpers().end();
  return found == helpers().end() ? 2 : found->second(argc, argv);
}

int run_this_program(const std::vector<std::string>& arguments) {
  return wait_for(start_this_program(arguments));
}

int helper_status(const std::vector<std::string>& arguments) {
  std::vector<std::string> line{"--kz-helper"};
  line.insert(line.end(), arguments.begin(), arguments.end());
  return run_this_program(line);
}

}  // namespace kz::test
