// The model is put around the mode, not the mean, so that a second hill does not shift it; its width is that
// of all reads around the mode. Nothing guards the divisions: one read alone has no width, and what follows
// from that (infinite or not a number) is reported as it is.
#include "analysis/metrics/gc_model.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace genostat::analysis {

namespace {

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
