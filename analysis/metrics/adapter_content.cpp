#include "analysis/metrics/adapter_content.h"

#include <algorithm>

namespace genostat::analysis {

namespace {

constexpr double kWarnPercent = 5;
constexpr double kFailPercent = 10;

std::vector<double> curveOf(const std::vector<std::uint64_t>& byOffset,
                            const std::vector<PositionGroup>& groups, std::uint64_t reads) {
  std::vector<double> curve;
  std::uint64_t begun = 0;
  for (const PositionGroup& group : groups) {
    double sum = 0;
    for (std::uint64_t position = group.first; position <= group.last; ++position) {
      if (position <= byOffset.size()) begun += byOffset[static_cast<std::size_t>(position - 1)];
      sum += 100.0 * static_cast<double>(begun) / static_cast<double>(reads);
    }
    curve.push_back(sum / static_cast<double>(group.last - group.first + 1));
  }
  return curve;
}

}  // namespace

AdapterContent adapterContent(const AdapterCounts& counts, const std::vector<Probe>& probes,
                              std::uint64_t longest, std::uint64_t reads) {
  AdapterContent content;
  if (longest <= kProbeLength) {
    // Reads without room for an adapter cannot show that there is none.
    content.verdict = Verdict::Warn;
    return content;
  }
  content.groups = positionGroups(longest - kProbeLength + 1);
  for (std::size_t probe = 0; probe < probes.size(); ++probe) {
    content.curves.push_back({probes[probe].name, curveOf(counts.byOffset(probe), content.groups, reads)});
    for (const double percent : content.curves.back().percent) {
      content.largest = std::max(content.largest, percent);
    }
  }
  content.verdict = judgeAbove(content.largest, kWarnPercent, kFailPercent);
  return content;
}

}  // namespace genostat::analysis
