#include "platform/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <memory>

namespace genostat::platform {

void preferLargePages(void* memory, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  // The advice wants the beginning of a page.
  if (std::align(page, page, memory, bytes) != nullptr) madvise(memory, bytes, MADV_HUGEPAGE);
#else
  static_cast<void>(memory);
  static_cast<void>(bytes);
#endif
}

}  // namespace genostat::platform
