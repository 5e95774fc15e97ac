// Where the reads run into an adapter.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "analysis/metrics/position_groups.h"
#include "analysis/metrics/verdict.h"
#include "analysis/request/adapter.h"

namespace genostat::analysis {

// What is looked for: the beginning of an adapter.
struct Probe {
  std::string name;
  std::string sequence;  // 1 to kProbeLength letters; N matches any of A, C, G, T, N
};

inline constexpr std::uint64_t kProbeLength = 12;

// The probes for the adapter that was asked for; all known ones for none.
std::vector<Probe> probesOf(const Adapter& adapter);

// Counts reads by the offset of a probe's first occurrence.
//
// An occurrence counts when it lies within the longest read seen up to and with its own, minus kProbeLength;
// only reads longer than kProbeLength can be the longest. That depends on the order of the file, so the
// caller decides it.
class AdapterCounts {
 public:
  explicit AdapterCounts(std::size_t probes) : offsets_(probes) {}

  // One read whose first occurrence of the probe is at `offset`, from 0.
  void add(std::size_t probe, std::uint64_t offset) {
    std::vector<std::uint64_t>& counts = offsets_[probe];
    if (offset >= counts.size()) counts.resize(static_cast<std::size_t>(offset) + 1);
    ++counts[static_cast<std::size_t>(offset)];
  }
  void merge(const AdapterCounts& other);

  // By offset, as far as there are any.
  const std::vector<std::uint64_t>& byOffset(std::size_t probe) const { return offsets_[probe]; }

 private:
  std::vector<std::vector<std::uint64_t>> offsets_;  // by probe
};

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
