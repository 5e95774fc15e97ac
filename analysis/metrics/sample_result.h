// What reports are made from: the finished figures of one sample.
//
// Its size depends neither on the number of reads nor on their length, so that a job can keep many.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/metrics/adapters.h"
#include "analysis/metrics/duplication.h"
#include "analysis/metrics/gc_content.h"
#include "analysis/metrics/position_counts.h"
#include "analysis/metrics/position_profile.h"
#include "analysis/metrics/read_lengths.h"
#include "analysis/metrics/tiles.h"
#include "analysis/metrics/verdict.h"

namespace genostat::analysis {

struct SampleResult {
  LengthSummary lengths;
  Verdicts verdicts;
  int phredOffset = 33;  // the quality code of Phred 0

  // Percentages and Phred values; nothing where there are no reads, or no bases in them, to take them from.
  std::optional<double> gcPercent;
  std::optional<double> meanPhred;
  std::optional<double> medianPhredFirst;
  std::optional<double> medianPhredLast;
  std::optional<double> unexpectedPercent;
  std::optional<double> lowComplexityPercent;  // of the reads

  std::vector<GroupProfile> profile;  // of positions; empty without bases
  std::vector<LengthBin> lengthBins;
  std::optional<GcSummary> gc;  // nothing without bases
  // By character code.
  std::array<std::uint64_t, kQualityCodes> readsByMeanQuality{};
  DuplicationSummary duplication;
  std::vector<OverrepresentedSequence> overrepresented;  // all of them, fewer than 1,000
  AdapterContent adapters;
  TileQuality tiles;
};

}  // namespace genostat::analysis
