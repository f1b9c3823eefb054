// Starts the test program again as a child (POSIX): the arguments go to it
// as they are, and the child's line is what the platform layer rebuilds.
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>

#include <filesystem>

#include "support.h"

extern char** environ;

namespace kz::test {

std::intptr_t start_this_program(const std::vector<std::string>& arguments) {
  std::string program = std::filesystem::read_symlink("/proc/self/exe");
  std::vector<char*> argv{program.data()};
  std::vector<std::string> copies(arguments);
  for (std::string& argument : copies) argv.push_back(argument.data());
  argv.push_back(nullptr);
  pid_t child = 0;
  if (::posix_spawn(&child, program.c_str(), nullptr, nullptr, argv.data(), environ) != 0)
    return -1;
  return child;
}

int wait_for(std::intptr_t child) {
  int status = 0;
  if (child < 0 || ::waitpid(static_cast<pid_t>(child), &status, 0) != child) return -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void kill_program(std::intptr_t child) { ::kill(static_cast<pid_t>(child), SIGKILL); }

}  // namespace kz::test
