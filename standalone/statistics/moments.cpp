// Two passes. The first finds the mean with a compensated sum, the second sums powers of the
// deviations from it, so that a large mean takes no digits from the spread. The deviations are
// scaled by the largest of them, so that their powers stay within double's range. What rounding
// the mean leaves over is small but known, Σ(x - m) / n, and the sums are shifted by it.
// Compensation: A. Neumaier, "Rundungsfehleranalyse einiger Verfahren zur Summation endlicher
// Summen", ZAMM 54 (1974) 39-51. Correction: T. F. Chan, G. H. Golub, R. J. LeVeque, "Algorithms
// for computing the sample variance", The American Statistician 37 (1983) 242-247.

#include "standalone/statistics/moments.h"

#include <algorithm>
#include <cmath>

namespace genostat::standalone {

namespace {

// A sum that remembers what each addition rounded away.
class CompensatedSum {
 public:
  void add(double value) {
    const double sum = sum_ + value;
    lost_ += std::abs(sum_) >= std::abs(value) ? (sum_ - sum) + value : (value - sum) + sum_;
    sum_ = sum;
  }

  double value() const { return sum_ + lost_; }

 private:
  double sum_ = 0;
  double lost_ = 0;
};

// Sums of the powers of z = (x - mean) / scale.
struct PowerSums {
  double second;
  double third;
  double fourth;
};

PowerSums sumPowers(std::span<const double> values, double n, double mean, double scale) {
  CompensatedSum first, second, third, fourth;
  for (const double value : values) {
    if (std::isnan(value)) continue;
    const double z = (value - mean) / scale;
    first.add(z);
    second.add(z * z);
    third.add(z * z * z);
    fourth.add(z * z * z * z);
  }
  const double shift = first.value() / n;
  const double s2 = second.value();
  const double s3 = third.value();
  return {s2 - n * shift * shift, s3 - 3 * shift * s2 + 2 * n * std::pow(shift, 3),
          fourth.value() - 4 * shift * s3 + 6 * shift * shift * s2 - 3 * n * std::pow(shift, 4)};
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

Moments computeMoments(std::span<const double> values) {
  Moments moments;
  CompensatedSum sum;
  double minimum = 0;
  double maximum = 0;
  for (const double value : values) {
    if (std::isnan(value)) continue;
    minimum = moments.count == 0 ? value : std::min(minimum, value);
    maximum = moments.count == 0 ? value : std::max(maximum, value);
    sum.add(value);
    ++moments.count;
  }
  if (moments.count == 0) return moments;
  const auto n = static_cast<double>(moments.count);
  double mean = sum.value() / n;
  if (minimum == maximum) mean = minimum;
  moments.minimum = finite(minimum);
  moments.maximum = finite(maximum);
  moments.range = finite(maximum - minimum);
  moments.sum = finite(sum.value());
  moments.mean = finite(mean);
  if (moments.count < 2 || !moments.mean) return moments;

  if (minimum == maximum) {
    moments.variance = moments.standardDeviation = moments.meanError = 0;
    return moments;
  }
  const double scale = std::max(maximum - mean, mean - minimum);
  const PowerSums sums = sumPowers(values, n, mean, scale);
  const double scaledDeviation = std::sqrt(sums.second / (n - 1));
  const double deviation = scaledDeviation * scale;
  moments.standardDeviation = finite(deviation);
  moments.variance = finite(deviation * deviation);
  moments.meanError = finite(deviation / std::sqrt(n));
  addShape(moments, sums, scaledDeviation);
  return moments;
}

}  // namespace genostat::standalone
