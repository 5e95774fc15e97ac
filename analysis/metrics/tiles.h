// Qualities by tile of the flow cell, which the headers of some sequencers name.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "analysis/metrics/position_groups.h"
#include "analysis/metrics/verdict.h"
#include "analysis/simd/kernels.h"

namespace genostat::analysis {

// Whether the read of this number counts, from 1 and without those of length 0: the first 10,000, then every
// tenth.
constexpr bool tileSampled(std::uint64_t filledRead) {
  return filledRead <= 10'000 || filledRead % 10 == 0;
}

// In which colon-separated field of the header the tile stands.
class TileScheme {
 public:
  // No tile in any header.
  TileScheme() = default;
  // By the header of the file's first read that has bases: the fifth of seven or more fields, the third of
  // five or six. Empty fields at the end do not count.
  explicit TileScheme(std::string_view firstHeader);

  // The tile's number; nothing when the field is missing or no integer of 32 bits.
  std::optional<int> tileOf(std::string_view header) const;

 private:
  int field_ = -1;  // from 0; -1 for none
};

// Sums the sampled reads' qualities by tile and position.
class TileCounts {
 public:
  // More are likely no tiles.
  static constexpr std::size_t kMaxTiles = 2501;

  struct Tile {
    std::vector<std::uint64_t> sums;                  // of quality codes, by position
    std::map<std::uint64_t, std::uint64_t> byLength;  // number of reads; lengths 1 to sums.size()
  };

  // A sampled read of at least one base.
  void add(int tile, std::string_view quality, const Kernels& kernels = bestKernels());
  // A sampled read whose header has no readable tile: ends the metric for the file.
  void addUnreadable() { turnOff(); }
  void merge(const TileCounts& other);

  // By number. Empty without sampled reads, and once ended by an unreadable header or too many tiles.
  std::map<int, const Tile*> tiles() const;

 private:
  // Null once there are too many.
  Tile* find(int tile);
  void turnOff();

  bool off_ = false;
  std::vector<Tile> tiles_;
  std::unordered_map<int, std::size_t> places_;  // in tiles_, by number
  // Neighbouring reads are mostly of the same tile.
  int lastTile_ = 0;
  std::size_t lastPlace_ = 0;
};

// By group of TileQuality::groups: mean Phred value of the tile less that of all tiles.
struct TileDeviations {
  int tile = 0;
  std::vector<double> phred;
};

// How the tiles differ in quality: bubbles, smears and dirt show as single tiles that are worse than the
// others.
struct TileQuality {
  std::vector<PositionGroup> groups;  // of the sampled reads
  std::vector<TileDeviations> tiles;  // by number; empty when there is nothing to judge
  double largest = 0;                 // deviation to either side
  Verdict verdict = Verdict::None;
};

// `phredOffset` is the code of Phred 0.
TileQuality tileQuality(const TileCounts& counts, int phredOffset);

}  // namespace genostat::analysis
