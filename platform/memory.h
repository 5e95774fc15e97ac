// What programs with much data tell the operating system about their memory.
#pragma once

#include <cstddef>

namespace genostat::platform {

// Asks that memory which is about to be filled from one end to the other comes in large pages, where the
// system has such: each first touch of a page costs time. Nothing but speed depends on it.
void preferLargePages(void* memory, std::size_t bytes);

}  // namespace genostat::platform
