#include "standalone/procedures/regression_cells.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "standalone/procedures/table_cells.h"

namespace genostat::standalone {

PivotTable beginTable(const RegressionResult& result, std::string title, std::string rowLabel) {
  PivotTable table;
  table.title = std::move(title);
  table.titleMark =
      markOf(table.footnotes, translated(result.request.throughOrigin
                                             ? "Dependent variable: {1}; regression through the origin"
                                             : "Dependent variable: {1}",
                                         {result.dependent.name}));
  table.rowLabel = std::move(rowLabel);
  return table;
}

std::string predictorNames(const RegressionResult& result, const std::vector<std::size_t>& predictors) {
  std::string names;
  for (const std::size_t predictor : predictors) {
    names += (names.empty() ? "" : ", ") + result.request.predictors[predictor]->name;
  }
  return names;
}

std::string predictorsNote(const RegressionResult& result, const LinearFit& fit) {
  const std::string names = predictorNames(result, fit.predictors);
  std::string all = fit.constant ? translated(kConstantName) : std::string();
  if (fit.constant && !names.empty()) all += ", ";
  all += names;
  return translated("Predictors: {1}", {all.empty() ? translated("none") : all});
}

std::string missingTestsNote(const LinearFit& fit) {
  if (fit.residualFreedom == 0)
    return translated("As many coefficients as cases: no degrees of freedom are left for tests");
  if (fit.exact)
    return translated(
        "The predictors determine the dependent variable exactly: there is no residual variance for tests");
  return {};
}

std::string modelLabel(std::size_t step) {
  return std::to_string(step + 1);
}

int decimalsForSizes(std::initializer_list<double> sizes) {
  constexpr int kMostOfCoefficients = 7;
  int decimals = 3;
  for (const double size : sizes) {
    if (size == 0 || !std::isfinite(size)) continue;
    const int needed = 1 - static_cast<int>(std::floor(std::log10(std::abs(size))));
    decimals = std::max(decimals, std::min(needed, kMostOfCoefficients));
  }
  return decimals;
}

}  // namespace genostat::standalone
