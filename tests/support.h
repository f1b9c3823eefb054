// Shared helpers of the unit tests.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "frame/memory.h"
#include "kz_basis.h"

namespace kz::test {

using wchar = KZ_WCHAR;
using wstring = std::basic_string<wchar>;

// Widens each byte of an ASCII or byte literal to the element type, so one
// table of cases can run through both twins.
template <class Ch>
std::basic_string<Ch> text(const std::string& bytes) {
  std::basic_string<Ch> out;
  for (unsigned char c : bytes) out.push_back(static_cast<Ch>(c));
  return out;
}

// The UTF-16 form of a UTF-8 literal, for wide cases outside ASCII.
wstring utf16(const std::string& utf8);
// The UTF-8 form of wide text, for readable failure messages.
std::string utf8(const wstring& wide);

// A buffer prefilled with a sentinel, so that a write out of bounds or a
// missing terminator shows.
template <class Ch>
std::vector<Ch> sentinel_buffer(std::size_t size, Ch sentinel = static_cast<Ch>(0x7B)) {
  return std::vector<Ch>(size, sentinel);
}

// The text in a buffer, up to its terminator.
template <class Ch>
std::basic_string<Ch> str(const std::vector<Ch>& buffer) {
  return buffer.data();
}

// Whether every element from `from` on still holds the sentinel: nothing
// was written at or behind a size bound.
template <class Ch>
::testing::AssertionResult untouched_from(const std::vector<Ch>& buffer, std::size_t from,
                                          Ch sentinel = static_cast<Ch>(0x7B)) {
  for (std::size_t i = from; i < buffer.size(); ++i)
    if (buffer[i] != sentinel) return ::testing::AssertionFailure() << "written at " << i;
  return ::testing::AssertionSuccess();
}

// A calendar record, and a moment as one count of ticks and back.
SYSTEMTIME system_time(int year, int month, int day, int hour = 0, int minute = 0, int second = 0,
                       int ms = 0);
std::int64_t ticks(const FILETIME& moment);
FILETIME moment(std::int64_t ticks);

// Runs `body` with the allocator failing once at the n-th allocation, for
// n = 1, 2, ... until a run makes no n-th allocation; then once more with
// every allocation from the n-th on failing. `body` gets true when it ran
// with a failure armed that actually hit.
template <class Body>
void for_each_allocation_failure(Body body) {
  for (bool persistent : {false, true}) {
    for (long nth = 1;; ++nth) {
      kz::alloc_faults::arm(nth, persistent);
      body();
      const bool reached = kz::alloc_faults::attempts() >= nth;
      kz::alloc_faults::disarm();
      if (!reached) break;
    }
  }
}

// Rows of a table that hold for one twin only: double-byte characters are
// the narrow twin's alone, and some size rules differ by twin.
enum class Only { kBoth, kNarrow, kWide };
template <class Ch>
bool runs(Only only) {
  return only == Only::kBoth || (only == Only::kNarrow) == (sizeof(Ch) == 1);
}

// Starts this test program again with the given UTF-8 arguments behind its
// path, waits for it, and gives its exit status (-1 when it did not run).
int run_this_program(const std::vector<std::string>& arguments);

// Element types of the typed tests: every case runs in both encodings.
using ElementTypes = ::testing::Types<char, wchar>;

}  // namespace kz::test
