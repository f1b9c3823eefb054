// The tool's operating system side on Windows: standard streams in binary
// mode (no end at 0x1A, no CR added before LF), arguments read as wide text
// and passed on as UTF-8, and UTF-8 on the console.
#include <errno.h>
#include <fcntl.h>
#include <io.h>
#include <stdlib.h>
#include <string.h>
#include <windows.h>

#include "platform/utf8.h"
#include "kzb.h"

namespace kzb::os {
namespace {

UINT console_code_page = 0;

void restore_console() {
  if (console_code_page != 0) SetConsoleOutputCP(console_code_page);
}

// The system's text for an error code, as UTF-8 on one line.
std::string system_message(DWORD code) {
  wchar_t* text = nullptr;
  const DWORD length = FormatMessageW(
      FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
      nullptr, code, 0, reinterpret_cast<wchar_t*>(&text), 0, nullptr);
  std::string message = length ? kz::utf8::from_utf16<wchar_t>(std::wstring_view(text, length))
                               : "error " + std::to_string(code);
  if (text) LocalFree(text);
  while (!message.empty() && (message.back() == '\n' || message.back() == '\r' ||
                              message.back() == ' ' || message.back() == '.'))
    message.pop_back();
  return message;
}

}  // namespace

void setup_streams() {
  _setmode(0, _O_BINARY);
  _setmode(1, _O_BINARY);
  _setmode(2, _O_BINARY);
  console_code_page = GetConsoleOutputCP();
  if (console_code_page != 0 && console_code_page != CP_UTF8) {
    SetConsoleOutputCP(CP_UTF8);
    atexit(restore_console);
  }
}

int open_input(const std::string& name, std::string& error) {
  if (name == "-") return 0;
  const std::wstring path = kz::utf8::to_utf16<wchar_t>(name);
  const int handle = _wopen(path.c_str(), _O_RDONLY | _O_BINARY);
  if (handle < 0) error = strerror(errno);
  return handle;
}

void close_input(int handle) {
  if (handle != 0) _close(handle);
}

long read(int handle, void* buffer, std::size_t size, std::string& error) {
  const int got = _read(handle, buffer, static_cast<unsigned>(size));
  if (got < 0) error = strerror(errno);
  return got;
}

int write_output(const char* data, std::size_t size, std::string& error) {
  const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
  while (size > 0) {
    const DWORD chunk = size > (1u << 30) ? 1u << 30 : static_cast<DWORD>(size);
    DWORD put = 0;
    if (!WriteFile(output, data, chunk, &put, nullptr) || put == 0) {
      const DWORD code = GetLastError();
      if (code == ERROR_BROKEN_PIPE || code == ERROR_NO_DATA || code == ERROR_PIPE_NOT_CONNECTED)
        return 1;  // the reader has gone
      error = system_message(code);
      return -1;
    }
    data += put;
    size -= put;
  }
  return 0;
}

}  // namespace kzb::os

int wmain(int argc, wchar_t** argv) {
  kzb::os::setup_streams();
  kzb::Args args;
  for (int i = 1; i < argc; ++i) args.push_back(kz::utf8::from_utf16<wchar_t>(argv[i]));
  return kzb::main_utf8(args);
}
