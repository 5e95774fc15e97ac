// Two passes, the second over deviations from the rounded means. What the rounding leaves over
// is known, Σ(x - m), and taken off the sums: T. F. Chan, G. H. Golub, R. J. LeVeque,
// "Algorithms for computing the sample variance", The American Statistician 37 (1983) 242-247.

#include "standalone/statistics/cross_products.h"

#include <algorithm>
#include <cmath>

namespace genostat::standalone {

namespace {

using Variables = std::span<const std::span<const double>>;

// Calls `use` with the number of each case that counts.
template <typename Use>
void forEachComplete(Variables variables, Use use) {
  const std::size_t cases = variables.empty() ? 0 : variables.front().size();
  for (std::size_t i = 0; i < cases; ++i) {
    const bool complete = std::ranges::none_of(
        variables, [i](std::span<const double> variable) { return std::isnan(variable[i]); });
    if (complete) use(i);
  }
}

}  // namespace

CrossProducts computeCrossProducts(Variables variables) {
  const std::size_t k = variables.size();
  CrossProducts products{k, 0, std::vector<DoubleDouble>(k), std::vector<DoubleDouble>(k * k)};
  forEachComplete(variables, [&](std::size_t i) {
    ++products.caseCount;
    for (std::size_t j = 0; j < k; ++j) {
      products.means[j] = products.means[j] + DoubleDouble{variables[j][i], 0};
    }
  });
  if (products.caseCount == 0) return products;
  const auto n = static_cast<double>(products.caseCount);
  std::vector<double> centres(k);
  for (std::size_t j = 0; j < k; ++j) {
    products.means[j] = products.means[j] / n;
    centres[j] = products.means[j].high;
  }

  std::vector<DoubleDouble> deviations(k);
  std::vector<DoubleDouble> rests(k);  // Σ(x - centre)
  forEachComplete(variables, [&](std::size_t i) {
    for (std::size_t j = 0; j < k; ++j) {
      deviations[j] = exactSum(variables[j][i], -centres[j]);
      rests[j] = rests[j] + deviations[j];
    }
    for (std::size_t row = 0; row < k; ++row) {
      for (std::size_t column = row; column < k; ++column) {
        DoubleDouble& sum = products.sums[row * k + column];
        sum = sum + deviations[row] * deviations[column];
      }
    }
  });
  for (std::size_t row = 0; row < k; ++row) {
    for (std::size_t column = row; column < k; ++column) {
      DoubleDouble& sum = products.sums[row * k + column];
      sum = sum - rests[row] * rests[column] / n;
      products.sums[column * k + row] = sum;
    }
  }
  return products;
}

}  // namespace genostat::standalone
