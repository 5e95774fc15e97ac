// Neighbouring positions that are shown and judged as one.
#pragma once

#include <cstdint>
#include <vector>

namespace genostat::analysis {

// Positions from 1, both ends included.
struct PositionGroup {
  std::uint64_t first = 0;
  std::uint64_t last = 0;

  friend bool operator==(const PositionGroup&, const PositionGroup&) = default;
};

// Divides the positions 1 to `longest` into at most 75 groups: every position alone up to 75; else 1 to 9
// alone and windows of one round width after them, the last cut off.
std::vector<PositionGroup> positionGroups(std::uint64_t longest);

}  // namespace genostat::analysis
