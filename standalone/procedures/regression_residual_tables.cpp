#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/procedures/regression_cells.h"
#include "standalone/procedures/regression_tables.h"
#include "standalone/procedures/table_cells.h"

namespace genostat::standalone {

namespace {

// A curve of more points looks no different.
constexpr std::size_t kMostResidualPoints = 1000;

const LinearFit& lastFit(const RegressionResult& result) {
  return result.selection.steps.back().fit;
}

}  // namespace

PivotTable buildResidualStatistics(const RegressionResult& result, const ResidualSummary& residuals) {
  PivotTable table = beginTable(result, translated("Residuals Statistics"));
  table.columns = {{translated("Minimum"), {}},
                   {translated("Maximum"), {}},
                   {translated("Mean"), {}},
                   {translated("Std. Deviation"), {}},
                   {"N", {}}};
  const auto addRow = [&](const std::string& label, const Spread* spread) {
    table.rows.push_back({label, {}});
    std::vector<CellValue>& cells = table.cells.emplace_back(4);
    if (spread != nullptr) {
      const int decimals = decimalsForSizes({spread->deviation.value_or(0)});
      cells = {cellOf(spread->minimum, decimals), cellOf(spread->maximum, decimals),
               cellOf(spread->mean, decimals), cellOf(spread->deviation, decimals)};
    }
    cells.push_back(countCell(result.system.caseCount()));
  };
  const auto addressOf = [](const std::optional<Spread>& spread) { return spread ? &*spread : nullptr; };
  addRow(translated("Predicted Value"), &residuals.predicted);
  addRow(translated("Residual"), &residuals.residual);
  addRow(translated("Std. Predicted Value"), addressOf(residuals.standardizedPredicted));
  addRow(translated("Std. Residual"), addressOf(residuals.standardizedResidual));
  if (!residuals.standardizedResidual) {
    table.rows.back().mark = markOf(table.footnotes, translated("All residuals are zero"));
  }
  return table;
}

PivotTable buildPressTable(const RegressionResult& result, const ResidualSummary& residuals) {
  const LinearFit& fit = lastFit(result);
  PivotTable table;
  table.title = translated("Prediction Sum of Squares");
  table.titleMark = markOf(
      table.footnotes, translated("PRESS: the squared errors when each case is predicted by the regression "
                                  "on all other cases; its share "
                                  "of the total sum of squares, taken from 1, is the predicted R Square"));
  table.columns = {
      {"PRESS", {}}, {translated("Residual Sum of Squares"), {}}, {translated("Predicted R Square"), {}}};
  table.rows.push_back({result.dependent.name, {}});
  const int decimals = decimalsForSizes({fit.residualSquares});
  CellValue press = cellOf(residuals.press, decimals);
  if (!residuals.press) {
    table.rows.back().mark = markOf(
        table.footnotes,
        translated("Without one of the cases the others do not determine the regression (a leverage of 1)"));
  }
  std::optional<double> predicted;
  if (residuals.press) predicted = 1 - *residuals.press / fit.totalSquares;
  table.cells.push_back({std::move(press), cellOf(fit.residualSquares, decimals), fractionCellOf(predicted)});
  return table;
}

Chart buildNormalPlot(const RegressionResult& result, std::vector<double> standardized) {
  std::ranges::sort(standardized);
  const std::size_t cases = standardized.size();
  const std::size_t shown = std::min(cases, kMostResidualPoints);
  ProbabilityPlot plot;
  plot.variable = translated("Regression Standardized Residual");
  for (std::size_t i = 0; i < shown; ++i) {
    // The first, the last, and evenly between them.
    const std::size_t rank = shown < 2 ? 0 : i * (cases - 1) / (shown - 1);
    const double observed = (static_cast<double>(rank) + 1 - 0.375) / (static_cast<double>(cases) + 0.25);
    plot.points.push_back({observed, normalProbability(standardized[rank])});
  }
  Chart chart;
  chart.title =
      translated("Normal P-P Plot of Regression Standardized Residual: {1}", {result.dependent.name});
  if (shown < cases) {
    chart.notes.push_back(
        translated("{1} of {2} cases are shown, evenly from the smallest residual to the largest.",
                   {std::to_string(shown), std::to_string(cases)}));
  }
  chart.data = std::move(plot);
  return chart;
}

}  // namespace genostat::standalone
