// What a REGRESSION command asks for.
#pragma once

#include <bitset>
#include <cstddef>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/session/command_context.h"
#include "standalone/statistics/predictor_selection.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

enum RegressionStatistic : std::size_t {
  kRegressionCoefficients,
  kRegressionExcluded,
  kRegressionSummary,
  kRegressionAnova,
  kRegressionChange,
  kRegressionDiagnostics,  // eigenvalues and variance proportions
  kRegressionTolerance,
  kRegressionInterval,
  kRegressionCorrelations,  // zero-order, partial and part, of each predictor with the dependent
  kRegressionStatisticCount
};

struct RegressionRequest {
  std::vector<const Column*> dependents;  // one regression each
  std::vector<const Column*> predictors;  // of all lists, each once
  std::vector<SelectionBlock> blocks;     // of indices into predictors
  SelectionCriteria criteria;
  std::bitset<kRegressionStatisticCount> statistics;
  double confidenceLevel = 0.95;
  bool throughOrigin = false;
  bool residuals = false;
  bool press = false;
  bool normalPlot = false;
  // Where warnings about the data point to.
  SourceRange dependentPlace;
  SourceRange methodPlace;
};

// Throws CommandError at whatever the command has wrong.
RegressionRequest parseRegression(CommandContext& context, const Dataset& dataset);

}  // namespace genostat::standalone
