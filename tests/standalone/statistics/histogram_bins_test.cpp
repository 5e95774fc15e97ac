#include "standalone/statistics/histogram_bins.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <sstream>
#include <string>
#include <vector>

#include "standalone/statistics/quantiles.h"

namespace genostat::standalone {
namespace {

std::string describe(const std::optional<HistogramBins>& bins) {
  if (!bins) return "none";
  std::ostringstream text;
  text << bins->firstEdge << " + " << bins->width << ":";
  for (const std::size_t count : bins->counts) {
    text << " " << count;
  }
  return text.str();
}

TEST(HistogramBins, HaveEdgesThatReadWell) {
  struct Row {
    std::string what;
    std::vector<double> values;
    int decimals;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {"nothing", {}, 0, "none"},
      {"one value", {48.25}, 2, "45.75 + 5: 1"},
      {"zeros", {0, 0}, 0, "-0.5 + 1: 2"},
      {"whole numbers in the middle of narrow bins", {1, 1, 2, 4}, 0, "0.5 + 1: 2 1 0 1"},
      {"values on edges, the last of them closed",
       {0.1, 0.3, 0.3, 0.5, 0.70001, 0.9},
       5,
       "0 + 0.2: 1 2 1 1 1"},
      {"a whole number on the last edge of wider bins has a bin",
       {0, 3, 5, 7, 10, 10},
       0,
       "0 + 2: 1 1 1 1 0 2"},
      {"mostly equal", {5, 5, 5, 5, 5, 5, 9}, 0, "4.5 + 1: 6 0 0 0 1"},
      {"neighbours in double", {1, std::nextafter(1, 2)}, 20, "none"},
      {"beyond double", {-1.7e308, 1.7e308}, 0, "none"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(describe(binValues(sortedValues(row.values), row.decimals)), row.expected) << row.what;
  }
}

TEST(HistogramBins, HoldEveryValueBetweenTheirEdges) {
  for (const double scale : {1e-9, 0.37, 1.0, 2.5e12}) {
    for (const int count : {2, 10, 1000, 30000}) {
      std::vector<double> values;
      for (int i = 0; i < count; ++i) {
        values.push_back(scale * (std::fmod(i * 0.618033988749895, 1.0) + std::pow(i % 10, 3)));
      }
      const std::vector<double> sorted = sortedValues(values);
      const auto bins = binValues(sorted, 6);
      ASSERT_TRUE(bins) << scale << ", " << count;
      const auto size = bins->counts.size();
      EXPECT_EQ(std::accumulate(bins->counts.begin(), bins->counts.end(), 0U), sorted.size());
      EXPECT_LE(size, 62U);
      EXPECT_GE(size, count < 1000 ? 2U : 9U) << scale << ", " << count;
      const double slack = bins->width * 1e-9;
      EXPECT_LE(bins->firstEdge, sorted.front() + slack);
      EXPECT_GE(bins->firstEdge + bins->width * static_cast<double>(size), sorted.back() - slack);
    }
  }
}

}  // namespace
}  // namespace genostat::standalone
