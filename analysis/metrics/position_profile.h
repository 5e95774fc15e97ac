// What the reads are like from their first position to their last.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "analysis/metrics/position_counts.h"
#include "analysis/metrics/position_groups.h"
#include "analysis/metrics/verdict.h"

namespace genostat::analysis {

// Phred values: the lowest that a share of the bases at a position do not exceed; means of a group's
// positions.
struct QualityQuantiles {
  double tenth = 0;
  double lowerQuartile = 0;
  double median = 0;
  double upperQuartile = 0;
  double ninetieth = 0;
};

// A group of positions.
struct GroupProfile {
  PositionGroup positions;
  double meanPhred = 0;  // the mean of the positions' means
  // Over positions with more than 100 bases, of fewer they would say little; none without such.
  std::optional<QualityQuantiles> quantiles;
  // Percentages of A, C, G, T among these four; none without any.
  std::optional<std::array<double, 4>> bases;
  double nPercent = 0;  // of all characters
};

// A histogram of quality characters by their code.
using QualityCounts = std::array<std::uint64_t, kQualityCodes>;

// The code in the middle, the mean of the middle two for an even number; nothing for an empty histogram.
std::optional<double> medianCode(const QualityCounts& counts);

// Condenses position after position into groups, as many at most as anyone can look at.
class PositionProfile {
 public:
  // For reads of up to so many bases.
  explicit PositionProfile(std::uint64_t longest);

  // The next position.
  void add(const PositionCounts& counts);

  // Sums over all positions; of the qualities also over the first kEndLength.
  const std::array<std::uint64_t, kBaseCount>& bases() const { return bases_; }
  const QualityCounts& qualities() const { return qualities_; }
  const QualityCounts& firstQualities() const { return firstQualities_; }

  // By group. `phredOffset` is the code of Phred 0.
  std::vector<GroupProfile> groups(int phredOffset) const;

 private:
  // Kept as codes: Phred 0 is known only when all qualities have been seen.
  struct Sums {
    std::uint64_t positions = 0;  // that have bases
    double means = 0;
    std::uint64_t judged = 0;  // that have enough bases for quantiles
    std::array<std::uint64_t, 5> quantiles{};
    std::array<std::uint64_t, kBaseCount> bases{};
  };

  std::vector<PositionGroup> groups_;
  std::vector<Sums> sums_;  // by group
  std::size_t group_ = 0;
  std::uint64_t position_ = 0;  // the last one added, from 1
  std::array<std::uint64_t, kBaseCount> bases_{};
  QualityCounts qualities_{};
  QualityCounts firstQualities_{};
};

// The columns of these names. Reads without any bases have no quality, but nothing wrong in their content.
Verdict judgeQuality(const std::vector<GroupProfile>& profile);
Verdict judgeContent(const std::vector<GroupProfile>& profile);
Verdict judgeN(const std::vector<GroupProfile>& profile);

}  // namespace genostat::analysis
