#include "platform/large_pages.h"

#if defined(__linux__)
#include <cstdint>

#include <sys/mman.h>
#endif

namespace dibkit {

#if defined(__linux__) && defined(MADV_HUGEPAGE)
void preferLargePages(void* block, std::size_t bytes) {
  constexpr std::uintptr_t largePage = std::uintptr_t{2} << 20;
  const auto address = reinterpret_cast<std::uintptr_t>(block);
  const std::uintptr_t begin = (address + largePage - 1) & ~(largePage - 1);
  const std::uintptr_t end = (address + bytes) & ~(largePage - 1);
  // Only advice: if the system does not take it, only the speed differs.
  if (begin < end) static_cast<void>(madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE));
}
#else
void preferLargePages(void* /*block*/, std::size_t /*bytes*/) {}
#endif

}  // namespace dibkit
