// Small sums that every metric needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace genostat::analysis {

// Adds counters to those of the same place; sums that end earlier go on with zeros.
template <typename Sums>
void addAll(Sums& sums, const Sums& counts) {
  if constexpr (requires { sums.resize(counts.size()); }) {
    if (sums.size() < counts.size()) sums.resize(counts.size());
  }
  for (std::size_t i = 0; i < counts.size(); ++i) {
    sums[i] += counts[i];
  }
}

// On an exact threshold the order of the two operations decides the verdict; there are metrics of either
// order.
inline double percentOf(std::uint64_t part, std::uint64_t whole) {
  return 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}
inline double shareInPercent(std::uint64_t part, std::uint64_t whole) {
  return static_cast<double>(part) / static_cast<double>(whole) * 100.0;
}

}  // namespace genostat::analysis
