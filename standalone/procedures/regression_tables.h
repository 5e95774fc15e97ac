// The tables and the chart of a regression.
#pragma once

#include <string>
#include <vector>

#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"
#include "standalone/procedures/regression_request.h"
#include "standalone/statistics/cross_products.h"
#include "standalone/statistics/linear_system.h"
#include "standalone/statistics/predictor_selection.h"
#include "standalone/statistics/residuals.h"

namespace genostat::standalone {

// The regression of one dependent variable; all parts outlive it.
struct RegressionResult {
  const RegressionRequest& request;
  const Column& dependent;
  std::size_t datasetCases;
  const CrossProducts& products;
  const LinearSystem& system;
  const Selection& selection;
};

// "c (tolerance below .0001), d (constant)"; empty when nothing was refused.
std::string describeRefusals(const RegressionResult& result);

// Each needs at least one step.
PivotTable buildEnteredTable(const RegressionResult& result);
PivotTable buildModelSummary(const RegressionResult& result);
PivotTable buildRegressionAnova(const RegressionResult& result);
PivotTable buildCoefficients(const RegressionResult& result);
PivotTable buildCollinearityDiagnostics(const RegressionResult& result);

// Without a step: of the model that has no predictors. No rows when nothing is excluded.
PivotTable buildExcludedTable(const RegressionResult& result);

// Of the last model.
PivotTable buildResidualStatistics(const RegressionResult& result, const ResidualSummary& residuals);
PivotTable buildPressTable(const RegressionResult& result, const ResidualSummary& residuals);

// The observed cumulative proportion of the i-th smallest of n residuals is (i - 3/8) / (n + 1/4):
// G. Blom, "Statistical Estimates and Transformed Beta-Variables" (Wiley 1958).
Chart buildNormalPlot(const RegressionResult& result, std::vector<double> standardized);

}  // namespace genostat::standalone
