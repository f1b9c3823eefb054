// Starts the test program again as a child (Windows): the arguments are
// quoted into one command line by the platform's published rule, and the
// child's split of it is the real one.
#include <windows.h>

#include "support.h"

namespace kz::test {
namespace {

// Quoted where it holds a blank, a tab or a quote, or is empty: backslashes
// are doubled before a quote and before the closing one.
std::wstring quoted(const std::wstring& argument) {
  if (!argument.empty() && argument.find_first_of(L" \t\"") == std::wstring::npos) return argument;
  std::wstring out = L"\"";
  std::size_t backslashes = 0;
  for (wchar_t c : argument) {
    if (c == L'\\') {
      ++backslashes;
      continue;
    }
    out.append(c == L'"' ? 2 * backslashes + 1 : backslashes, L'\\');
    backslashes = 0;
    out.push_back(c);
  }
  out.append(2 * backslashes, L'\\');
  return out + L"\"";
}

}  // namespace

std::intptr_t start_this_program(const std::vector<std::string>& arguments) {
  wchar_t program[MAX_PATH];
  if (GetModuleFileNameW(nullptr, program, MAX_PATH) == 0) return -1;
  std::wstring line = L"\"";
  line += program;
  line += L'"';
  for (const std::string& argument : arguments) {
    const wstring wide = utf16(argument);
    line += L' ';
    line += quoted(std::wstring(wide.begin(), wide.end()));
  }
  STARTUPINFOW startup = {};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process = {};
  if (!CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup,
                      &process))
    return -1;
  CloseHandle(process.hThread);
  return reinterpret_cast<std::intptr_t>(process.hProcess);
}

// A process ended by kill_program exits with this status, as a shell
// reports one ended by SIGKILL.
constexpr UINT kKilled = 128 + 9;

int wait_for(std::intptr_t child) {
  if (child == -1) return -1;
  const auto process = reinterpret_cast<HANDLE>(child);
  WaitForSingleObject(process, INFINITE);
  DWORD status = 1;
  GetExitCodeProcess(process, &status);
  CloseHandle(process);
  return status == kKilled ? -1 : static_cast<int>(status);
}

void kill_program(std::intptr_t child) {
  TerminateProcess(reinterpret_cast<HANDLE>(child), kKilled);
}

int run_this_program(const std::vector<std::string>& arguments) {
  return wait_for(start_this_program(arguments));
}

}  // namespace kz::test
