// What a FREQUENCIES command asks for, and the output that answers it.
#pragma once

#include <cstddef>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/variable_statistics.h"
#include "standalone/statistics/quantiles.h"

namespace genostat::standalone {

struct FrequenciesRequest {
  enum class RowOrder { AscendingValues, DescendingValues, AscendingCounts, DescendingCounts };

  std::vector<const Column*> variables;
  std::vector<Statistic> statistics;  // in the order of the table's rows
  std::vector<Share> percentiles;     // ascending, each once
  bool tables = true;
  RowOrder rowOrder = RowOrder::AscendingValues;
  std::size_t mostRows = 1000;  // a variable with more distinct values has no table
  bool histograms = false;
  bool normalCurves = false;
  bool byVariable = false;  // all output of a variable together
};

// Computes what is asked for and adds it to the output: a table of statistics, then for each
// variable a table of its values and a histogram. Notes say what had to be left out.
void showFrequencies(const FrequenciesRequest& request, OutputDocument& output);

}  // namespace genostat::standalone
