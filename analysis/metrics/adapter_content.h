// How many reads have run into an adapter by each position.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/metrics/adapters.h"
#include "analysis/metrics/position_groups.h"
#include "analysis/metrics/verdict.h"

namespace genostat::analysis {

// By group of AdapterContent::groups: percent of all reads in which the probe begins there or before.
struct AdapterCurve {
  std::string name;
  std::vector<double> percent;
};

// Groups and curves are empty when no read is longer than a probe.
struct AdapterContent {
  std::vector<PositionGroup> groups;
  std::vector<AdapterCurve> curves;  // one per probe
  double largest = 0;                // of all curves
  Verdict verdict = Verdict::None;
};

// `longest` is the length of the longest of the `reads` reads.
AdapterContent adapterContent(const AdapterCounts& counts, const std::vector<Probe>& probes,
                              std::uint64_t longest, std::uint64_t reads);

}  // namespace genostat::analysis
