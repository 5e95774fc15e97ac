// Charts as procedures build them: what is to be seen, not how it is drawn.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "common/quality/checks.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// Bins of equal width over the values of one variable.
struct Histogram {
  std::string variable;
  double firstEdge = 0;  // in the variable's units, as is the width
  double binWidth = 1;
  std::vector<std::size_t> counts;  // [bin]; a value on an inner edge counts in the bin above it
  std::size_t validCount = 0;
  std::optional<double> mean;
  std::optional<double> deviation;
  bool normalCurve = false;  // drawn over the bars where mean and deviation exist
};

// Normal P-P plot: cumulative probabilities, each from 0 to 1.
struct ProbabilityPlot {
  struct Point {
    double observed = 0;
    double expected = 0;
  };
  std::string variable;  // "Regression Standardized Residual"
  std::vector<Point> points;
};

// Every variable against every other one.
struct ScatterMatrix {
  std::vector<std::string> variables;
  std::vector<std::vector<double>> values;  // [variable][case], not-a-number where missing
};

// The verdicts on the samples of a quality-control job.
struct VerdictMap {
  std::vector<std::string> samples;
  std::vector<std::string> checks;
  std::vector<std::vector<common::Verdict>> verdicts;  // [sample][check]
};

struct Chart {
  std::string title;
  std::vector<std::string> notes;  // below the chart: what was left out
  std::variant<Histogram, ProbabilityPlot, ScatterMatrix, VerdictMap> data;
};

// For readers who do not see the chart. A sentence or two: how many values, where they lie, what is wrong.
std::string summarizeChart(const Chart& chart);
// The data as a table, where they are bins or verdicts; nothing for clouds of points.
std::optional<PivotTable> chartAsTable(const Chart& chart);

}  // namespace genostat::standalone
