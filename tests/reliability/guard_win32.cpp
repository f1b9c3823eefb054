// Guarded pages on Windows: committed pages whose last one loses all
// access.
#include <windows.h>

#include <cstdlib>

#include "reliability/guard.h"

namespace kz::test {

GuardedPages map_guarded(std::size_t bytes) {
  const std::size_t size = (bytes + kPage - 1) / kPage * kPage + kPage;
  void* base = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (base == nullptr) std::abort();
  char* guard = static_cast<char*>(base) + size - kPage;
  DWORD old = 0;
  if (!VirtualProtect(guard, kPage, PAGE_NOACCESS, &old)) std::abort();
  return {base, size, guard};
}

void unmap_guarded(const GuardedPages& pages) { VirtualFree(pages.base, 0, MEM_RELEASE); }

}  // namespace kz::test
