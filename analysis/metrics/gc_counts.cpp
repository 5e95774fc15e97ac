#include "analysis/metrics/gc_counts.h"

#include <algorithm>
#include <cmath>

namespace genostat::analysis {

namespace {

struct Interval {
  std::size_t first = 0;
  std::size_t last = 0;
};

std::size_t percentOf(double count, double n) {
  return static_cast<std::size_t>(std::floor(std::clamp(count, 0.0, n) * 100 / n + 0.5));
}

// The percentages that a count stands for; both ends grow with it.
Interval claimed(std::uint64_t n, std::uint64_t g) {
  const auto length = static_cast<double>(n);
  const auto count = static_cast<double>(g);
  return {percentOf(count - 0.5, length), percentOf(count + 0.5, length)};
}

// How many of the counts 0 to n fulfil `holds`, which is true up to some count and false above it.
template <typename Holds>
std::uint64_t countWhile(std::uint64_t n, Holds holds) {
  std::uint64_t from = 0;
  std::uint64_t to = n + 1;
  while (from < to) {
    const std::uint64_t middle = from + (to - from) / 2;
    if (holds(claimed(n, middle))) {
      from = middle + 1;
    } else {
      to = middle;
    }
  }
  return from;
}

// How many of the counts 0 to n claim the percentage.
std::uint64_t claimants(std::uint64_t n, std::size_t percent) {
  return countWhile(n, [&](Interval interval) { return interval.first <= percent; }) -
         countWhile(n, [&](Interval interval) { return interval.last < percent; });
}

}  // namespace

void GcCounts::claim(Claims& claims, std::uint64_t n, std::uint64_t g, std::uint64_t reads) {
  const Interval interval = claimed(n, g);
  claims[interval.first] += reads;
  claims[interval.last + 1] -= reads;
}

void GcCounts::merge(const GcCounts& other) {
  for (std::size_t row = 0; row < counted_.size(); ++row) {
    std::vector<std::uint64_t>& mine = counted_[row];
    const std::vector<std::uint64_t>& others = other.counted_[row];
    if (mine.empty()) mine.resize(others.size());
    for (std::size_t g = 0; g < others.size(); ++g) {
      mine[g] += others[g];
    }
  }
  for (const auto& [n, others] : other.claims_) {
    Claims& mine = claims_[n];
    for (std::size_t i = 0; i < others.size(); ++i) {
      mine[i] += others[i];
    }
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

}  // namespace genostat::analysis
