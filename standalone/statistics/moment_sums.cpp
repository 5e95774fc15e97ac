// Every sum runs in four lanes side by side, two vectors of two, each compensated: neither an
// addition that waits for the one before it nor a branch on a missing value keeps the processor
// from working on several values at once. The number of lanes is fixed, so that every machine finds
// the same digits. What an addition rounds away is found without a comparison (D. E. Knuth, "The Art
// of Computer Programming" 2, 4.2.2, theorem B) and summed beside the lane: T. Ogita, S. M. Rump,
// S. Oishi, "Accurate sum and dot product", SIAM J. Sci. Comput. 26 (2005) 1955-1988, algorithm 4.4.
// The result is as good as if computed with twice the digits and then rounded.

#include "standalone/statistics/moment_sums.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace genostat::standalone {

namespace {

// Two numbers that every operator takes at once.
using Pair [[gnu::vector_size(16)]] = double;
constexpr std::size_t kPairSize = 2;
constexpr std::size_t kGroupSize = 2 * kPairSize;

struct PairSum {
  Pair sums{};
  Pair lost{};

  void add(Pair values) {
    const Pair sum = sums + values;
    const Pair part = sum - sums;
    lost += (sums - (sum - part)) + (values - part);
    sums = sum;
  }
};

DoubleDouble total(const PairSum& first, const PairSum& second) {
  DoubleDouble total;
  for (const PairSum* sum : {&first, &second}) {
    for (std::size_t lane = 0; lane < kPairSize; ++lane) {
      total = total + exactSum(sum->sums[lane], sum->lost[lane]);
    }
  }
  return total;
}

struct ExtentPart {
  static constexpr double kInfinity = std::numeric_limits<double>::infinity();

  PairSum sum;
  Pair minima{kInfinity, kInfinity};
  Pair maxima{-kInfinity, -kInfinity};
  Pair counts{};

  // A missing value differs from itself, and no comparison with it holds.
  void add(Pair values) {
    minima = values < minima ? values : minima;
    maxima = values > maxima ? values : maxima;
    counts += values == values ? Pair{1, 1} : Pair{};
    sum.add(values == values ? values : Pair{});
  }
};

struct Scaling {
  Pair centre;
  Pair scale;

  Pair apply(Pair values) const {
    const Pair scaled = (values - centre) * scale;
    return values == values ? scaled : Pair{};
  }
};

struct TwoPowersPart {
  Scaling scaling;
  PairSum first{};
  PairSum second{};

  void add(Pair values) {
    const Pair z = scaling.apply(values);
    first.add(z);
    second.add(z * z);
  }
};

struct FourPowersPart {
  Scaling scaling;
  PairSum first{};
  PairSum second{};
  PairSum third{};
  PairSum fourth{};

  void add(Pair values) {
    const Pair z = scaling.apply(values);
    const Pair square = z * z;
    first.add(z);
    second.add(square);
    third.add(square * z);
    fourth.add(square * square);
  }
};

Pair load(const double* values) {
  Pair pair;
  std::memcpy(&pair, values, sizeof pair);
  return pair;
}

// Two parts that have added all values, turn about, and missing ones up to a whole group.
template <typename Part>
std::array<Part, 2> addAll(std::span<const double> values, const Part& empty) {
  Part first = empty;
  Part second = empty;
  const std::size_t whole = values.size() - values.size() % kGroupSize;
  for (std::size_t i = 0; i < whole; i += kGroupSize) {
    first.add(load(values.data() + i));
    second.add(load(values.data() + i + kPairSize));
  }
  std::array<double, kGroupSize> rest;
  rest.fill(std::numeric_limits<double>::quiet_NaN());
  std::ranges::copy(values.subspan(whole), rest.begin());
  first.add(load(rest.data()));
  second.add(load(rest.data() + kPairSize));
  return {first, second};
}

Scaling scalingOf(double centre, double scale) {
  return {Pair{centre, centre}, Pair{scale, scale}};
}

}  // namespace

Extent measureExtent(std::span<const double> values) {
  const auto [first, second] = addAll(values, ExtentPart{});
  const Pair counts = first.counts + second.counts;
  Extent extent;
  extent.count = static_cast<std::size_t>(counts[0] + counts[1]);
  if (extent.count == 0) return extent;
  extent.minimum = std::min({first.minima[0], first.minima[1], second.minima[0], second.minima[1]});
  extent.maximum = std::max({first.maxima[0], first.maxima[1], second.maxima[0], second.maxima[1]});
  extent.sum = total(first.sum, second.sum);
  return extent;
}

PowerSums sumTwoPowers(std::span<const double> values, double centre, double scale) {
  const auto [first, second] = addAll(values, TwoPowersPart{scalingOf(centre, scale)});
  return {total(first.first, second.first).value(), total(first.second, second.second).value(), 0, 0};
}

PowerSums sumFourPowers(std::span<const double> values, double centre, double scale) {
  const auto [first, second] = addAll(values, FourPowersPart{scalingOf(centre, scale)});
  return {total(first.first, second.first).value(), total(first.second, second.second).value(),
          total(first.third, second.third).value(), total(first.fourth, second.fourth).value()};
}

}  // namespace genostat::standalone
