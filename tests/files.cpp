#include "files.h"

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>

#include "platform/platform.h"

namespace kz::test {

std::string program_path;

wstring widen(const std::string& narrow) {
  std::vector<wchar> wide(narrow.size() + 1);
  KZ_SJIS2UNICODE(narrow.c_str(), wide.data(), static_cast<int32_t>(wide.size()));
  return wide.data();
}

std::string narrow(const wstring& wide) {
  std::vector<char> out(2 * wide.size() + 1);
  KZ_UNICODE2SJIS(wide.c_str(), out.data(), static_cast<int32_t>(out.size()));
  return out.data();
}

std::filesystem::path native(const std::string& library_path) {
  wstring wide = widen(library_path);
  for (auto& unit : wide)
    if (unit == wchar('\\')) unit = wchar('/');
  return std::filesystem::path(wide);
}

TempDir::TempDir() {
  static std::atomic<int> serial{0};
  char temp[260] = {};
  kz::os::GetEnvironmentVariableA("TEMP", temp, sizeof temp);
  const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
  // The suite's name tells the twins of a typed test apart (its "/" made
  // "-"), and the clock the processes that ctest runs at once, which share
  // rand's sequence.
  std::string name = "helper";
  if (test != nullptr) name = std::string(test->test_suite_name()) + "-" + test->name();
  for (char& c : name)
    if (c == '/') c = '-';
  const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
  root_ = std::string(temp) + "\\kz-" + name + "-" + std::to_string(now % 1000000007) + "-" +
          std::to_string(serial++);
  std::filesystem::remove_all(native(root_));
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
  std::ofstream out(native(library_path), std::ios::binary | std::ios::trunc);
  out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

namespace {

struct Registered {
  const char* name;
  HelperFunction run;
};

std::vector<Registered>& registry() {
  static std::vector<Registered> helpers;
  return helpers;
}

}  // namespace

RegisterHelper::RegisterHelper(const char* name, HelperFunction run) {
  registry().push_back({name, run});
}

int dispatch_helper(int argc, char** argv) {
  if (argc >= 1)
    for (const Registered& helper : registry())
      if (std::strcmp(helper.name, argv[0]) == 0) return helper.run(argc, argv);
  return helper_main(argc, argv);
}

int helper_status(const std::vector<std::string>& arguments) {
  // Double quotes keep the backslashes of library paths for both shells.
  std::string command = "\"" + program_path + "\" --kz-helper";
  for (const auto& argument : arguments) command += " \"" + argument + "\"";
  // cmd.exe (Windows, where wchar_t has 16 bits) drops the first and the
  // last quote of a command that holds more than two: one more pair keeps
  // the rest.
  if (sizeof(wchar_t) == 2) command = "\"" + command + "\"";
  std::fflush(nullptr);
  return std::system(command.c_str());
}

void run_helper(const std::vector<std::string>& arguments) {
  ASSERT_EQ(helper_status(arguments), 0);
}

}  // namespace kz::test
