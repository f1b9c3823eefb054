// The tool's operating system side on POSIX systems: plain file
// descriptors, and arguments that are already UTF-8.
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <string.h>
#include <unistd.h>

#include "kzb.h"

namespace kzb::os {

void setup_streams() {
  // A closed pipe shows as a failed write (EPIPE), which ends the tool
  // quietly, instead of as a signal.
  signal(SIGPIPE, SIG_IGN);
}

int open_input(const std::string& name, std::string& error) {
  if (name == "-") return STDIN_FILENO;
  const int handle = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
  if (handle < 0) error = strerror(errno);
  return handle;
}

void close_input(int handle) {
  if (handle != STDIN_FILENO) ::close(handle);
}

long read(int handle, void* buffer, std::size_t size, std::string& error) {
  for (;;) {
    const ssize_t got = ::read(handle, buffer, size);
    if (got >= 0) return static_cast<long>(got);
    if (errno == EINTR) continue;
    error = strerror(errno);
    return -1;
  }
}

int write_output(const char* data, std::size_t size, std::string& error) {
  while (size > 0) {
    const ssize_t put = ::write(STDOUT_FILENO, data, size);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0 && errno == EPIPE) return 1;
    if (put <= 0) {
      error = strerror(put < 0 ? errno : EIO);
      return -1;
    }
    data += put;
    size -= static_cast<std::size_t>(put);
  }
  return 0;
}

}  // namespace kzb::os

int main(int argc, char** argv) {
  kzb::os::setup_streams();
  return kzb::main_utf8(kzb::Args(argv + 1, argv + argc));
}
