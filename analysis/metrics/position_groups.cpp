#include "analysis/metrics/position_groups.h"

#include <algorithm>

namespace genostat::analysis {

namespace {

constexpr std::uint64_t kMostGroups = 75;
constexpr std::uint64_t kAlone = 9;  // positions at the front that are never put together

// The first of 2, 5, 10, 20, 50, 100, ... with which the groups are few enough.
std::uint64_t windowWidth(std::uint64_t longest) {
  for (std::uint64_t power = 1;; power *= 10) {
    for (const std::uint64_t width : {2 * power, 5 * power, 10 * power}) {
      if (kAlone + (longest - kAlone + width - 1) / width < kMostGroups) return width;
    }
  }
}

}  // namespace

std::vector<PositionGroup> positionGroups(std::uint64_t longest) {
  std::vector<PositionGroup> groups;
  const bool allAlone = longest <= kMostGroups;
  std::uint64_t first = 1;
  for (; first <= (allAlone ? longest : kAlone); ++first) {
    groups.push_back({first, first});
  }
  if (allAlone) return groups;
  const std::uint64_t width = windowWidth(longest);
  // Wide windows begin at multiples of their width, so the first one is shorter.
  std::uint64_t next = width > 10 ? width : first + width;
  for (; first <= longest; first = next, next += width) {
    groups.push_back({first, std::min(next - 1, longest)});
  }
  return groups;
}

}  // namespace genostat::analysis
