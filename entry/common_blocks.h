// Pointers to the host's common data blocks, cached while the module is loaded.
#pragma once

#include <array>
#include <cstddef>

namespace genostat {

inline constexpr std::size_t kCommonBlockCount = 22;

// Asks the host for every block, in the host's order. Called once, by the load hook.
void cacheCommonBlocks();
// What was cached, in the same order; null before.
const std::array<void*, kCommonBlockCount>& commonBlocks();

}  // namespace genostat
