// One group of rows for each model, as far as the table is about models.

#include "standalone/procedures/regression_tables.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>
#include <utility>

#include "standalone/output/number_format.h"
#include "standalone/procedures/regression_cells.h"
#include "standalone/statistics/collinearity.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kConstantName = "(Constant)";

std::string fractionText(double number) {
  std::string text = formatNumber(number, {4, false});
  while (text.size() > 3 && text.ends_with('0')) {
    text.pop_back();
  }
  return text;
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
  std::string text = "Predictors: ";
  if (!fit.constant && names.empty()) text += "none";
  if (fit.constant) text += kConstantName;
  if (fit.constant && !names.empty()) text += ", ";
  return text + names;
}

std::string dependentNote(const RegressionResult& result) {
  return "Dependent variable: " + result.dependent.name +
         (result.request.throughOrigin ? "; regression through the origin" : "");
}

// What an analyst would ask when tests are missing; empty when none is.
std::string missingTestsNote(const LinearFit& fit) {
  if (fit.residualFreedom == 0) return "As many coefficients as cases: nothing is left to test them by";
  if (fit.exact) return "The predictors determine the dependent variable exactly: nothing is left to test by";
  return {};
}

std::string modelLabel(std::size_t step) {
  return std::to_string(step + 1);
}

std::string methodText(const RegressionResult& result, const SelectionStep& step) {
  const SelectionCriteria& criteria = result.request.criteria;
  const std::string enters = "enters with p <= " + fractionText(criteria.enter);
  const std::string leaves = "is removed with p >= " + fractionText(criteria.remove);
  switch (result.request.blocks[step.block].method) {
    case SelectionMethod::Stepwise:
      return "Stepwise (" + enters + ", " + leaves + ")";
    case SelectionMethod::Forward:
      return "Forward (" + enters + ")";
    case SelectionMethod::Backward:
      if (step.entered.empty()) return "Backward (" + leaves + ")";
      break;
    case SelectionMethod::Enter:
      break;
  }
  return "Enter";
}

std::optional<FTest> changeTest(const RegressionResult& result, std::size_t step) {
  const LinearFit& fit = result.selection.steps[step].fit;
  if (step > 0) return testOfChange(result.selection.steps[step - 1].fit, fit);
  return fit.test;
}

void addChange(const RegressionResult& result, std::size_t step, std::vector<CellValue>& cells) {
  const LinearFit& fit = result.selection.steps[step].fit;
  const LinearFit* before = step > 0 ? &result.selection.steps[step - 1].fit : nullptr;
  const double shareBefore = before != nullptr ? before->residualShare : 1;
  const std::size_t freedomBefore = before != nullptr ? before->residualFreedom : fit.totalFreedom;
  const auto [smaller, larger] = std::minmax(fit.residualFreedom, freedomBefore);
  const std::optional<FTest> test = changeTest(result, step);
  cells.push_back(fractionCell(shareBefore - fit.residualShare));
  cells.push_back(test ? cellOf(test->f) : CellValue());
  cells.push_back(countCell(larger - smaller));
  cells.push_back(countCell(smaller));
  cells.push_back(test ? fractionCellOf(test->significance) : CellValue());
}

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
  const auto sum = [&](std::size_t i, std::size_t j) { return result.products.sum(i, j).value(); };
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
  std::string percent = formatNumber(level * 100, {4, true});
  while (percent.ends_with('0') && !percent.ends_with(".0")) {
    percent.pop_back();
  }
  return percent + "% Confidence Interval for B";
}

std::string refusalReason(const RegressionResult& result, Refusal::Reason reason) {
  switch (reason) {
    case Refusal::Reason::Constant:
      return result.request.throughOrigin ? "always zero" : "constant";
    case Refusal::Reason::OutOfRange:
      return "values too large";
    case Refusal::Reason::Freedom:
      return "no more cases than coefficients";
    case Refusal::Reason::Tolerance:
      break;
  }
  const double tolerance = result.request.criteria.tolerance;
  if (tolerance < 0.0001) return "tolerance too small";
  return "tolerance below " + fractionText(tolerance);
}

}  // namespace

std::string describeRefusals(const RegressionResult& result) {
  std::string text;
  for (const Refusal& refusal : result.selection.refusals) {
    text += (text.empty() ? "" : ", ") + result.request.predictors[refusal.variable]->name + " (" +
            refusalReason(result, refusal.reason) + ")";
  }
  return text;
}

PivotTable buildEnteredTable(const RegressionResult& result) {
  PivotTable table;
  FootnoteList notes(table);
  table.title = "Variables Entered/Removed";
  table.titleMark = notes.mark(dependentNote(result));
  table.rowLabel = "Model";
  table.columns = {{"Variables Entered", {}}, {"Variables Removed", {}}, {"Method", {}}};
  const std::string refused = describeRefusals(result);
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const SelectionStep& step = result.selection.steps[i];
    table.rows.push_back({modelLabel(i), {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    for (const std::vector<std::size_t>* list : {&step.entered, &step.removed}) {
      cells.push_back(list->empty() ? CellValue() : textCell(predictorNames(result, *list)));
    }
    cells.push_back(textCell(methodText(result, step)));
    if (i == 0 && !refused.empty()) table.rows.back().mark = notes.mark("Not entered: " + refused);
  }
  if (result.system.caseCount() != result.datasetCases) {
    const std::string note = std::to_string(result.system.caseCount()) + " of " +
                             std::to_string(result.datasetCases) +
                             " cases; the others have a missing value in one of the variables";
    table.titleMark += "," + notes.mark(note);
  }
  return table;
}

PivotTable buildModelSummary(const RegressionResult& result) {
  PivotTable table;
  FootnoteList notes(table);
  table.title = "Model Summary";
  if (result.request.throughOrigin) {
    table.titleMark = notes.mark(
        "Through the origin R Square is the share of the squares about zero, not about the mean, and not "
        "comparable with that of a model with a constant");
  }
  table.rowLabel = "Model";
  table.columns = {
      {"R", {}}, {"R Square", {}}, {"Adjusted R Square", {}}, {"Std. Error of the Estimate", {}}};
  const bool change = result.request.statistics.test(kRegressionChange);
  if (change) {
    table.columns.push_back(
        {"Change Statistics",
         {{"R Square Change", {}}, {"F Change", {}}, {"df1", {}}, {"df2", {}}, {"Sig. F Change", {}}}});
  }
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    table.rows.push_back({modelLabel(i), {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    const double rSquare = std::max(0.0, 1 - fit.residualShare);
    cells.push_back(marked(fractionCell(std::sqrt(rSquare)), notes.mark(predictorsNote(result, fit))));
    cells.push_back(fractionCell(rSquare));
    cells.push_back(fractionCellOf(fit.adjustedRSquare));
    const double error = fit.standardErrorEstimate.value_or(0);
    cells.push_back(cellOf(fit.standardErrorEstimate, decimalsForSizes({error})));
    if (change) addChange(result, i, cells);
  }
  return table;
}

PivotTable buildRegressionAnova(const RegressionResult& result) {
  PivotTable table;
  FootnoteList notes(table);
  table.title = "ANOVA";
  table.titleMark = notes.mark(dependentNote(result));
  table.rowLabel = "Model";
  table.columns = {{"Sum of Squares", {}}, {"df", {}}, {"Mean Square", {}}, {"F", {}}, {"Sig.", {}}};
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    Category& model = table.rows.emplace_back(Category{modelLabel(i), {}});
    model.children = {{"Regression", {}}, {"Residual", {}}, {"Total", {}}};
    model.mark = notes.mark(predictorsNote(result, fit));
    const std::string missing = missingTestsNote(fit);
    if (!missing.empty()) model.mark += "," + notes.mark(missing);

    const std::size_t explainedFreedom = fit.totalFreedom - fit.residualFreedom;
    const double explained = fit.totalSquares - fit.residualSquares;
    const auto meanSquare = [](double squares, std::size_t freedom) {
      if (freedom == 0) return CellValue();
      const double mean = squares / static_cast<double>(freedom);
      return cellOf(mean, decimalsForSizes({mean}));
    };
    const int decimals = decimalsForSizes({explained, fit.residualSquares});
    table.cells.push_back({cellOf(explained, decimals), countCell(explainedFreedom),
                           meanSquare(explained, explainedFreedom),
                           fit.test ? cellOf(fit.test->f) : CellValue(),
                           fit.test ? fractionCellOf(fit.test->significance) : CellValue()});
    table.cells.push_back({cellOf(fit.residualSquares, decimals),
                           countCell(fit.residualFreedom),
                           meanSquare(fit.residualSquares, fit.residualFreedom),
                           {},
                           {}});
    table.cells.push_back({cellOf(fit.totalSquares, decimals), countCell(fit.totalFreedom), {}, {}, {}});
  }
  return table;
}

PivotTable buildCoefficients(const RegressionResult& result) {
  const auto& statistics = result.request.statistics;
  PivotTable table;
  FootnoteList notes(table);
  table.title = "Coefficients";
  table.titleMark = notes.mark(dependentNote(result));
  table.rowLabel = "Model";
  table.columns = {{"Unstandardized Coefficients", {{"B", {}}, {"Std. Error", {}}}},
                   {"Standardized Coefficients", {{"Beta", {}}}},
                   {"t", {}},
                   {"Sig.", {}}};
  if (statistics.test(kRegressionInterval)) {
    table.columns.push_back(
        {confidenceLabel(result.request.confidenceLevel), {{"Lower Bound", {}}, {"Upper Bound", {}}}});
  }
  if (statistics.test(kRegressionCorrelations)) {
    table.columns.push_back({"Correlations", {{"Zero-order", {}}, {"Partial", {}}, {"Part", {}}}});
  }
  if (statistics.test(kRegressionTolerance)) {
    table.columns.push_back({"Collinearity Statistics", {{"Tolerance", {}}, {"VIF", {}}}});
  }
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    // A model from which all predictors were removed may be left with nothing.
    if (!fit.constant && fit.predictors.empty()) continue;
    Category& model = table.rows.emplace_back(Category{modelLabel(i), {}});
    const std::string missing = missingTestsNote(fit);
    if (!missing.empty()) model.mark = notes.mark(missing);
    if (fit.constant) {
      model.children.push_back({std::string(kConstantName), {}});
      table.cells.push_back(coefficientRow(result, fit, std::nullopt));
    }
    for (std::size_t j = 0; j < fit.predictors.size(); ++j) {
      model.children.push_back({result.request.predictors[fit.predictors[j]]->name, {}});
      table.cells.push_back(coefficientRow(result, fit, j));
    }
  }
  return table;
}

PivotTable buildExcludedTable(const RegressionResult& result) {
  PivotTable table;
  FootnoteList notes(table);
  table.title = "Excluded Variables";
  table.titleMark = notes.mark(dependentNote(result));
  table.rowLabel = "Model";
  table.columns = {{"Beta In", {}}, {"t", {}}, {"Sig.", {}}, {"Partial Correlation", {}}};
  const bool collinearity = result.request.statistics.test(kRegressionTolerance);
  table.columns.push_back({"Collinearity Statistics", {{"Tolerance", {}}}});
  if (collinearity) {
    table.columns.back().children.push_back({"VIF", {}});
    table.columns.back().children.push_back({"Minimum Tolerance", {}});
  }
  const auto addModel = [&](const std::string& label, const LinearFit& fit) {
    if (fit.excluded.empty()) return;
    Category& model = table.rows.emplace_back(Category{label, {}});
    model.mark = notes.mark(predictorsNote(result, fit));
    for (const ExcludedCandidate& candidate : fit.excluded) {
      model.children.push_back({result.request.predictors[candidate.variable]->name, {}});
      std::vector<CellValue>& cells = table.cells.emplace_back();
      // Without a spread of its own a variable has nothing to share.
      const bool usable =
          !result.system.isConstant(candidate.variable) && !result.system.isOutOfRange(candidate.variable);
      std::optional<double> inflation;
      if (candidate.tolerance > 0) inflation = 1 / candidate.tolerance;
      cells = {fractionCellOf(candidate.beta), cellOf(candidate.t), fractionCellOf(candidate.significance),
               fractionCellOf(candidate.partialCorrelation),
               usable ? fractionCell(candidate.tolerance) : CellValue()};
      if (!collinearity) continue;
      cells.push_back(cellOf(inflation));
      cells.push_back(usable ? fractionCell(candidate.minimumTolerance) : CellValue());
    }
  };
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    addModel(modelLabel(i), result.selection.steps[i].fit);
  }
  if (result.selection.steps.empty()) {
    if (const std::optional<LinearFit> empty = result.system.fit({})) addModel("0", *empty);
  }
  return table;
}

PivotTable buildCollinearityDiagnostics(const RegressionResult& result) {
  PivotTable table;
  FootnoteList notes(table);
  table.title = "Collinearity Diagnostics";
  table.titleMark = notes.mark(dependentNote(result));
  table.rowLabel = "Model, Dimension";
  // A column for each predictor that some model has.
  std::vector<std::size_t> shown;
  for (const SelectionStep& step : result.selection.steps) {
    for (const std::size_t predictor : step.fit.predictors) {
      if (std::ranges::find(shown, predictor) == shown.end()) shown.push_back(predictor);
    }
  }
  Category proportions{"Variance Proportions", {}};
  const std::size_t constants = result.request.throughOrigin ? 0 : 1;
  if (constants == 1) proportions.children.push_back({std::string(kConstantName), {}});
  for (const std::size_t predictor : shown) {
    proportions.children.push_back({result.request.predictors[predictor]->name, {}});
  }
  table.columns = {{"Eigenvalue", {}}, {"Condition Index", {}}, std::move(proportions)};
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
