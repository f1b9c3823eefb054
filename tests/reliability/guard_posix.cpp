// Guarded pages on POSIX: an anonymous mapping whose last page loses all
// access.
#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>

#include "reliability/guard.h"

namespace kz::test {

GuardedPages map_guarded(std::size_t bytes) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t size = (bytes + page - 1) / page * page + page;
  void* base = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (base == MAP_FAILED) std::abort();
  char* guard = static_cast<char*>(base) + size - page;
  if (mprotect(guard, page, PROT_NONE) != 0) std::abort();
  return {base, size, guard};
}

void unmap_guarded(const GuardedPages& pages) { munmap(pages.base, pages.size); }

}  // namespace kz::test
