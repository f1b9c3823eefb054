// What the status tests share: a record ended at the end of a scope, the
// narrow bytes of a value in either width, and a clock for waits.
#pragma once

#include <chrono>
#include <string>

#include "files.h"
#include "twins.h"

namespace kz::test {

// A status record ended (without waiting) when the scope ends.
class HeldStatus {
 public:
  explicit HeldStatus(StatusFileHandle* status) : status_(status) {}
  ~HeldStatus() { KZ_StatusEndFile(status_, 0); }
  HeldStatus(const HeldStatus&) = delete;
  HeldStatus& operator=(const HeldStatus&) = delete;
  StatusFileHandle* get() const { return status_; }

 private:
  StatusFileHandle* status_;
};

// Narrow code page 932 text in the element type: as it stands, or widened.
template <class Ch>
std::basic_string<Ch> in_width(const std::string& narrow) {
  if constexpr (sizeof(Ch) == 1)
    return narrow;
  else
    return widen(narrow);
}

// Opens name in the directory through the twin of Ch.
template <class Ch>
StatusFileHandle* open_status(const TempDir& dir, const std::string& name) {
  return Twin<Ch>::StatusCreateFile(in_width<Ch>(name).c_str(), dir.at<Ch>().c_str());
}

inline long long elapsed_ms(std::chrono::steady_clock::time_point since) {
  return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() -
                                                               since)
      .count();
}

}  // namespace kz::test
