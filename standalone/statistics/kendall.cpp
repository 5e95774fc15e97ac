// W. R. Knight, "A computer method for calculating Kendall's tau with ungrouped data", Journal of
// the American Statistical Association 61 (1966) 436-439: with the cases sorted by x, and by y where x
// is tied, the discordant pairs are those whose y stand in the wrong order, which a merge sort counts.
//
// Both variables come with their order known, so that the first sorting is no more than a distribution:
// taking the cases by ascending y and putting each after the last one of its x.
//
// Counts of pairs are whole numbers of 64 bits; cubes of counts, and differences of such, are
// numbers of 32 digits, in which they are exact.

#include "standalone/statistics/kendall.h"

#include <algorithm>
#include <boost/math/distributions/normal.hpp>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

namespace genostat::standalone {

namespace {

// What the variance and the coefficient need of the groups of tied values.
class TieSums {
 public:
  void add(std::uint64_t tied) {
    if (tied < 2) return;
    pairs_ += tied * (tied - 1) / 2;
    const auto t = static_cast<double>(tied);
    const DoubleDouble ordered = exactProduct(t, t - 1);
    triples_ = triples_ + ordered * DoubleDouble{t - 2, 0};
    weights_ = weights_ + ordered * DoubleDouble{2 * t + 5, 0};
  }

  std::uint64_t pairs() const { return pairs_; }
  // Σ t(t-1)(t-2)
  const DoubleDouble& triples() const { return triples_; }
  // Σ t(t-1)(2t+5)
  const DoubleDouble& weights() const { return weights_; }

 private:
  std::uint64_t pairs_ = 0;
  DoubleDouble triples_;
  DoubleDouble weights_;
};

// Merges two sorted runs and counts the pairs that stood in the wrong order. Without branches, which
// nothing could predict.
std::uint64_t mergeRuns(std::span<const std::uint32_t> left, std::span<const std::uint32_t> right,
                        std::uint32_t* merged) {
  std::uint64_t wrong = 0;
  std::size_t i = 0;
  std::size_t j = 0;
  while (i < left.size() && j < right.size()) {
    const bool takeRight = right[j] < left[i];
    *merged++ = takeRight ? right[j] : left[i];
    wrong += takeRight ? left.size() - i : 0;
    j += takeRight ? 1 : 0;
    i += takeRight ? 0 : 1;
  }
  std::copy(right.begin() + static_cast<std::ptrdiff_t>(j), right.end(),
            std::copy(left.begin() + static_cast<std::ptrdiff_t>(i), left.end(), merged));
  return wrong;
}

// Sorts a short run by insertion; as mergeRuns.
std::uint64_t insertionSort(std::span<std::uint32_t> run) {
  std::uint64_t wrong = 0;
  for (std::size_t i = 1; i < run.size(); ++i) {
    const std::uint32_t value = run[i];
    std::size_t place = i;
    for (; place > 0 && run[place - 1] > value; --place) {
      run[place] = run[place - 1];
    }
    run[place] = value;
    wrong += i - place;
  }
  return wrong;
}

// Pairs of which the larger value stands first.
std::uint64_t countInversions(std::vector<std::uint32_t> values) {
  constexpr std::size_t kShortRun = 8;
  const std::size_t n = values.size();
  std::uint64_t inversions = 0;
  for (std::size_t begin = 0; begin < n; begin += kShortRun) {
    inversions += insertionSort(std::span(values).subspan(begin, std::min(kShortRun, n - begin)));
  }
  std::vector<std::uint32_t> merged(n);
  for (std::size_t width = kShortRun; width < n; width *= 2) {
    for (std::size_t begin = 0; begin < n; begin += 2 * width) {
      const std::span<const std::uint32_t> both =
          std::span(values).subspan(begin, std::min(2 * width, n - begin));
      const std::size_t half = std::min(width, both.size());
      inversions += mergeRuns(both.first(half), both.subspan(half), merged.data() + begin);
    }
    values.swap(merged);
  }
  return inversions;
}

// The groups of y in the order of x, and of y where x is tied, and what ties there are.
struct SortedPairs {
  std::vector<std::uint32_t> groupsOfY;
  TieSums tiesOfX;
  TieSums tiesOfY;
  std::uint64_t tiedInBoth = 0;  // pairs
};

SortedPairs sortPairs(const RankedVariable& x, const RankedVariable& y, const std::vector<bool>& included) {
  SortedPairs sorted;
  std::vector<std::uint32_t> ends(x.groupCount + 1);  // where the next case of each group of x goes
  std::vector<std::uint32_t> countsOfY(y.groupCount);
  for (const std::uint32_t number : y.order) {
    if (!included[number]) continue;
    ++ends[x.groups[number] + 1];
    ++countsOfY[y.groups[number]];
  }
  for (const std::uint32_t count : countsOfY) {
    sorted.tiesOfY.add(count);
  }
  for (std::size_t group = 0; group < x.groupCount; ++group) {
    sorted.tiesOfX.add(ends[group + 1]);
    ends[group + 1] += ends[group];
  }
  sorted.groupsOfY.resize(ends.back());
  for (const std::uint32_t number : y.order) {
    if (included[number]) sorted.groupsOfY[ends[x.groups[number]]++] = y.groups[number];
  }
  std::size_t begin = 0;
  for (std::size_t group = 0; group < x.groupCount; ++group) {
    for (const std::size_t end = ends[group]; begin < end;) {
      std::size_t next = begin + 1;
      while (next < end && sorted.groupsOfY[next] == sorted.groupsOfY[begin]) {
        ++next;
      }
      const std::uint64_t tied = next - begin;
      sorted.tiedInBoth += tied * (tied - 1) / 2;
      begin = next;
    }
  }
  return sorted;
}

double varianceOfScore(double n, const TieSums& x, const TieSums& y) {
  const DoubleDouble pairs = exactProduct(n, n - 1);
  const double untied = (pairs * DoubleDouble{2 * n + 5, 0} - x.weights() - y.weights()).value() / 18;
  const double tiedPairs =
      2 * static_cast<double>(x.pairs()) * static_cast<double>(y.pairs()) / pairs.value();
  if (n < 3) return untied + tiedPairs;
  return untied + tiedPairs + x.triples().value() * y.triples().value() / (9 * pairs.value() * (n - 2));
}

}  // namespace

Correlation kendallTauB(const RankedVariable& x, const RankedVariable& y, const std::vector<bool>& included) {
  SortedPairs sorted = sortPairs(x, y, included);
  const std::uint64_t n = sorted.groupsOfY.size();
  Correlation result;
  result.caseCount = n;
  if (n < 2) {
    result.obstacle = Correlation::Obstacle::TooFewCases;
    return result;
  }
  const std::uint64_t pairs = n * (n - 1) / 2;
  const std::uint64_t differInX = pairs - sorted.tiesOfX.pairs();
  const std::uint64_t differInY = pairs - sorted.tiesOfY.pairs();
  if (differInX == 0 || differInY == 0) {
    result.obstacle = Correlation::Obstacle::Constant;
    return result;
  }
  // Pairs that differ in both; those that are not discordant are concordant.
  const std::uint64_t differ = differInX - sorted.tiesOfY.pairs() + sorted.tiedInBoth;
  const std::uint64_t discordant = countInversions(std::move(sorted.groupsOfY));
  const std::uint64_t concordant = differ - discordant;
  const double score = concordant >= discordant ? static_cast<double>(concordant - discordant)
                                                : -static_cast<double>(discordant - concordant);
  const double root = std::sqrt(static_cast<double>(differInX) * static_cast<double>(differInY));
  result.coefficient = std::clamp(score / root, -1.0, 1.0);
  const double variance = varianceOfScore(static_cast<double>(n), sorted.tiesOfX, sorted.tiesOfY);
  const double z = std::abs(score / std::sqrt(variance));
  result.oneTailed = boost::math::cdf(boost::math::complement(boost::math::normal(), z));
  return result;
}

}  // namespace genostat::standalone
