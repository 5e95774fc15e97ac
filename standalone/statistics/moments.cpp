// Two passes. The first finds the mean, the second sums powers of the deviations from it, so that a
// large mean takes no digits from the spread. The deviations are scaled by a power of two near the
// largest of them, so that their powers stay within double's range. What rounding the mean leaves
// over is small but known, Σ(x - m) / n, and the sums are shifted by it: T. F. Chan, G. H. Golub,
// R. J. LeVeque, "Algorithms for computing the sample variance", The American Statistician 37
// (1983) 242-247.

#include "standalone/statistics/moments.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "standalone/statistics/moment_sums.h"

namespace genostat::standalone {

namespace {

// The sums about the mean itself, which lies `sums.first / n` beside the centre of `sums`.
PowerSums moveToMean(const PowerSums& sums, double n) {
  const double shift = sums.first / n;
  const double s2 = sums.second;
  const double s3 = sums.third;
  return {0, s2 - n * shift * shift, s3 - 3 * shift * s2 + 2 * n * std::pow(shift, 3),
          sums.fourth - 4 * shift * s3 + 6 * shift * shift * s2 - 3 * n * std::pow(shift, 4)};
}

std::optional<double> finite(double value) {
  return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
}

void addShape(Moments& moments, const PowerSums& sums, double scaledDeviation) {
  const auto n = static_cast<double>(moments.count);
  if (moments.count < 3) return;
  const double cubes = sums.third / std::pow(scaledDeviation, 3);
  const double skewnessError = std::sqrt(6 * n * (n - 1) / ((n - 2) * (n + 1) * (n + 3)));
  moments.skewness = finite(n / ((n - 1) * (n - 2)) * cubes);
  if (!moments.skewness) return;
  moments.skewnessError = skewnessError;
  if (moments.count < 4) return;
  const double fourths = sums.fourth / std::pow(scaledDeviation, 4);
  moments.kurtosis = finite(n * (n + 1) / ((n - 1) * (n - 2) * (n - 3)) * fourths -
                            3 * (n - 1) * (n - 1) / ((n - 2) * (n - 3)));
  moments.kurtosisError = 2 * skewnessError * std::sqrt((n * n - 1) / ((n - 3) * (n + 5)));
}

}  // namespace

Moments computeMoments(std::span<const double> values, MomentDetail detail) {
  Moments moments;
  const Extent extent = measureExtent(values);
  moments.count = extent.count;
  if (moments.count == 0) return moments;
  const auto n = static_cast<double>(moments.count);
  const auto [minimum, maximum] = std::pair(extent.minimum, extent.maximum);
  const double sum = extent.sum.value();
  // Rounding must not carry the mean beyond the values.
  const double mean = std::clamp((extent.sum / n).value(), minimum, maximum);
  moments.minimum = finite(minimum);
  moments.maximum = finite(maximum);
  moments.range = finite(maximum - minimum);
  moments.sum = finite(sum);
  moments.mean = finite(mean);
  if (moments.count < 2 || !moments.mean) return moments;

  if (minimum == maximum) {
    moments.variance = moments.standardDeviation = moments.meanError = 0;
    return moments;
  }
  constexpr int kMostScaling = 1000;
  const double largest = std::max(maximum - mean, mean - minimum);
  const int exponent = std::clamp(std::ilogb(largest), -kMostScaling, kMostScaling);
  const double scale = std::ldexp(1.0, -exponent);
  const PowerSums sums = moveToMean(
      detail == MomentDetail::Shape ? sumFourPowers(values, mean, scale) : sumTwoPowers(values, mean, scale),
      n);
  const double scaledDeviation = std::sqrt(sums.second / (n - 1));
  const double deviation = std::ldexp(scaledDeviation, exponent);
  moments.standardDeviation = finite(deviation);
  moments.variance = finite(std::ldexp(sums.second / (n - 1), 2 * exponent));
  moments.meanError = finite(deviation / std::sqrt(n));
  if (detail == MomentDetail::Shape) addShape(moments, sums, scaledDeviation);
  return moments;
}

}  // namespace genostat::standalone
