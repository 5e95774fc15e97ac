#include "analysis/metrics/adapters.h"

#include <algorithm>

#include "analysis/metrics/sums.h"

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
      sum += percentOf(begun, reads);
    }
    curve.push_back(sum / static_cast<double>(group.last - group.first + 1));
  }
  return curve;
}

}  // namespace

std::vector<Probe> probesOf(const Adapter& adapter) {
  std::vector<Probe> known = {
      {"Illumina universal adapter", "AGATCGGAAGAG"},
      {"Illumina small RNA 3' adapter", "TGGAATTCTCGG"},
      {"Illumina small RNA 5' adapter", "GATCGTCGGACT"},
      {"Nextera transposase sequence", "CTGTCTCTTATA"},
      {"poly-A", "AAAAAAAAAAAA"},
      {"poly-G", "GGGGGGGGGGGG"},
  };
  switch (adapter.kind) {
    case AdapterKind::None:
      return known;
    case AdapterKind::Illumina:
      return {known[0], known[1], known[2]};
    case AdapterKind::Nextera:
      return {known[3]};
    case AdapterKind::Custom:
      break;
  }
  return {{"custom adapter", adapter.sequence.substr(0, kProbeLength)}};
}

void AdapterCounts::merge(const AdapterCounts& other) {
  for (std::size_t probe = 0; probe < offsets_.size(); ++probe) {
    addAll(offsets_[probe], other.offsets_[probe]);
  }
}

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
