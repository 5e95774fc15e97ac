#include "analysis/metrics/sample_counts.h"

#include <algorithm>
#include <functional>

namespace genostat::analysis {

void SampleCounts::merge(const SampleCounts& other) {
  const auto addAll = [](auto& sums, const auto& counts) {
    std::transform(counts.begin(), counts.end(), sums.begin(), sums.begin(), std::plus<>());
  };
  lengths.merge(other.lengths);
  addAll(meanQualities, other.meanQualities);
  gc.merge(other.gc);
  adapters.merge(other.adapters);
  tiles.merge(other.tiles);
  addAll(lastQualities, other.lastQualities);
  lowComplexityReads += other.lowComplexityReads;
}

}  // namespace genostat::analysis
