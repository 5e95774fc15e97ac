#include "standalone/statistics/quantiles.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <string>
#include <vector>

#include "standalone/statistics/value_counts.h"

namespace genostat::standalone {
namespace {

std::vector<double> cubes(int count) {
  std::vector<double> values;
  for (double i = count; i > 0; --i) {
    values.push_back(i * i * i / 7);
  }
  return values;
}

// Expected values: the definition in rational arithmetic on the doubles.
TEST(Quantiles, AgreeWithExactArithmetic) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  const std::array<Share, 10> shares = {
      shareOfPercent(0),  shareOfPercent(5),  shareOfTiles(1, 4), shareOfPercent(33.3), shareOfTiles(1, 3),
      shareOfTiles(4, 9), shareOfPercent(50), shareOfTiles(2, 3), shareOfPercent(95.5), shareOfPercent(100)};
  struct Row {
    std::string what;
    std::vector<double> values;
    std::array<double, 10> expected;
  };
  const std::vector<Row> rows = {
      {"seven, a missing value between",
       {7.5, -2.25, 3.1, kNaN, 9.0, 0.7, 3.1, 12.4},
       {-2.25, -2.25, 0.7, 2.2936, 2.2999999999999998, 3.1, 3.1, 8, 12.4, 12.4}},
      {"ties", {3, 1, 2, 2, 2, 3, 3, 3, 1, 2}, {1, 1, 1.75, 2, 2, 2, 2, 3, 3, 3}},
      {"one", {kNaN, 4.5}, {4.5, 4.5, 4.5, 4.5, 4.5, 4.5, 4.5, 4.5, 4.5, 4.5}},
      {"two, and zero exactly between", {-1, 2}, {-1, -1, -1, -1, -1, 0, 0.5, 2, 2, 2}},
      {"near the end of double's range",
       {1e308, -1e308, 1.5e308},
       {-1e308, -1e308, -1e308, -3.36e307, -3.3333333333333332e307, 5.5555555555555558e307, 1e308,
        1.3333333333333333e308, 1.5e308, 1.5e308}},
      {"many: whole ranks",
       cubes(999999),
       {0.14285714285714285, 17857142857142.855, 2232142857142857.2, 5275148142857143, 5291005291037037,
        12541642171318832, 17857142857142858, 42328042328105816, 1.2442626785714286e+17,
        1.4285671428614285e+17}},
  };
  for (const Row& row : rows) {
    const std::vector<double> sorted = sortedValues(row.values);
    for (std::size_t i = 0; i < shares.size(); ++i) {
      EXPECT_DOUBLE_EQ(quantile(sorted, shares.at(i)), row.expected.at(i))
          << row.what << ", " << shares.at(i).percent;
    }
  }
  // Shares that are equal are found to be so, whichever way they come.
  for (int tile = 1; tile < 1000; ++tile) {
    EXPECT_EQ(shareOfTiles(tile, 1000).percent, std::stod(std::to_string(tile) + "e-1"));
    EXPECT_EQ(shareOfTiles(tile * 7, 7000).percent, shareOfTiles(tile, 1000).percent);
  }
}

TEST(Quantiles, CountEqualValues) {
  const std::vector<double> sorted = {-1, -0.0, 0.0, 2, 3, 3};
  const auto counts = countValues(std::span(sorted));
  std::vector<std::size_t> sizes;
  for (const auto& count : counts) {
    sizes.push_back(count.count);
  }
  EXPECT_EQ(sizes, (std::vector<std::size_t>{1, 2, 1, 2}));
  const Mode<double> mode = findMode(std::span(counts));
  EXPECT_EQ(mode.value, 0);
  EXPECT_FALSE(mode.unique);
}

}  // namespace
}  // namespace genostat::standalone
