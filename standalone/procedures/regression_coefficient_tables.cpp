// The coefficients of each model, and how near their predictors are to determining one another.

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/output/number_format.h"
#include "standalone/procedures/regression_cells.h"
#include "standalone/procedures/regression_tables.h"
#include "standalone/procedures/table_cells.h"
#include "standalone/statistics/collinearity.h"

namespace genostat::standalone {

namespace {

// Correlations of a predictor with the dependent: as they are, and with the others held constant
// in both, or in the predictor alone (partial and part).
void addCorrelations(const RegressionResult& result, const LinearFit& fit, std::size_t index,
                     std::vector<CellValue>& cells) {
  const Coefficient& coefficient = fit.coefficients[index];
  const std::size_t x = fit.predictors[index];
  const std::size_t y = static_cast<std::size_t>(
      result.request.predictors.size() +
      static_cast<std::size_t>(std::ranges::find(result.request.dependents, &result.dependent) -
                               result.request.dependents.begin()));
  // About zero, as all sums are then, where there is no constant.
  const double weight = fit.constant ? 0 : static_cast<double>(result.products.caseCount);
  const auto sum = [&](std::size_t i, std::size_t j) {
    return result.products.sum(i, j).value() +
           weight * result.products.means[i].value() * result.products.means[j].value();
  };
  cells.push_back(fractionCellOf(sum(x, y) / std::sqrt(sum(x, x)) / std::sqrt(sum(y, y))));
  if (coefficient.t) {
    const double freedom = std::sqrt(static_cast<double>(fit.residualFreedom));
    cells.push_back(fractionCellOf(*coefficient.t / std::hypot(*coefficient.t, freedom)));
  } else {
    cells.emplace_back();
  }
  cells.push_back(fractionCellOf(*coefficient.beta * std::sqrt(*coefficient.tolerance)));
}

// Rows of the table of coefficients; `index` counts the fit's predictors, none is the constant.
std::vector<CellValue> coefficientRow(const RegressionResult& result, const LinearFit& fit,
                                      std::optional<std::size_t> index) {
  const auto& statistics = result.request.statistics;
  const Coefficient& coefficient = index ? fit.coefficients[*index] : *fit.constant;
  const double value = coefficient.value.value();
  const double error = coefficient.standardError.value_or(value);
  const int decimals = decimalsForSizes({value, error});
  std::vector<CellValue> cells = {cellOf(value, decimals), cellOf(coefficient.standardError, decimals),
                                  fractionCellOf(coefficient.beta), cellOf(coefficient.t),
                                  fractionCellOf(coefficient.significance)};
  if (statistics.test(kRegressionInterval)) {
    std::optional<double> margin;
    if (coefficient.standardError) {
      margin = confidenceFactor(result.request.confidenceLevel, fit.residualFreedom) * error;
    }
    cells.push_back(margin ? cellOf(value - *margin, decimals) : CellValue());
    cells.push_back(margin ? cellOf(value + *margin, decimals) : CellValue());
  }
  if (statistics.test(kRegressionCorrelations)) {
    if (index) {
      addCorrelations(result, fit, *index, cells);
    } else {
      cells.resize(cells.size() + 3);
    }
  }
  if (statistics.test(kRegressionTolerance)) {
    const std::optional<double> tolerance = coefficient.tolerance;
    cells.push_back(fractionCellOf(tolerance));
    cells.push_back(tolerance ? cellOf(1 / *tolerance) : CellValue());
  }
  return cells;
}

std::string confidenceLabel(double level) {
  const std::string percent = withoutTrailingZeros(formatNumber(level * 100, {6, true}), 1);
  return translated("{1}% Confidence Interval for B", {percent});
}

}  // namespace

PivotTable buildCoefficients(const RegressionResult& result) {
  const auto& statistics = result.request.statistics;
  PivotTable table = beginTable(result, translated("Coefficients"), translated("Model"));
  table.columns = {{translated("Unstandardized Coefficients"), {{"B", {}}, {translated("Std. Error"), {}}}},
                   {translated("Standardized Coefficients"), {{translated("Beta"), {}}}},
                   {"t", {}},
                   {translated("Sig."), {}}};
  if (statistics.test(kRegressionInterval)) {
    table.columns.push_back({confidenceLabel(result.request.confidenceLevel),
                             {{translated("Lower Bound"), {}}, {translated("Upper Bound"), {}}}});
  }
  if (statistics.test(kRegressionCorrelations)) {
    table.columns.push_back(
        {translated("Correlations"),
         {{translated("Zero-order"), {}}, {translated("Partial"), {}}, {translated("Part"), {}}}});
  }
  if (statistics.test(kRegressionTolerance)) {
    table.columns.push_back(
        {translated("Collinearity Statistics"), {{translated("Tolerance"), {}}, {"VIF", {}}}});
  }
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    // A model from which all predictors were removed may be left with nothing.
    if (!fit.constant && fit.predictors.empty()) continue;
    Category& model = table.rows.emplace_back(Category{modelLabel(i), {}});
    const std::string missing = missingTestsNote(fit);
    if (!missing.empty()) model.mark = markOf(table.footnotes, missing);
    if (fit.constant) {
      model.children.push_back({translated(kConstantName), {}});
      table.cells.push_back(coefficientRow(result, fit, std::nullopt));
    }
    for (std::size_t j = 0; j < fit.predictors.size(); ++j) {
      model.children.push_back({result.request.predictors[fit.predictors[j]]->name, {}});
      table.cells.push_back(coefficientRow(result, fit, j));
    }
  }
  return table;
}

PivotTable buildCollinearityDiagnostics(const RegressionResult& result) {
  PivotTable table =
      beginTable(result, translated("Collinearity Diagnostics"), translated("Model, Dimension"));
  // A column for each predictor that some model has.
  std::vector<std::size_t> shown;
  for (const SelectionStep& step : result.selection.steps) {
    for (const std::size_t predictor : step.fit.predictors) {
      if (std::ranges::find(shown, predictor) == shown.end()) shown.push_back(predictor);
    }
  }
  Category proportions{translated("Variance Proportions"), {}};
  const std::size_t constants = result.request.throughOrigin ? 0 : 1;
  if (constants == 1) proportions.children.push_back({translated(kConstantName), {}});
  for (const std::size_t predictor : shown) {
    proportions.children.push_back({result.request.predictors[predictor]->name, {}});
  }
  table.columns = {
      {translated("Eigenvalue"), {}}, {translated("Condition Index"), {}}, std::move(proportions)};
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    const std::vector<CollinearityDimension> dimensions = computeCollinearity(result.products, fit);
    if (dimensions.empty()) continue;
    Category& model = table.rows.emplace_back(Category{modelLabel(i), {}});
    for (const CollinearityDimension& dimension : dimensions) {
      model.children.push_back({std::to_string(model.children.size() + 1), {}});
      std::vector<CellValue>& cells = table.cells.emplace_back();
      cells = {cellOf(dimension.eigenvalue, decimalsForSizes({dimension.eigenvalue})),
               cellOf(dimension.conditionIndex)};
      cells.resize(2 + constants + shown.size());
      for (std::size_t k = 0; k < dimension.varianceProportions.size(); ++k) {
        std::size_t column = 0;
        if (k >= constants) {
          const auto place = std::ranges::find(shown, fit.predictors[k - constants]);
          column = constants + static_cast<std::size_t>(place - shown.begin());
        }
        cells[2 + column] = fractionCell(dimension.varianceProportions[k], 2);
      }
    }
  }
  return table;
}

}  // namespace genostat::standalone
