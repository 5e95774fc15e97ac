#include "analysis/simd/plane_segment.h"

#include <algorithm>

namespace genostat::analysis {

namespace {

constexpr std::size_t kFlags = 8;

// The bits of a byte as a byte each, the lowest one lowest.
constexpr auto kSpread = [] {
  std::array<std::uint64_t, 256> spread{};
  for (std::size_t byte = 0; byte < spread.size(); ++byte) {
    for (std::size_t flag = 0; flag < kFlags; ++flag) {
      spread[byte] |= std::uint64_t{byte >> flag & 1U} << (8 * flag);
    }
  }
  return spread;
}();

}  // namespace

void PlaneSegment::addCounts(std::size_t position, std::uint64_t* counts) const {
  // Eight levels at a time give each flag a byte. There is no level above a missing one.
  for (std::size_t low = 0; low < kLevels && levels_[low]; low += 8) {
    const std::size_t end = std::min(low + 8, kLevels);
    std::uint64_t bytes = 0;
    for (std::size_t level = low; level < end && levels_[level]; ++level) {
      bytes |= kSpread[levels_[level]->bytes[position]] << (level - low);
    }
    if (bytes == 0) continue;
    for (std::size_t flag = 0; flag < kFlags; ++flag) {
      counts[flag] += (bytes >> (8 * flag) & 0xFF) << low;
    }
  }
}

}  // namespace genostat::analysis
