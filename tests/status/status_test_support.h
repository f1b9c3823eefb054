// What the status tests share: a record ended at the end of a scope, and a
// clock for waits.
#pragma once

#include <chrono>
#include <memory>
#include <string>

#include "files.h"

namespace kz::test {

// A status record ended (without waiting) when the scope ends.
struct EndStatus {
  void operator()(StatusFileHandle* status) const { KZ_StatusEndFile(status, 0); }
};
using HeldStatus = std::unique_ptr<StatusFileHandle, EndStatus>;

inline long long elapsed_ms(std::chrono::steady_clock::time_point since) {
  const auto elapsed = std::chrono::steady_clock::now() - since;
  return std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count();
}

}  // namespace kz::test
