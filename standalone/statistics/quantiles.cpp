#include "standalone/statistics/quantiles.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "standalone/statistics/double_double.h"

namespace genostat::standalone {

namespace {

DoubleDouble wholePart(const DoubleDouble& number) {
  const double high = std::floor(number.high);
  if (high < number.high) return {high, 0};
  return exactSum(high, std::floor(number.low));
}

// ((denominator - rest) a + rest b) / denominator, exact before it is rounded: between -1 and 2 the
// share 1/3 is 0 and not some 1e-17.
double weightedAverage(double a, double b, const DoubleDouble& rest, double denominator) {
  constexpr double kMostForProducts = 1e280;
  if (std::max(std::abs(a), std::abs(b)) > kMostForProducts)
    return std::lerp(a, b, rest.value() / denominator);
  const DoubleDouble restOfA = DoubleDouble{denominator, 0} - rest;
  return ((restOfA * DoubleDouble{a, 0} + rest * DoubleDouble{b, 0}) / denominator).value();
}

}  // namespace

Share shareOfPercent(double percent) {
  constexpr int kMostDecimals = 9;
  double power = 1;
  for (int decimals = 0; decimals <= kMostDecimals; ++decimals, power *= 10) {
    const double whole = std::nearbyint(percent * power);
    if (whole / power == percent) return {percent, whole, 100 * power};
  }
  return {percent, percent, 100};
}

Share shareOfTiles(int tile, int tiles) {
  return {100.0 * tile / tiles, static_cast<double>(tile), static_cast<double>(tiles)};
}

std::vector<double> sortedValues(std::span<const double> values) {
  std::vector<double> sorted;
  sorted.reserve(values.size());
  std::ranges::copy_if(values, std::back_inserter(sorted), [](double value) { return !std::isnan(value); });
  std::ranges::sort(sorted);
  return sorted;
}

double quantile(std::span<const double> sorted, const Share& share) {
  const auto n = static_cast<double>(sorted.size());
  const DoubleDouble scaledRank = exactProduct(n + 1, share.numerator);
  const DoubleDouble rank = wholePart(scaledRank / share.denominator);
  if (rank.value() < 1) return sorted.front();
  if (rank.value() >= n) return sorted.back();
  const DoubleDouble rest = scaledRank - exactProduct(rank.value(), share.denominator);
  const auto below = static_cast<std::size_t>(rank.value()) - 1;
  return weightedAverage(sorted[below], sorted[below + 1], rest, share.denominator);
}

}  // namespace genostat::standalone
