// Messages, standard output and the input blocks, over the operating
// system's side in os_<platform>.cpp.
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

#include "platform/utf8.h"
#include "kzb.h"

namespace kzb {
namespace {

// Output is handed to the system in pieces of about this size.
constexpr std::size_t kOutputChunk = 64 * 1024;

}  // namespace

int fail(int status, const char* format, ...) {
  char text[1024];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  std::fprintf(stderr, "kzb: %s\n", text);
  return status;
}

wstring from_utf8(std::string_view utf8) { return kz::utf8::to_utf16<KZ_WCHAR>(utf8); }

std::string to_utf8(const wstring& wide) {
  return kz::utf8::from_utf16<KZ_WCHAR>(std::basic_string_view<KZ_WCHAR>(wide));
}

Output& out() {
  static Output output;
  return output;
}

bool Output::write(std::string_view bytes) {
  if (failed_) return false;
  if (buffer_.size() + bytes.size() < kOutputChunk) {
    buffer_.append(bytes);
    return true;
  }
  // A large piece goes to the system as it is, behind what was buffered.
  return flush() && hand_over(bytes.data(), bytes.size());
}

bool Output::print(const char* format, ...) {
  char text[1024];
  va_list args;
  va_start(args, format);
  const int length = std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  return write(
      std::string_view(text, length < 0 ? 0 : std::min<std::size_t>(length, sizeof text - 1)));
}

bool Output::flush() {
  if (failed_) return false;
  const bool done = hand_over(buffer_.data(), buffer_.size());
  buffer_.clear();
  return done;
}

bool Output::hand_over(const char* data, std::size_t size) {
  if (failed_) return false;
  std::string error;
  const int status = os::write_output(data, size, error);
  if (status == 0) return true;
  failed_ = true;
  if (status < 0) fail(kFailed, "standard output: %s", error.c_str());
  return false;
}

int finish(int status) {
  const bool written = out().flush();
  return written || status != kOk ? status : kFailed;
}

std::size_t block_size() {
  const char* setting = std::getenv("KZB_BLOCK_SIZE");
  const long size = setting ? std::atol(setting) : 0;
  return size >= 4 ? static_cast<std::size_t>(size) : 64 * 1024;
}

void show(const char* call, const std::string& result) {
  out().print("  %-58s -> ", call);
  out().write(result);
  out().put('\n');
}

}  // namespace kzb
