// What reports are made from: the finished figures of one sample.
//
// Its size depends neither on the number of reads nor on their length, so that a job can keep many.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/metrics/gc_counts.h"
#include "analysis/metrics/position_counts.h"
#include "analysis/metrics/position_groups.h"
#include "analysis/metrics/read_lengths.h"
#include "analysis/metrics/verdict.h"

namespace genostat::analysis {

// Phred values that 10, 25, 50, 75 and 90 % of the bases at a position reach at most; means of a group's
// positions.
struct QualityQuantiles {
  double tenth = 0;
  double lowerQuartile = 0;
  double median = 0;
  double upperQuartile = 0;
  double ninetieth = 0;
};

// A group of positions of the reads.
struct GroupProfile {
  PositionGroup positions;
  double meanPhred = 0;  // the mean of the positions' means
  // Over positions with more than 100 bases; none without such.
  std::optional<QualityQuantiles> quantiles;
  // Percentages of A, C, G, T among these four; none without any.
  std::optional<std::array<double, 4>> bases;
  double nPercent = 0;  // of all characters
};

struct LengthBin {
  std::uint64_t shortest = 0;
  std::uint64_t longest = 0;  // included
  std::uint64_t reads = 0;
};

// How far the GC content of the reads is from a normal distribution.
struct GcSummary {
  GcDistribution observed{};
  GcDistribution model{};  // the normal distribution fitted to it, for as many reads
  double deviation = 0;    // percent of the reads that lie elsewhere, both sides counted; may be not-a-number
};

// Shares of the reads whose key occurs so often, as estimated for the whole file.
struct DuplicationLevel {
  std::uint64_t from = 0;      // occurrences; up to the next level's
  double readsPercent = 0;     // of all reads
  double distinctPercent = 0;  // of the distinct keys
};

struct OverrepresentedSequence {
  std::string sequence;
  std::uint64_t reads = 0;
  double percent = 0;  // of all reads
  std::string origin;  // the known adapter that it holds; empty when there is none
};

// By group of SampleResult::adapterGroups: percent of the reads in which the probe begins there or before.
struct AdapterCurve {
  std::string name;
  std::vector<double> percent;
};

// By group of SampleResult::tileGroups: mean quality of the tile less that of all tiles.
struct TileDeviations {
  int tile = 0;
  std::vector<float> phred;
};

struct SampleResult {
  // At most so many overrepresented sequences are listed, the most frequent ones first.
  static constexpr std::size_t kMaxListed = 1000;

  LengthSummary lengths;
  int phredOffset = 33;
  Verdicts verdicts;
  double qcScore = 0;

  // Percentages and Phred values; nothing where the reads have nothing to take them from.
  std::optional<double> gcPercent;
  std::optional<double> meanPhred;
  std::optional<double> medianPhredFirst;
  std::optional<double> medianPhredLast;
  std::optional<double> lowComplexityPercent;
  std::optional<double> unexpectedPercent;
  std::optional<double> deduplicatedPercent;
  std::uint64_t overrepresentedCount = 0;  // all of them, listed or not

  std::vector<GroupProfile> profile;
  std::vector<LengthBin> lengthBins;
  GcSummary gc;
  std::array<std::uint64_t, kQualityCodes> readsByMeanQuality{};  // by character code
  std::vector<DuplicationLevel> duplication;
  std::vector<OverrepresentedSequence> overrepresented;
  std::vector<PositionGroup> adapterGroups;
  std::vector<AdapterCurve> adapters;
  std::vector<PositionGroup> tileGroups;
  std::vector<TileDeviations> tiles;  // empty when the headers name none
};

}  // namespace genostat::analysis
