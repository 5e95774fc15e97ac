// Single sequences that make up a noticeable part of the reads.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "analysis/metrics/adapters.h"
#include "analysis/metrics/duplication.h"

namespace genostat::analysis {

struct OverrepresentedSequence {
  std::string sequence;  // the first characters of its reads
  std::uint64_t reads = 0;
  double percent = 0;  // of all reads
  std::string origin;  // the adapter that it holds; empty when none is known
};

// Those above 0.1 % of all reads, the most frequent first, then in order of the file. An origin is looked for
// among `probes` first, then among all known ones.
std::vector<OverrepresentedSequence> overrepresentedSequences(const DuplicationCounts& counts,
                                                              const std::vector<Probe>& probes);

}  // namespace genostat::analysis
