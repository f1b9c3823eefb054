// kzb status set / get / wait, and the status family's part of the tour.
// A status file lives while some process holds it: the last one to end
// removes it, so a value set here is seen by a process that holds the file
// at the time, such as a running `kzb status wait`.
#include <cstdlib>

#include "kzb.h"

namespace kzb {
namespace {

constexpr uint32_t kForever = 0xFFFFFFFFu;

// Ends the record, waiting for nothing.
bool end(StatusFileHandle* status) { return KZ_StatusEndFile(status, 0) != 0; }

}  // namespace

extern const Command kCommand_status;

int run_status(const Args& args) {
  const std::string what = args.empty() ? "" : args[0];
  const std::size_t operands_needed = what == "get" ? 1 : 2;
  if (what != "set" && what != "get" && what != "wait")
    return usage_error(kCommand_status, "say set, get or wait");
  Args operands;
  std::string directory;
  bool have_directory = false;
  uint32_t timeout = kForever;
  for (std::size_t i = 1; i < args.size(); ++i) {
    const bool valued = args[i] == "--dir" || (what == "wait" && args[i] == "--timeout");
    if (valued) {
      if (i + 1 == args.size())
        return usage_error(kCommand_status, "%s needs a value", args[i].c_str());
      const std::string& value = args[++i];
      if (args[i - 1] == "--dir") {
        directory = value;
        have_directory = true;
        continue;
      }
      char* stop = nullptr;
      const unsigned long long ms = std::strtoull(value.c_str(), &stop, 10);
      if (value.empty() || value[0] == '-' || *stop != '\0' || ms >= kForever)
        return usage_error(kCommand_status, "--timeout takes 0 to 4294967294 ms, not '%s'",
                           value.c_str());
      timeout = static_cast<uint32_t>(ms);
    } else if (args[i].size() > 1 && args[i][0] == '-') {
      return usage_error(kCommand_status, "unknown option '%s'", args[i].c_str());
    } else {
      operands.push_back(args[i]);
    }
  }
  if (operands.size() != operands_needed)
    return usage_error(kCommand_status, "status %s needs %s", what.c_str(),
                       operands_needed == 1 ? "NAME" : "NAME and VALUE");
  const wstring wide_directory = from_utf8(directory);
  StatusFileHandle* status = KZ_StatusCreateFileW(
      from_utf8(operands[0]).c_str(), have_directory ? wide_directory.c_str() : nullptr);
  const int failed_status = what == "wait" ? 2 : kFailed;
  if (status == nullptr)
    return fail(failed_status, "%s: cannot open the status file", operands[0].c_str());

  if (what == "set") {
    const bool set = KZ_StatusSetStringW(status, from_utf8(operands[1]).c_str()) != 0;
    if (!end(status) || !set)
      return fail(kFailed, "%s: the value was not set", operands[0].c_str());
    return kOk;
  }
  if (what == "get") {
    wstring value(4096, 0);
    const bool got =
        KZ_StatusGetStringW(status, value.data(), static_cast<int32_t>(value.size())) != 0;
    if (!end(status) || !got)
      return fail(kFailed, "%s: the value was not read", operands[0].c_str());
    out().print("%s\n", to_utf8(value.c_str()).c_str());
    return finish(kOk);
  }
  const int32_t result = KZ_StatusIsStringWaitW(status, from_utf8(operands[1]).c_str(), timeout);
  end(status);
  if (result == 0) return kOk;
  if (result == 1) return fail(1, "%s: no match within %u ms", operands[0].c_str(), timeout);
  return fail(2, "%s: the wait failed", operands[0].c_str());
}

const Command kCommand_status = {"status",
                                 R"usage(status set|get|wait NAME [VALUE] [--timeout MS] [--dir D]
  Works on the status file NAME in the directory D (default: the variable
  Temp). set writes VALUE, get writes the value held, and wait blocks until
  the value is VALUE: exit 0 on a match, 1 when MS milliseconds (default:
  no limit) passed without one, 2 when the wait failed. The file lives
  while some process holds it, so a set is seen by a running wait.
  Example: kzb status wait job done --timeout 5000 & kzb status set job done
)usage",
                                 run_status};

void tour_status() {
  out().print("\nStatus files\n");
  const wstring name = from_utf8("kzb-tour.status");
  StatusFileHandle* first = KZ_StatusCreateFileW(name.c_str(), nullptr);
  StatusFileHandle* second = KZ_StatusCreateFileW(name.c_str(), nullptr);
  show("KZ_StatusCreateFileW(\"kzb-tour.status\", Temp) twice",
       first && second ? "two records" : "failed");
  if (first && second) {
    show("KZ_StatusSetStringW(first, \"ready\")",
         std::to_string(KZ_StatusSetStringW(first, from_utf8("ready").c_str())));
    KZ_WCHAR value[16] = {};
    const int32_t got = KZ_StatusGetStringW(second, value, 16);
    show("KZ_StatusGetStringW(second)", std::to_string(got) + ", \"" + to_utf8(value) + "\"");
    show("KZ_StatusIsStringWaitW(second, \"ready\", 100 ms)",
         std::to_string(KZ_StatusIsStringWaitW(second, from_utf8("ready").c_str(), 100)));
    show("KZ_StatusIsStringWaitW(second, \"done\", 100 ms)",
         std::to_string(KZ_StatusIsStringWaitW(second, from_utf8("done").c_str(), 100)));
  }
  if (second) KZ_StatusEndFile(second, 0);
  if (first) KZ_StatusEndFile(first, 1);
}

}  // namespace kzb
