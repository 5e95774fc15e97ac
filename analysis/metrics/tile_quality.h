// How the tiles of a flow cell differ in quality: bubbles, smears and dirt show as single tiles that are
// worse than the others.
#pragma once

#include <vector>

#include "analysis/metrics/position_groups.h"
#include "analysis/metrics/tiles.h"
#include "analysis/metrics/verdict.h"

namespace genostat::analysis {

// By group of TileQuality::groups: mean Phred value of the tile less that of all tiles.
struct TileDeviations {
  int tile = 0;
  std::vector<float> phred;
};

struct TileQuality {
  std::vector<PositionGroup> groups;  // of the sampled reads
  std::vector<TileDeviations> tiles;  // by number; empty when there is nothing to judge
  double largest = 0;                 // deviation to either side
  Verdict verdict = Verdict::None;
};

// `phredOffset` is the code of Phred 0.
TileQuality tileQuality(const TileCounts& counts, int phredOffset);

}  // namespace genostat::analysis
