// Counts bases and qualities by position of the reads.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "analysis/fastq/record.h"
#include "analysis/metrics/position_counts.h"
#include "analysis/simd/kernels.h"

namespace genostat::analysis {

// Memory grows with the longest read and the number of different qualities, at some 15 KB for each 64
// positions that many reads reach, and with nothing else.
class PositionCounters {
 public:
  explicit PositionCounters(const Kernels& kernels) : kernels_(kernels) {}

  // `range` is that of these records' quality codes, which lie in '!' to '~'.
  void add(std::span<const Record> records, const QualityRange& range);

  // Adds what was counted at a position, from 0.
  void addTo(std::uint64_t position, PositionCounts& counts) const;

 private:
  static constexpr std::size_t kSegmentPositions = PlaneSegment::kBlocks * kBlockSize;
  static constexpr std::size_t kQualityGroups = kQualityCodes / 8;

  struct Segment {
    PlaneSegment bases;
    std::array<std::unique_ptr<PlaneSegment>, kQualityGroups> qualities;  // by code / 8
  };

  void addLines(std::span<const Record* const> lines, const QualityRange& range);
  void addBlock(std::size_t number, const QualityRange& range);

  const Kernels& kernels_;
  std::vector<std::unique_ptr<Segment>> segments_;
  std::vector<const Record*> byLength_;  // scratch: the records of a batch, the longest first
  LineBlock sequences_;                  // scratch: the lines at one block of positions
  LineBlock qualities_;
};

}  // namespace genostat::analysis
