// The numbers that FREQUENCIES shows of one variable.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "standalone/procedures/frequencies.h"
#include "standalone/statistics/histogram_bins.h"

namespace genostat::standalone {

// One row of a table of values.
struct ValueRow {
  std::string label;
  std::size_t count = 0;
};

struct VariableSummary {
  const Column* variable = nullptr;
  std::size_t validCount = 0;
  std::size_t missingCount = 0;
  VariableStatistics statistics;  // whatever is asked for
  bool severalModes = false;
  std::vector<std::optional<double>> percentiles;  // as in the request
  std::size_t distinctCount = 0;
  std::vector<ValueRow> values;  // ascending; empty when there are more than the request allows
  std::optional<HistogramBins> bins;
};

// String variables have counts and values only; an empty text is missing.
VariableSummary summarizeVariable(const Column& variable, const FrequenciesRequest& request);

// Labels of ascending numbers: with `decimals` decimals, in full where two would look the same.
std::vector<std::string> distinctLabels(const std::vector<double>& ascending, int decimals);

}  // namespace genostat::standalone
