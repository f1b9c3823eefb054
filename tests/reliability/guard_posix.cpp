// Guarded pages on POSIX: an anonymous mapping whose last page loses all
// access.
#include <sys/mman.h>

#include <cstdlib>

#include "reliability/guard.h"

namespace kz::test {

GuardedPages map_guarded(std::size_t bytes) {
  const std::size_t size = (bytes + kPage - 1) / kPage * kPage + kPage;
  void* base = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (base == MAP_FAILED) std::abort();
  char* guard = static_cast<char*>(base) + size - kPage;
  if (mprotect(guard, kPage, PROT_NONE) != 0) std::abort();
  return {base, size, guard};
}

void unmap_guarded(const GuardedPages& pages) { munmap(pages.base, pages.size); }

}  // namespace kz::test
