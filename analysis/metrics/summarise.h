// From counts to results.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "analysis/metrics/duplication.h"
#include "analysis/metrics/position_counts.h"
#include "analysis/metrics/sample_counts.h"
#include "analysis/metrics/sample_result.h"
#include "analysis/request/adapter.h"

namespace genostat::analysis {

struct ResultOptions {
  Adapter adapter;
  std::optional<int> phredOffset;  // otherwise the qualities decide
  bool emptyIsSample = false;      // an empty file is a sample without reads, and no error
};

// Puts the counts at a position, from 0, into the given structure, whatever that held before.
using PositionSource = std::function<void(std::uint64_t position, PositionCounts& counts)>;

// `positionCounts` is called once per position in ascending order, up to the longest read's last one. The
// same counts give the same result, bit for bit.
SampleResult summarise(const SampleCounts& counts, const DuplicationCounts& duplication,
                       const PositionSource& positionCounts, const ResultOptions& options);

}  // namespace genostat::analysis
