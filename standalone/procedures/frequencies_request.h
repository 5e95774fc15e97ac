// What a FREQUENCIES command asks for.
#pragma once

#include <bitset>
#include <cstddef>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/statistics/quantiles.h"

namespace genostat::standalone {

struct FrequenciesRequest {
  // In the order of the table's rows.
  enum Statistic : std::size_t {
    Mean,
    MeanError,
    Median,
    Mode,
    Deviation,
    Variation,  // the coefficient of variation
    Variance,
    Skewness,
    SkewnessError,
    Kurtosis,
    KurtosisError,
    Range,
    Minimum,
    Maximum,
    Sum,
    StatisticCount
  };
  using Statistics = std::bitset<StatisticCount>;
  enum class RowOrder { AscendingValues, DescendingValues, AscendingCounts, DescendingCounts };

  std::vector<const Column*> variables;
  Statistics statistics;
  std::vector<Share> percentiles;  // ascending, each once
  bool tables = true;
  RowOrder rowOrder = RowOrder::AscendingValues;
  std::size_t mostRows = 1000;  // a variable with more distinct values has no table
  bool histograms = false;
  bool normalCurves = false;
  bool byVariable = false;  // all output of a variable together
};

}  // namespace genostat::standalone
