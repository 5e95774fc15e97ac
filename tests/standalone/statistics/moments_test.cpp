#include "standalone/statistics/moments.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace genostat::standalone {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kHuge = std::numeric_limits<double>::max();

std::vector<double> highMeanLowSpread() {
  std::vector<double> values = {10000000.2};
  for (int i = 0; i < 500; ++i) {
    values.insert(values.end(), {10000000.1, 10000000.3});
  }
  return values;
}

std::vector<double> squaresOnABillion() {
  std::vector<double> values;
  for (int i = 0; i < 50; ++i) {
    values.push_back(1e9 + i * i * 0.001);
  }
  return values;
}

// Expected values: exact rational arithmetic on the doubles, roots with 60 digits.
// Not-a-number: must not exist.
struct Row {
  std::string what;
  std::vector<double> values;
  double count, mean, deviation, variance, skewness, skewnessError, kurtosis, kurtosisError;
};

TEST(Moments, AgreeWithExactArithmetic) {
  const std::vector<Row> rows = {
      {"plain, a missing value between",
       {2.5, 3.0, kNaN, -1.25, 10.0, 7.75, 0.5},
       6,
       3.75,
       4.3069710934716058296,
       18.55,
       0.54986704208796647395,
       0.84515425472851657751,
       -1.1211730153079387682,
       1.7407765595569783818},
      {"little spread on a large mean", highMeanLowSpread(), 1001, 10000000.200000000185,
       0.10000000055879354477, 0.010000000111758709267, 2.7967644727066309002e-11, 0.077305288032609523722,
       -2.0030030030030030032, 0.15445742775564285212},
      {"skewed on a larger mean", squaresOnABillion(), 50, 1000000000.8085000038, 0.73862879915042475189,
       0.54557250293439850867, 0.66919036981385750661, 0.33660070854935889105, -0.80836661738456794522,
       0.66190837451414799821},
      {"powers beyond double",
       {1e200, 2e200, 4e200, -3e200, 0.0},
       5,
       0.8e200,
       2.5884358211089568358e+200,
       kNaN,
       -0.50165719856644965812,
       0.91287092917527685576,
       0.79527734462018266875,
       2.0},
      {"nothing", {}, 0, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN},
      {"all missing", {kNaN, kNaN}, 0, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN},
      {"one", {0.1}, 1, 0.1, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN},
      {"two", {1, 2}, 2, 1.5, std::sqrt(0.5), 0.5, kNaN, kNaN, kNaN, kNaN},
      {"three", {1, 2, 3}, 3, 2, 1, 1, 0, std::sqrt(1.5), kNaN, kNaN},
      {"constant", {0.1, 0.1, 0.1, 0.1, 0.1, 0.1}, 6, 0.1, 0, 0, kNaN, kNaN, kNaN, kNaN},
      {"sums overflow", {kHuge, kHuge, -kHuge, kHuge}, 4, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN, kNaN},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.what);
    const Moments moments = computeMoments(row.values);
    EXPECT_EQ(static_cast<double>(moments.count), row.count);
    const auto expectNear = [](const char* name, const std::optional<double>& actual, double expected) {
      ASSERT_EQ(actual.has_value(), !std::isnan(expected)) << name;
      if (!actual) return;
      // The third moment of nearly symmetric data has no digits to compare but those of 1.
      EXPECT_LE(std::abs(*actual - expected), 2e-14 * std::max(std::abs(expected), 1e-2)) << name;
    };
    expectNear("mean", moments.mean, row.mean);
    expectNear("deviation", moments.standardDeviation, row.deviation);
    expectNear("variance", moments.variance, row.variance);
    expectNear("skewness", moments.skewness, row.skewness);
    expectNear("skewnessError", moments.skewnessError, row.skewnessError);
    expectNear("kurtosis", moments.kurtosis, row.kurtosis);
    expectNear("kurtosisError", moments.kurtosisError, row.kurtosisError);
  }
}

}  // namespace
}  // namespace genostat::standalone
