// Everything that one thread counts of one sample, in one pass over its share of the reads.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "analysis/fastq/record_cutter.h"
#include "analysis/metrics/duplicate_table.h"
#include "analysis/metrics/position_counters.h"
#include "analysis/metrics/sample_counts.h"
#include "analysis/simd/kernels.h"
#include "analysis/simd/probe_set.h"

namespace genostat::analysis {

class SampleMetrics {
 public:
  // `kernels` and `probes` must outlive the object.
  SampleMetrics(const Kernels& kernels, const ProbeSet& probes);

  // Measures the records of a batch. Returns the error of the first record whose quality breaks the rules;
  // what was counted is of no use then.
  std::optional<FastqError> add(const Batch& batch, const TileScheme& tiles);

  // Of all batches; nothing more may be added then.
  SampleCounts takeCounts();
  const PositionCounters& positions() const { return positions_; }

  // Reads counted in the full duplicate table; filled by the caller.
  DuplicateTable::Counts duplicates;

 private:
  static constexpr std::size_t kAtOnce = 64;

  // Some of a batch's records, and what the order-dependent metrics have to know of those before.
  struct Share {
    std::span<const Record> records;
    std::uint64_t filled = 0;   // how many have bases
    std::uint64_t longest = 0;  // length of the longest
  };

  // False when a quality breaks the rules.
  bool addShare(Share& share, const TileScheme& tiles);
  void addReads(const Share& share);
  void addEnds(const Share& share);
  void addProbes(Share& share);
  void addTiles(Share& share, const TileScheme& tiles);

  const Kernels& kernels_;
  const ProbeSet& probes_;
  SampleCounts counts_;
  PositionCounters positions_;
  // Neighbouring qualities are often the same, and one counter could not be raised as fast as they come.
  std::array<std::array<std::uint64_t, kQualityCodes>, 4> ends_{};

  // Scratch for the records of a share.
  std::vector<std::uint64_t> qualitySums_;
  std::vector<std::uint64_t> gcLengths_;
  std::vector<SequenceCounts> sequences_;
  std::vector<ProbeHit> hits_;
};

}  // namespace genostat::analysis
