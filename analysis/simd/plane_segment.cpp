#include "analysis/simd/plane_segment.h"

#include <bit>

namespace genostat::analysis {

void PlaneSegment::addCounts(std::size_t position, std::uint64_t* counts) const {
  for (std::size_t level = 0; level < kLevels; ++level) {
    if (!levels_[level]) continue;
    for (unsigned flags = levels_[level]->bytes[position]; flags != 0; flags &= flags - 1) {
      counts[std::countr_zero(flags)] += std::uint64_t{1} << level;
    }
  }
}

}  // namespace genostat::analysis
