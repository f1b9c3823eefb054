// Shared helpers of the unit tests.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "frame/memory.h"
#include "kz_basis.h"
#include "platform/filetime.h"
#include "platform/utf8.h"
#include "twins.h"

namespace kz::test {

using wstring = std::basic_string<wchar>;

// Element types of the typed tests: every case runs in both encodings.
using ElementTypes = ::testing::Types<char, wchar>;
#define KZ_TWIN_SUITE(name)               \
  template <class Ch>                     \
  class name : public ::testing::Test {}; \
  TYPED_TEST_SUITE(name, ::kz::test::ElementTypes)

// Widens each byte of an ASCII or byte literal to the element type, so one
// table of cases can run through both twins.
template <class Ch>
std::basic_string<Ch> text(const std::string& bytes) {
  const auto* first = reinterpret_cast<const unsigned char*>(bytes.data());
  return std::basic_string<Ch>(first, first + bytes.size());
}

// The UTF-16 form of a UTF-8 literal, for wide cases outside ASCII.
inline wstring utf16(const std::string& utf8) { return kz::utf8::to_utf16<wchar>(utf8); }
// The UTF-8 form of wide text, for readable failure messages.
inline std::string utf8(const wstring& wide) { return kz::utf8::from_utf16<wchar>(wide); }

// What every out-buffer holds before a call, so that a write out of bounds
// or a missing terminator shows.
template <class Ch>
inline constexpr Ch kSentinel = static_cast<Ch>(sizeof(Ch) == 1 ? 0x7B : 0x7B7B);

template <class Ch>
std::vector<Ch> sentinel_buffer(std::size_t size) {
  return std::vector<Ch>(size, kSentinel<Ch>);
}

// The text in a buffer, up to its terminator.
template <class Ch>
std::basic_string<Ch> str(const std::vector<Ch>& buffer) {
  return buffer.data();
}

// Whether every element from `from` on still holds the sentinel: nothing
// was written at or behind a size bound.
template <class Ch>
::testing::AssertionResult untouched_from(const std::vector<Ch>& buffer, std::size_t from) {
  for (std::size_t i = from; i < buffer.size(); ++i)
    if (buffer[i] != kSentinel<Ch>) return ::testing::AssertionFailure() << "written at " << i;
  return ::testing::AssertionSuccess();
}

// Whether the buffer holds `expected` and its terminator, zeros behind it up
// to `zeros_to`, and the sentinel from `from` on. Reads nothing past the
// buffer, whatever a faulty call left in it.
template <class Ch>
::testing::AssertionResult holds(const std::vector<Ch>& buffer,
                                 const std::type_identity_t<std::basic_string<Ch>>& expected,
                                 std::size_t zeros_to, std::size_t from) {
  for (std::size_t i = 0; i < std::max(zeros_to, expected.size() + 1); ++i)
    if (i >= buffer.size() || buffer[i] != (i < expected.size() ? expected[i] : Ch{0}))
      return ::testing::AssertionFailure() << "unexpected element at " << i;
  return untouched_from(buffer, from);
}

// Numbers joined by '-', to compare the fields of records in one check.
template <class... Values>
std::string joined(Values... values) {
  std::string out;
  ((out += std::to_string(values) + "-"), ...);
  return out;
}

// A calendar record, and a moment as one count of ticks and back.
inline SYSTEMTIME system_time(int year, int month, int day, int hour = 0, int minute = 0,
                              int second = 0, int ms = 0) {
  const auto field = [](int value) { return static_cast<uint16_t>(value); };
  return {field(year),   field(month),  0,        field(day), field(hour),
          field(minute), field(second), field(ms)};
}
inline std::int64_t ticks(const FILETIME& moment) { return std::int64_t(kz::os::to_ticks(moment)); }
inline FILETIME moment(std::int64_t ticks) { return kz::os::to_file_time(std::uint64_t(ticks)); }

// Runs `body` with the allocator failing once at the n-th allocation, for
// n = 1, 2, ... until a run makes no n-th allocation; then once more with
// every allocation from the n-th on failing.
template <class Body>
void for_each_allocation_failure(Body body) {
  for (bool persistent : {false, true})
    for (long nth = 1, reached = 1; reached; ++nth) {
      kz::alloc_faults::arm(nth, persistent);
      body();
      reached = kz::alloc_faults::attempts() >= nth;
      kz::alloc_faults::disarm();
    }
}

// The strings of a list in one text, each closed by '|'; the list is then
// released, which must leave it empty.
template <class Ch>
std::basic_string<Ch> take(StrList& list) {
  std::basic_string<Ch> entries;
  for (int32_t i = 0; i < list.count; ++i)
    entries += static_cast<const Ch*>(list.strings[i]) + std::basic_string<Ch>(1, Ch('|'));
  Twin<Ch>::DeleteStrList(&list);
  EXPECT_EQ(joined(list.count, list.strings != nullptr), joined(0, 0));
  return entries;
}

// Rows of a table that hold for one twin only: double-byte characters are
// the narrow twin's alone, and some size rules differ by twin.
enum Only { kBoth, kNarrow, kWide };
template <class Ch>
bool runs(Only only) {
  return only == kBoth || (only == kNarrow) == (sizeof(Ch) == 1);
}

// Starts this test program again with the given UTF-8 arguments behind its
// path, waits for it, and gives its exit status (-1 when it did not run).
int run_this_program(const std::vector<std::string>& arguments);
// The same in steps: start gives the child (-1 when it did not start),
// wait_for its exit status (-1 when it did not exit by itself), and
// kill_program ends it at once, as SIGKILL or TerminateProcess do.
std::intptr_t start_this_program(const std::vector<std::string>& arguments);
int wait_for(std::intptr_t child);
void kill_program(std::intptr_t child);

}  // namespace kz::test
