// Guarded pages on Windows: committed pages whose last one loses all
// access.
#include <windows.h>

#include <cstdlib>

#include "reliability/guard.h"

namespace kz::test {

GuardedPages map_guarded(std::size_t bytes) {
  SYSTEM_INFO system;
  GetSystemInfo(&system);
  const std::size_t page = system.dwPageSize;
  const std::size_t size = (bytes + page - 1) / page * page + page;
  void* base = VirtualAlloc(nullptr, size, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (base == nullptr) std::abort();
  char* guard = static_cast<char*>(base) + size - page;
  DWORD old = 0;
  if (!VirtualProtect(guard, page, PAGE_NOACCESS, &old)) std::abort();
  return {base, size, guard};
}

void unmap_guarded(const GuardedPages& pages) { VirtualFree(pages.base, 0, MEM_RELEASE); }

}  // namespace kz::test
