#include "platform/memory.h"

namespace genostat::platform {

// Large pages need a privilege there that ordinary users do not have.
void preferLargePages(void* /*memory*/, std::size_t /*bytes*/) {}

}  // namespace genostat::platform
