#include "analysis/metrics/position_profile.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/metrics/sample_counts.h"
#include "analysis/metrics/sums.h"

namespace genostat::analysis {

namespace {

constexpr std::array<std::uint64_t, 5> kQuantiles = {10, 25, 50, 75, 90};
constexpr std::uint64_t kTooFew = 100;  // bases for quantiles
constexpr std::size_t kLowestCode = '!';

// The lowest code at which at least `count` have been met, counting from the lowest.
std::uint64_t codeReaching(const QualityCounts& counts, std::uint64_t count) {
  std::uint64_t met = 0;
  for (std::size_t code = 0; code < counts.size(); ++code) {
    met += counts[code];
    if (met >= count && met > 0) return code;
  }
  return 0;
}

}  // namespace

std::optional<double> medianCode(const QualityCounts& counts) {
  const std::uint64_t total = std::accumulate(counts.begin(), counts.end(), std::uint64_t{0});
  if (total == 0) return std::nullopt;
  return static_cast<double>(codeReaching(counts, (total + 1) / 2) + codeReaching(counts, total / 2 + 1)) / 2;
}

PositionProfile::PositionProfile(std::uint64_t longest)
    : groups_(positionGroups(longest)), sums_(groups_.size()) {}

void PositionProfile::add(const PositionCounts& counts) {
  ++position_;
  if (position_ > groups_[group_].last) ++group_;
  Sums& sums = sums_[group_];
  addAll(sums.bases, counts.bases);
  addAll(bases_, counts.bases);
  if (position_ <= kEndLength) addAll(firstQualities_, counts.qualities);

  std::uint64_t total = 0;
  std::uint64_t codes = 0;
  for (std::size_t code = kLowestCode; code < kQualityCodes; ++code) {
    const std::uint64_t count = counts.qualities[code];
    total += count;
    codes += count * code;
    qualities_[code] += count;
  }
  if (total == 0) return;
  ++sums.positions;
  sums.means += static_cast<double>(codes) / static_cast<double>(total);
  if (total <= kTooFew) return;
  ++sums.judged;
  // One walk for all: they ascend.
  std::size_t code = kLowestCode;
  std::uint64_t met = counts.qualities[code];
  for (std::size_t i = 0; i < kQuantiles.size(); ++i) {
    const std::uint64_t wanted = total * kQuantiles[i] / 100;
    while (met < wanted) {
      met += counts.qualities[++code];
    }
    sums.quantiles[i] += code;
  }
}

std::vector<GroupProfile> PositionProfile::groups(int phredOffset) const {
  std::vector<GroupProfile> profile;
  for (std::size_t group = 0; group < groups_.size(); ++group) {
    const Sums& sums = sums_[group];
    GroupProfile& one = profile.emplace_back();
    one.positions = groups_[group];
    one.meanPhred = sums.means / static_cast<double>(sums.positions) - phredOffset;
    if (sums.judged > 0) {
      const auto mean = [&](std::size_t quantile) {
        return static_cast<double>(sums.quantiles[quantile]) / static_cast<double>(sums.judged) - phredOffset;
      };
      one.quantiles = {mean(0), mean(1), mean(2), mean(3), mean(4)};
    }
    const std::uint64_t known =
        sums.bases[kBaseA] + sums.bases[kBaseC] + sums.bases[kBaseG] + sums.bases[kBaseT];
    if (known > 0) {
      one.bases = {shareInPercent(sums.bases[kBaseA], known), shareInPercent(sums.bases[kBaseC], known),
                   shareInPercent(sums.bases[kBaseG], known), shareInPercent(sums.bases[kBaseT], known)};
    }
    one.nPercent = percentOf(sums.bases[kBaseN], known + sums.bases[kBaseN] + sums.bases[kBaseOther]);
  }
  return profile;
}

Verdict judgeQuality(const std::vector<GroupProfile>& profile) {
  if (profile.empty()) return Verdict::None;
  Verdict verdict = Verdict::Pass;
  for (const GroupProfile& group : profile) {
    if (!group.quantiles) continue;
    const QualityQuantiles& phred = *group.quantiles;
    if (phred.lowerQuartile < 5 || phred.median < 20) return Verdict::Fail;
    if (phred.lowerQuartile < 10 || phred.median < 25) verdict = Verdict::Warn;
  }
  return verdict;
}

Verdict judgeContent(const std::vector<GroupProfile>& profile) {
  double largest = 0;
  for (const GroupProfile& group : profile) {
    if (!group.bases) continue;
    const auto& [a, c, g, t] = *group.bases;
    largest = std::max({largest, std::abs(g - c), std::abs(a - t)});
  }
  return judgeAbove(largest, 10, 20);
}

Verdict judgeN(const std::vector<GroupProfile>& profile) {
  double largest = 0;
  for (const GroupProfile& group : profile) {
    largest = std::max(largest, group.nPercent);
  }
  return judgeAbove(largest, 5, 20);
}

}  // namespace genostat::analysis
