// Starts the test program again as a child (Windows): the arguments are
// quoted into one command line by the platform's published rule, and the
// child's split of it is the real one.
#include <windows.h>

#include "support.h"

namespace kz::test {

std::intptr_t start_this_program(const std::vector<std::string>& arguments) {
  wchar_t program[MAX_PATH];
  if (GetModuleFileNameW(nullptr, program, MAX_PATH) == 0) return -1;
  std::wstring line = L"\"" + std::wstring(program) + L"\"";
  // An argument is quoted where it holds a blank, a tab or a quote, or is
  // empty: backslashes are doubled before a quote and before the closing one.
  for (const std::string& argument : arguments) {
    const wstring wide = utf16(argument);
    const bool quote = wide.empty() || wide.find_first_of(L" \t\"") != wstring::npos;
    line += quote ? L" \"" : L" ";
    std::size_t backslashes = 0;
    for (wchar_t c : wide) {
      // n backslashes stand already: n + 1 more make 2n + 1 before a quote.
      if (quote && c == L'"') line.append(backslashes + 1, L'\\');
      backslashes = c == L'\\' ? backslashes + 1 : 0;
      line.push_back(c);
    }
    if (quote) line.append(backslashes, L'\\').push_back(L'"');
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

}  // namespace kz::test
