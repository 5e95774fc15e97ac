#include "analysis/metrics/gc_content.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <ranges>

#include "analysis/metrics/sums.h"

namespace genostat::analysis {

namespace {

struct Interval {
  std::size_t first = 0;
  std::size_t last = 0;
};

std::size_t wholePercent(double count, double n) {
  return static_cast<std::size_t>(std::floor(std::clamp(count, 0.0, n) * 100 / n + 0.5));
}

// The percentages that a count stands for; both ends grow with it.
Interval claimed(std::uint64_t n, std::uint64_t g) {
  const auto length = static_cast<double>(n);
  const auto count = static_cast<double>(g);
  return {wholePercent(count - 0.5, length), wholePercent(count + 0.5, length)};
}

// How many of the counts 0 to n fulfil `holds`, which is true up to some count and false above it.
template <typename Holds>
std::uint64_t countWhile(std::uint64_t n, Holds holds) {
  return *std::ranges::partition_point(std::views::iota(std::uint64_t{0}, n + 1),
                                       [&](std::uint64_t count) { return holds(claimed(n, count)); });
}

// How many of the counts 0 to n claim the percentage.
std::uint64_t claimants(std::uint64_t n, std::size_t percent) {
  return countWhile(n, [&](Interval interval) { return interval.first <= percent; }) -
         countWhile(n, [&](Interval interval) { return interval.last < percent; });
}

// The middle of the percentages around the maximum that come within a tenth of it; the maximum itself where
// they reach an end of the scale and so have no middle.
double modeOf(const GcDistribution& observed) {
  const auto end = static_cast<std::ptrdiff_t>(observed.size());
  const auto highest = std::max_element(observed.begin(), observed.end()) - observed.begin();
  const auto nearMaximum = [&](std::ptrdiff_t percent) {
    return observed[static_cast<std::size_t>(percent)] > 0.9 * observed[static_cast<std::size_t>(highest)];
  };
  std::ptrdiff_t above = highest;
  while (above < end && nearMaximum(above)) {
    ++above;
  }
  std::ptrdiff_t below = highest - 1;
  while (below >= 0 && nearMaximum(below)) {
    --below;
  }
  if (above == end || below < 0) return static_cast<double>(highest);
  return static_cast<double>(below + above) / 2;
}

}  // namespace

void GcCounts::claim(Claims& claims, std::uint64_t n, std::uint64_t g, std::uint64_t reads) {
  const Interval interval = claimed(n, g);
  claims[interval.first] += reads;
  claims[interval.last + 1] -= reads;
}

void GcCounts::merge(const GcCounts& other) {
  for (std::size_t row = 0; row < counted_.size(); ++row) {
    addAll(counted_[row], other.counted_[row]);
  }
  for (const auto& [n, others] : other.claims_) {
    addAll(claims_[n], others);
  }
}

GcDistribution GcCounts::distribution() const {
  GcDistribution sum{};
  const auto addLength = [&](std::uint64_t n, const Claims& claims) {
    std::uint64_t reads = 0;
    for (std::size_t percent = 0; percent < sum.size(); ++percent) {
      reads += claims[percent];
      if (reads == 0) continue;
      sum[percent] += static_cast<double>(reads) / static_cast<double>(claimants(n, percent));
    }
  };
  for (const std::vector<std::uint64_t>& row : counted_) {
    if (row.empty()) continue;
    const std::uint64_t n = row.size() - 1;
    Claims claims{};
    for (std::uint64_t g = 0; g <= n; ++g) {
      claim(claims, n, g, row[static_cast<std::size_t>(g)]);
    }
    addLength(n, claims);
  }
  for (const auto& [n, claims] : claims_) {
    addLength(n, claims);
  }
  return sum;
}

// The model is put around the mode, not the mean, so that a second hill does not shift it; its width is that
// of all reads around the mode. Nothing guards the divisions: one read alone has no width, and what follows
// from that (infinite or not a number) is reported as it is.
std::optional<GcSummary> fitGcModel(const GcDistribution& observed) {
  const double total = std::accumulate(observed.begin(), observed.end(), 0.0);
  if (total == 0) return std::nullopt;
  GcSummary summary{.observed = observed};
  const double mode = modeOf(observed);
  double squares = 0;
  for (std::size_t i = 0; i < observed.size(); ++i) {
    const double distance = static_cast<double>(i) - mode;
    squares += distance * distance * observed[i];
  }
  const double variance = squares / (total - 1);
  double differences = 0;
  for (std::size_t i = 0; i < observed.size(); ++i) {
    const double distance = static_cast<double>(i) - mode;
    const double density =
        std::exp(-(distance * distance) / (2 * variance)) / std::sqrt(2 * std::numbers::pi * variance);
    summary.model[i] = density * total;
    differences += std::abs(summary.model[i] - observed[i]);
  }
  summary.deviation = 100 * differences / total;
  return summary;
}

}  // namespace genostat::analysis
