#include "analysis/metrics/adapters.h"

#include <algorithm>
#include <functional>

namespace genostat::analysis {

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
    std::vector<std::uint64_t>& mine = offsets_[probe];
    const std::vector<std::uint64_t>& others = other.offsets_[probe];
    if (mine.size() < others.size()) mine.resize(others.size());
    std::transform(others.begin(), others.end(), mine.begin(), mine.begin(), std::plus<>());
  }
}

}  // namespace genostat::analysis
