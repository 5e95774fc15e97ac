#include "analysis/metrics/length_bins.h"

#include <algorithm>

namespace genostat::analysis {

std::vector<LengthBin> lengthBins(const ReadLengths& lengths) {
  const auto counts = lengths.byLength();
  std::vector<LengthBin> bins;
  if (counts.empty()) return bins;
  const std::uint64_t shortest = counts.front().first;
  const std::uint64_t longest = counts.back().first;
  const std::uint64_t width = (longest - shortest) / kMaxLengthBins + 1;
  for (std::uint64_t first = shortest; first <= longest; first += width) {
    bins.push_back({first, std::min(first + width - 1, longest), 0});
  }
  for (const auto& [length, reads] : counts) {
    bins[static_cast<std::size_t>((length - shortest) / width)].reads += reads;
  }
  return bins;
}

}  // namespace genostat::analysis
