#include "standalone/statistics/histogram_bins.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "standalone/statistics/quantiles.h"

namespace genostat::standalone {

namespace {

constexpr double kMostBins = 60;
// Bins at least this many times as wide as the step of the values need no care for that step.
constexpr double kWideBin = 10;

// digit · 10^exponent; its multiples are the doubles nearest to the decimal numbers.
class NiceWidth {
 public:
  // The nearest to `width` by ratio.
  static NiceWidth near(double width) {
    const double exponent = std::floor(std::log10(width));
    NiceWidth nice{1, exponent + 1};
    for (const double digit : {5.0, 2.0, 1.0}) {
      // Nearer than the geometric mean of this one and the one above.
      if (width < std::sqrt(nice.multiple(1) * NiceWidth{digit, exponent}.multiple(1))) {
        nice = {digit, exponent};
      }
    }
    return nice;
  }

  NiceWidth(double digit, double exponent) : digit_(digit), exponent_(exponent) {}

  double multiple(double factor) const {
    return exponent_ < 0 ? factor * digit_ / std::pow(10.0, -exponent_)
                         : factor * digit_ * std::pow(10.0, exponent_);
  }

  NiceWidth wider() const {
    if (digit_ == 1) return {2, exponent_};
    return digit_ == 2 ? NiceWidth{5, exponent_} : NiceWidth{1, exponent_ + 1};
  }

 private:
  double digit_;
  double exponent_;
};

double wishedWidth(std::span<const double> sorted) {
  const auto n = static_cast<double>(sorted.size());
  const double range = sorted.back() - sorted.front();
  const double sturges = range / (1 + std::log2(n));
  const double quartiles = quantile(sorted, shareOfPercent(75)) - quantile(sorted, shareOfPercent(25));
  const double freedmanDiaconis = 2 * quartiles / std::cbrt(n);
  const double width = freedmanDiaconis > 0 ? std::min(sturges, freedmanDiaconis) : sturges;
  return std::max(width, range / kMostBins);
}

// Whether all values are whole multiples of 10^-decimals.
bool areMultiples(std::span<const double> sorted, int decimals) {
  const double power = std::pow(10.0, decimals);
  return std::ranges::all_of(
      sorted, [power](double value) { return std::nearbyint(value * power) / power == value; });
}

// One bin around a value that is the only one.
std::optional<HistogramBins> binAround(double value, std::size_t count) {
  const double tenth = std::abs(value) / 10;
  const double width = std::isnormal(tenth) ? NiceWidth::near(tenth).multiple(1) : 1.0;
  return HistogramBins{value - width / 2, width, {count}};
}

// `shift`: how far the edges lie below multiples of the width. `closed`: a value on the last edge
// needs no bin of its own.
HistogramBins countBetweenEdges(std::span<const double> sorted, const NiceWidth& nice, double shift,
                                bool closed) {
  const double width = nice.multiple(1);
  const auto edge = [&](double index) { return nice.multiple(index) - shift; };
  // Division may round across an edge.
  const auto binOf = [&](double value) {
    double index = std::floor((value + shift) / width);
    if (edge(index) > value) --index;
    return edge(index + 1) <= value ? index + 1 : index;
  };
  const double first = binOf(sorted.front());
  double last = binOf(sorted.back());
  if (closed && last > first && edge(last) == sorted.back()) --last;
  HistogramBins result{edge(first), width, {}};
  auto begin = sorted.begin();
  const auto bins = static_cast<std::size_t>(last - first) + 1;
  for (std::size_t bin = 1; bin <= bins; ++bin) {
    const double upper = edge(first + static_cast<double>(bin));
    const auto end = bin < bins ? std::lower_bound(begin, sorted.end(), upper) : sorted.end();
    result.counts.push_back(static_cast<std::size_t>(end - begin));
    begin = end;
  }
  return result;
}

}  // namespace

std::optional<HistogramBins> binValues(std::span<const double> sorted, int decimals) {
  if (sorted.empty()) return std::nullopt;
  const double range = sorted.back() - sorted.front();
  if (range == 0) return binAround(sorted.front(), sorted.size());
  constexpr double kMostSize = 1e300;
  constexpr double kMostIndex = 1e15;  // edges further from zero are no longer apart
  const double size = std::max(std::abs(sorted.front()), std::abs(sorted.back()));
  const double wished = wishedWidth(sorted);
  if (size > kMostSize || !std::isnormal(wished) || size / wished > kMostIndex) return std::nullopt;

  NiceWidth nice = NiceWidth::near(wished);
  while (range / nice.multiple(1) > kMostBins) {
    nice = nice.wider();
  }
  constexpr int kMostDecimals = 15;
  if (decimals < 0 || decimals > kMostDecimals || !areMultiples(sorted, decimals))
    return countBetweenEdges(sorted, nice, 0, true);
  const NiceWidth step(1, -decimals);
  if (nice.multiple(1) <= step.multiple(1))
    return countBetweenEdges(sorted, step, step.multiple(1) / 2, true);
  return countBetweenEdges(sorted, nice, 0, nice.multiple(1) >= kWideBin * step.multiple(1));
}

}  // namespace genostat::standalone
