#include "analysis/metrics/tiles.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

#include "analysis/metrics/sums.h"

namespace genostat::analysis {

namespace {

constexpr char kSeparator = ':';

// A sign is allowed before the digits, blanks are not.
std::optional<int> integerOf(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  int value = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (error != std::errc() || stop != end) return std::nullopt;
  return value;
}

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

TileScheme::TileScheme(std::string_view firstHeader) {
  while (firstHeader.ends_with(kSeparator)) {
    firstHeader.remove_suffix(1);
  }
  const auto fields = std::count(firstHeader.begin(), firstHeader.end(), kSeparator) + 1;
  if (fields >= 7) {
    field_ = 4;
  } else if (fields >= 5) {
    field_ = 2;
  }
}

std::optional<int> TileScheme::tileOf(std::string_view header) const {
  if (field_ < 0) return std::nullopt;
  for (int i = 0; i < field_; ++i) {
    const std::size_t separator = header.find(kSeparator);
    if (separator == std::string_view::npos) return std::nullopt;
    header.remove_prefix(separator + 1);
  }
  return integerOf(header.substr(0, header.find(kSeparator)));
}

void TileCounts::turnOff() {
  off_ = true;
  tiles_ = {};
  places_ = {};
}

TileCounts::Tile* TileCounts::find(int tile) {
  if (tile == lastTile_ && lastPlace_ < tiles_.size()) return &tiles_[lastPlace_];
  const auto [entry, isNew] = places_.try_emplace(tile, tiles_.size());
  if (isNew) {
    if (tiles_.size() == kMaxTiles) {
      turnOff();
      return nullptr;
    }
    tiles_.emplace_back();
  }
  lastTile_ = tile;
  lastPlace_ = entry->second;
  return &tiles_[lastPlace_];
}

void TileCounts::add(int tile, std::string_view quality, const Kernels& kernels) {
  if (off_) return;
  Tile* const found = find(tile);
  if (found == nullptr) return;
  const std::size_t length = quality.size();
  if (found->sums.size() < length) found->sums.resize(length);
  kernels.addCodes(quality.data(), length, found->sums.data());
  ++found->byLength[length];
}

void TileCounts::merge(const TileCounts& other) {
  if (other.off_) turnOff();
  if (off_) return;
  for (const auto& [number, place] : other.places_) {
    Tile* const mine = find(number);
    if (mine == nullptr) return;
    const Tile& others = other.tiles_[place];
    addAll(mine->sums, others.sums);
    for (const auto& [length, reads] : others.byLength) {
      mine->byLength[length] += reads;
    }
  }
}

std::map<int, const TileCounts::Tile*> TileCounts::tiles() const {
  std::map<int, const Tile*> sorted;
  for (const auto& [number, place] : places_) {
    sorted[number] = &tiles_[place];
  }
  return sorted;
}

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
      deviations.phred.push_back(deviation);
    }
    ++tileMeans;
  }
  quality.verdict = judgeAbove(quality.largest, kWarnPhred, kFailPhred);
  return quality;
}

}  // namespace genostat::analysis
