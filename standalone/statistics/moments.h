// Location, spread and shape of one variable.
#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace genostat::standalone {

// Empty members do not exist for the data: too few values, no spread, or beyond double's range.
//
// Variance s² = Σ(x - m)² / (n - 1); standard error of the mean s / √n.
// Skewness  G1 = n / ((n-1)(n-2)) · Σ z³,                                   z = (x - m) / s,
//   its standard error √(6n(n-1) / ((n-2)(n+1)(n+3))).
// Kurtosis  G2 = n(n+1) / ((n-1)(n-2)(n-3)) · Σ z⁴ - 3(n-1)² / ((n-2)(n-3)),
//   its standard error 2 · SE(G1) · √((n²-1) / ((n-3)(n+5))).
// Source: D. N. Joanes, C. A. Gill, "Comparing measures of sample skewness and kurtosis",
// The Statistician 47 (1998) 183-189; the standard errors hold for a normal population.
struct Moments {
  std::size_t count = 0;  // values that are not missing
  std::optional<double> minimum;
  std::optional<double> maximum;
  std::optional<double> range;
  std::optional<double> sum;
  std::optional<double> mean;
  std::optional<double> meanError;
  std::optional<double> standardDeviation;
  std::optional<double> variance;
  std::optional<double> skewness;
  std::optional<double> skewnessError;
  std::optional<double> kurtosis;
  std::optional<double> kurtosisError;
};

// How far to go: skewness and kurtosis cost as much again as the rest.
enum class MomentDetail { Spread, Shape };

// Not-a-number counts as missing. With MomentDetail::Spread the last four members stay empty.
Moments computeMoments(std::span<const double> values, MomentDetail detail = MomentDetail::Shape);

}  // namespace genostat::standalone
