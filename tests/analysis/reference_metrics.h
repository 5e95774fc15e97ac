// The metrics once more, for comparison: one character after another, sorted copies instead of histograms,
// sums read by read. Slow, but plain enough to be checked by eye.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analysis/metrics/duplication.h"
#include "analysis/metrics/position_counts.h"
#include "analysis/metrics/sample_counts.h"
#include "analysis/metrics/sample_result.h"
#include "analysis/request/adapter.h"

namespace genostat::analysis {

struct ReferenceRead {
  std::string header;  // with its '@'
  std::string sequence;
  std::string quality;
};

struct ReferenceCounts {
  std::map<std::uint64_t, std::uint64_t> lengths;
  std::vector<PositionCounts> positions;
  std::array<std::uint64_t, kQualityCodes> meanQualities{};
  std::array<std::uint64_t, kQualityCodes> lastQualities{};
  std::map<std::pair<std::uint64_t, std::uint64_t>, std::uint64_t> gc;  // by n and g
  std::vector<std::map<std::uint64_t, std::uint64_t>> adapters;         // by probe, then offset
  std::map<int, std::vector<std::vector<std::uint64_t>>> tiles;  // by tile, then position: all quality codes
  std::uint64_t lowComplexityReads = 0;
  std::map<std::string, std::size_t> keyPlaces;  // where in the following, which has views into this
  DuplicationCounts duplication;
};

ReferenceCounts referenceCounts(const std::vector<ReferenceRead>& reads, const Adapter& adapter,
                                std::size_t maxKeys = kMaxKeys);

// What the result's columns show; not-a-number where there is nothing.
struct ReferenceValues {
  std::array<std::string, 11> verdicts;  // in the order of Check
  double gc = 0;
  double deduplicated = 0;
  double medianPhredFirst = 0;
  double medianPhredLast = 0;
  double meanPhred = 0;
  double lowComplexity = 0;
  double unexpected = 0;
  std::uint64_t overrepresented = 0;
};

ReferenceValues referenceValues(const ReferenceCounts& counts);

double referenceDeduplicated(const DuplicationCounts& counts);

// Fail the running test where the two differ.
void expectSameCounts(const SampleCounts& counts, const ReferenceCounts& reference);
void expectSameDuplication(const DuplicationCounts& counts, const DuplicationCounts& reference);
void expectSameValues(const SampleResult& result, const ReferenceValues& reference);

}  // namespace genostat::analysis
