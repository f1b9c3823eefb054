// The one allocator pair of the library. Everything that a call takes from
// the heap, and everything handed to a caller that a release operation gives
// back later, goes through kz::allocate and kz::release, so that an
// allocation failure is an ordinary failure result and tests can inject one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>

namespace kz {

// A block of at least `bytes` bytes, or null when none can be had.
void* allocate(std::size_t bytes) noexcept;
// Gives back a block from allocate; null is ignored.
void release(void* block) noexcept;

// An array of `count` elements of T, or null on failure or overflow.
template <class T>
T* allocate_array(std::size_t count) noexcept {
  if (count > SIZE_MAX / sizeof(T)) return nullptr;
  return static_cast<T*>(allocate(count * sizeof(T)));
}

// Scratch memory owned by one call: released on every way out.
template <class T>
class Scratch {
 public:
  explicit Scratch(std::size_t count) noexcept : data_(allocate_array<T>(count)) {}
  ~Scratch() { release(data_); }
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;

  explicit operator bool() const noexcept { return data_ != nullptr; }
  T* get() const noexcept { return data_; }

 private:
  T* data_;
};

// Test-only failure injection. After arm(n), the n-th allocation from then
// on fails (n = 1: the next one); with `persistent`, every later one fails
// too. disarm() ends it. The counter is process-wide.
namespace alloc_faults {
void arm(long nth, bool persistent) noexcept;
void disarm() noexcept;
// Allocations attempted since the last arm() or disarm().
long attempts() noexcept;
}  // namespace alloc_faults

}  // namespace kz
