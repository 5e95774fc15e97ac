// Reads by length, coarsely enough to show.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "analysis/metrics/read_lengths.h"

namespace genostat::analysis {

struct LengthBin {
  std::uint64_t shortest = 0;
  std::uint64_t longest = 0;  // included
  std::uint64_t reads = 0;

  friend bool operator==(const LengthBin&, const LengthBin&) = default;
};

// At most kMaxLengthBins bins of equal width from the shortest to the longest read; the last may be cut off.
inline constexpr std::uint64_t kMaxLengthBins = 200;
std::vector<LengthBin> lengthBins(const ReadLengths& lengths);

}  // namespace genostat::analysis
