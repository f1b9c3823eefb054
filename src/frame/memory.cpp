// The allocator behind kz::allocate, kz::release and Scratch, with the
// failure switch the tests arm. It defines no exports.
#include "frame/memory.h"

#include <atomic>
#include <cstdlib>

namespace kz {
namespace {

std::atomic<long> fail_at{0};  // 0: no failure armed
std::atomic<bool> fail_persistent{false};
std::atomic<long> attempted{0};

bool should_fail() noexcept {
  const long armed = fail_at.load(std::memory_order_relaxed);
  if (armed == 0) return false;
  const long nth = attempted.fetch_add(1, std::memory_order_relaxed) + 1;
  return fail_persistent.load(std::memory_order_relaxed) ? nth >= armed : nth == armed;
}

}  // namespace

void* allocate(std::size_t bytes) noexcept {
  if (should_fail()) return nullptr;
  // A zero-byte request still yields a distinct block that release accepts.
  return std::malloc(bytes == 0 ? 1 : bytes);
}

void release(void* block) noexcept { std::free(block); }

namespace alloc_faults {

void arm(long nth, bool persistent) noexcept {
  attempted.store(0, std::memory_order_relaxed);
  fail_persistent.store(persistent, std::memory_order_relaxed);
  fail_at.store(nth, std::memory_order_relaxed);
}

void disarm() noexcept {
  fail_at.store(0, std::memory_order_relaxed);
  attempted.store(0, std::memory_order_relaxed);
}

long attempts() noexcept { return attempted.load(std::memory_order_relaxed); }

}  // namespace alloc_faults
}  // namespace kz
