// Advice to the operating system on memory that holds much data.
#pragma once

#include <cstddef>

namespace genostat::platform {

// Asks for large pages for memory that is about to be filled from one end to the other: the first access to
// each page costs time. Only speed depends on it.
void preferLargePages(void* memory, std::size_t bytes);

}  // namespace genostat::platform
