// One group of rows for each model, as far as the table is about models.

#include "standalone/procedures/regression_tables.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "standalone/output/number_format.h"
#include "standalone/procedures/regression_cells.h"
#include "standalone/procedures/regression_labels.h"

namespace genostat::standalone {

namespace {

std::string fractionText(double number) {
  std::string text = formatNumber(number, {4, false});
  while (text.size() > 3 && text.ends_with('0')) {
    text.pop_back();
  }
  return text;
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

}  // namespace genostat::standalone
