// Everything that is counted of a sample, apart from what depends on the order of its reads and on positions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "analysis/metrics/adapters.h"
#include "analysis/metrics/gc_content.h"
#include "analysis/metrics/position_counts.h"
#include "analysis/metrics/read_lengths.h"
#include "analysis/metrics/sums.h"
#include "analysis/metrics/tiles.h"

namespace genostat::analysis {

// Integers only: however the reads are divided between several, merging them gives the same.
struct SampleCounts {
  explicit SampleCounts(std::size_t probes) : adapters(probes) {}

  void merge(const SampleCounts& other) {
    lengths.merge(other.lengths);
    addAll(meanQualities, other.meanQualities);
    gc.merge(other.gc);
    adapters.merge(other.adapters);
    tiles.merge(other.tiles);
    addAll(lastQualities, other.lastQualities);
    lowComplexityReads += other.lowComplexityReads;
  }

  ReadLengths lengths;
  // Reads that have bases by floor(sum of their quality codes / length).
  std::array<std::uint64_t, kQualityCodes> meanQualities{};
  GcCounts gc;
  AdapterCounts adapters;
  TileCounts tiles;
  // Codes of the last kEndLength characters of each read, of all of a shorter one.
  std::array<std::uint64_t, kQualityCodes> lastQualities{};
  std::uint64_t lowComplexityReads = 0;
};

inline constexpr std::uint64_t kEndLength = 10;

// Whether a read's bases change so rarely that it is of low complexity: `changes` of its bases differ from
// their next one, which is true for fewer than 30 % of those that have one.
constexpr bool isLowComplexity(std::uint64_t length, std::uint64_t changes) {
  return length > 1 && 10 * changes < 3 * (length - 1);
}

}  // namespace genostat::analysis
