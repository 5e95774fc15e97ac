#include "analysis/metrics/tile_quality.h"

#include <algorithm>
#include <cmath>

namespace genostat::analysis {

namespace {

constexpr double kWarnPhred = 5;
constexpr double kFailPhred = 10;

// Each group's mean of its positions' means; 0 where the tile has no bases.
std::vector<double> groupMeans(const TileCounts::Tile& tile, const std::vector<PositionGroup>& groups,
                               int phredOffset) {
  std::uint64_t reads = 0;
  for (const auto& [length, count] : tile.byLength) {
    reads += count;
  }
  auto ended = tile.byLength.begin();
  std::vector<double> means;
  means.reserve(groups.size());
  for (const PositionGroup& group : groups) {
    const std::uint64_t last = std::min<std::uint64_t>(group.last, tile.sums.size());
    double sum = 0;
    for (std::uint64_t position = group.first; position <= last; ++position) {
      for (; ended->first < position; ++ended) {
        reads -= ended->second;
      }
      sum += static_cast<double>(tile.sums[static_cast<std::size_t>(position - 1)]) /
                 static_cast<double>(reads) -
             phredOffset;
    }
    means.push_back(last < group.first ? 0 : sum / static_cast<double>(last - group.first + 1));
  }
  return means;
}

}  // namespace

TileQuality tileQuality(const TileCounts& counts, int phredOffset) {
  const auto tiles = counts.tiles();
  std::size_t longest = 0;
  for (const auto& [number, tile] : tiles) {
    longest = std::max(longest, tile->sums.size());
  }
  TileQuality quality;
  if (tiles.empty()) return quality;
  quality.groups = positionGroups(longest);

  std::vector<std::vector<double>> means;
  std::vector<double> sums(quality.groups.size());
  for (const auto& [number, tile] : tiles) {
    means.push_back(groupMeans(*tile, quality.groups, phredOffset));
    for (std::size_t i = 0; i < sums.size(); ++i) {
      sums[i] += means.back()[i];
    }
  }
  auto tileMeans = means.begin();
  for (const auto& [number, tile] : tiles) {
    TileDeviations& deviations = quality.tiles.emplace_back(TileDeviations{number, {}});
    for (std::size_t i = 0; i < sums.size(); ++i) {
      const double deviation = (*tileMeans)[i] - sums[i] / static_cast<double>(tiles.size());
      quality.largest = std::max(quality.largest, std::abs(deviation));
      deviations.phred.push_back(static_cast<float>(deviation));
    }
    ++tileMeans;
  }
  quality.verdict = judgeAbove(quality.largest, kWarnPhred, kFailPhred);
  return quality;
}

}  // namespace genostat::analysis
