// One group of rows for each model, as far as the table is about models.

#include "standalone/procedures/regression_tables.h"
#include "standalone/language/translation.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "standalone/output/number_format.h"
#include "standalone/procedures/regression_cells.h"
#include "standalone/procedures/table_cells.h"

namespace genostat::standalone {

namespace {

std::string fractionText(double number) {
  return withoutTrailingZeros(formatNumber(number, {4, false}), number < 1 ? 2 : 1);
}

std::string methodText(const RegressionResult& result, const SelectionStep& step) {
  const SelectionCriteria& criteria = result.request.criteria;
  const std::string enter = fractionText(criteria.enter);
  const std::string remove = fractionText(criteria.remove);
  switch (result.request.blocks[step.block].method) {
    case SelectionMethod::Stepwise:
      return translated("Stepwise (enters with p <= {1}, is removed with p >= {2})", {enter, remove});
    case SelectionMethod::Forward:
      return translated("Forward (enters with p <= {1})", {enter});
    case SelectionMethod::Backward:
      if (step.entered.empty()) return translated("Backward (is removed with p >= {1})", {remove});
      break;
    case SelectionMethod::Enter:
      break;
  }
  return translated("Enter");
}

void addChange(const RegressionResult& result, std::size_t step, std::vector<CellValue>& cells) {
  const LinearFit& fit = result.selection.steps[step].fit;
  const LinearFit* before = step > 0 ? &result.selection.steps[step - 1].fit : nullptr;
  const double shareBefore = before != nullptr ? before->residualShare : 1;
  const std::size_t freedomBefore = before != nullptr ? before->residualFreedom : fit.totalFreedom;
  const auto [smaller, larger] = std::minmax(fit.residualFreedom, freedomBefore);
  const std::optional<FTest> test = before != nullptr ? testOfChange(*before, fit) : fit.test;
  cells.push_back(fractionCell(shareBefore - fit.residualShare));
  cells.push_back(test ? cellOf(test->f) : CellValue());
  cells.push_back(countCell(larger - smaller));
  cells.push_back(countCell(smaller));
  cells.push_back(test ? fractionCellOf(test->significance) : CellValue());
}

std::string refusalReason(const RegressionResult& result, Refusal::Reason reason) {
  switch (reason) {
    case Refusal::Reason::Constant:
      return translated(result.request.throughOrigin ? "always zero" : "constant");
    case Refusal::Reason::OutOfRange:
      return translated("values too large");
    case Refusal::Reason::Freedom:
      return translated("no more cases than coefficients");
    case Refusal::Reason::Tolerance:
      break;
  }
  const double tolerance = result.request.criteria.tolerance;
  if (tolerance < 0.0001) return translated("tolerance too small");
  return translated("tolerance below {1}", {fractionText(tolerance)});
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
  PivotTable table = beginTable(result, translated("Variables Entered/Removed"), translated("Model"));
  table.columns = {{translated("Variables Entered"), {}},
                   {translated("Variables Removed"), {}},
                   {translated("Method"), {}}};
  const std::string refused = describeRefusals(result);
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const SelectionStep& step = result.selection.steps[i];
    table.rows.push_back({modelLabel(i), {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    for (const std::vector<std::size_t>* list : {&step.entered, &step.removed}) {
      cells.push_back(list->empty() ? CellValue() : textCell(predictorNames(result, *list)));
    }
    cells.push_back(textCell(methodText(result, step)));
    if (i == 0 && !refused.empty())
      table.rows.back().mark = markOf(table.footnotes, translated("Not entered: {1}", {refused}));
  }
  if (result.system.caseCount() != result.datasetCases) {
    const std::string note =
        translated("{1} of {2} cases; the others have a missing value in one of the variables",
                   {std::to_string(result.system.caseCount()), std::to_string(result.datasetCases)});
    table.titleMark += "," + markOf(table.footnotes, note);
  }
  return table;
}

PivotTable buildModelSummary(const RegressionResult& result) {
  PivotTable table;
  table.title = translated("Model Summary");
  if (result.request.throughOrigin) {
    table.titleMark = markOf(
        table.footnotes,
        translated(
            "Through the origin, R Square is the share of the squares about zero, not about the mean; it "
            "cannot be compared with that of a model with a constant"));
  }
  table.rowLabel = translated("Model");
  table.columns = {{"R", {}},
                   {translated("R Square"), {}},
                   {translated("Adjusted R Square"), {}},
                   {translated("Std. Error of the Estimate"), {}}};
  const bool change = result.request.statistics.test(kRegressionChange);
  if (change) {
    table.columns.push_back({translated("Change Statistics"),
                             {{translated("R Square Change"), {}},
                              {translated("F Change"), {}},
                              {"df1", {}},
                              {"df2", {}},
                              {translated("Sig. F Change"), {}}}});
  }
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    table.rows.push_back({modelLabel(i), {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    const double rSquare = std::max(0.0, 1 - fit.residualShare);
    cells.push_back(
        withMark(fractionCell(std::sqrt(rSquare)), markOf(table.footnotes, predictorsNote(result, fit))));
    cells.push_back(fractionCell(rSquare));
    cells.push_back(fractionCellOf(fit.adjustedRSquare));
    const double error = fit.standardErrorEstimate.value_or(0);
    cells.push_back(cellOf(fit.standardErrorEstimate, decimalsForSizes({error})));
    if (change) addChange(result, i, cells);
  }
  return table;
}

PivotTable buildRegressionAnova(const RegressionResult& result) {
  PivotTable table = beginTable(result, translated("ANOVA"), translated("Model"));
  table.columns = {{translated("Sum of Squares"), {}},
                   {"df", {}},
                   {translated("Mean Square"), {}},
                   {"F", {}},
                   {translated("Sig."), {}}};
  for (std::size_t i = 0; i < result.selection.steps.size(); ++i) {
    const LinearFit& fit = result.selection.steps[i].fit;
    Category& model = table.rows.emplace_back(Category{modelLabel(i), {}});
    model.children = {
        {translated("Regression"), {}}, {translated("Residual"), {}}, {translated("Total"), {}}};
    model.mark = markOf(table.footnotes, predictorsNote(result, fit));
    const std::string missing = missingTestsNote(fit);
    if (!missing.empty()) model.mark += "," + markOf(table.footnotes, missing);

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

PivotTable buildExcludedTable(const RegressionResult& result) {
  PivotTable table = beginTable(result, translated("Excluded Variables"), translated("Model"));
  table.columns = {{translated("Beta In"), {}},
                   {"t", {}},
                   {translated("Sig."), {}},
                   {translated("Partial Correlation"), {}}};
  const bool collinearity = result.request.statistics.test(kRegressionTolerance);
  table.columns.push_back({translated("Collinearity Statistics"), {{translated("Tolerance"), {}}}});
  if (collinearity) {
    table.columns.back().children.push_back({"VIF", {}});
    table.columns.back().children.push_back({translated("Minimum Tolerance"), {}});
  }
  const auto addModel = [&](const std::string& label, const LinearFit& fit) {
    if (fit.excluded.empty()) return;
    Category& model = table.rows.emplace_back(Category{label, {}});
    model.mark = markOf(table.footnotes, predictorsNote(result, fit));
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

}  // namespace genostat::standalone
