// REGRESSION: linear regressions by least squares.
//
//   REGRESSION
//     [/VARIABLES=list]                                       for a METHOD that names none
//     [/MISSING=LISTWISE]
//     [/STATISTICS=[DEFAULTS] [ALL] [R] [ANOVA] [COEFF] [OUTS] [CHANGE] [CI[(level)]] [TOL] [COLLIN] [ZPP]]
//     [/CRITERIA=[PIN(p)] [POUT(p)] [TOLERANCE(t)]]
//     [/NOORIGIN | /ORIGIN]
//     /DEPENDENT=list                                         one regression each
//     /METHOD={ENTER | STEPWISE | FORWARD | BACKWARD} [list]  several go on from one another
//     [/RESIDUALS=[PRESS] [NORMPROB[(ZRESID)]]].
//
// A case counts when none of all the variables is missing in it. DEFAULTS: R ANOVA COEFF OUTS.

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/regression_request.h"
#include "standalone/procedures/regression_tables.h"
#include "standalone/procedures/variable_list.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kRegressionProcedure = "REGRESSION";

// Predictors, then dependents, as all numbers of variables mean them.
std::vector<const Column*> regressionVariables(const RegressionRequest& request) {
  std::vector<const Column*> variables = request.predictors;
  variables.insert(variables.end(), request.dependents.begin(), request.dependents.end());
  return variables;
}

void warnOfNoCase(CommandContext& context, const RegressionRequest& request) {
  std::vector<const Column*> variables = regressionVariables(request);
  std::erase_if(variables, [](const Column* column) {
    return !std::ranges::all_of(column->numbers, [](double x) { return std::isnan(x); });
  });
  const std::string empty = joinedNames(variables);
  context.warn({Diagnostic::Severity::Warning,
                translated("no case has a value in all variables of the regression"), request.methodPlace,
                empty.empty() ? empty : translated("without any value: {1}", {empty})});
}

// Whether the dependent can be explained at all.
bool checkDependent(CommandContext& context, const RegressionRequest& request, const LinearSystem& system,
                    const Column& dependent, std::size_t number) {
  std::string message;
  if (system.isOutOfRange(number)) {
    message = translated("the values of {1} are too large for a regression", {dependent.name});
  } else if (system.caseCount() == 1) {
    message = translated("one case is not enough for a regression of {1}", {dependent.name});
  } else if (system.isConstant(number)) {
    message = translated("{1} is constant: there is nothing for a regression to explain", {dependent.name});
  }
  if (message.empty()) return true;
  context.warn({Diagnostic::Severity::Warning, message, request.dependentPlace, {}});
  return false;
}

void showResiduals(CommandContext& context, const RegressionResult& result, std::size_t dependent,
                   std::span<const std::span<const double>> variables) {
  const RegressionRequest& request = result.request;
  const LinearFit& fit = result.selection.steps.back().fit;
  ResidualSummary residuals =
      summarizeResiduals(variables, result.products, dependent, fit, request.normalPlot);
  context.output.addTable(kRegressionProcedure, buildResidualStatistics(result, residuals));
  if (request.press) context.output.addTable(kRegressionProcedure, buildPressTable(result, residuals));
  if (!request.normalPlot) return;
  if (residuals.standardized.empty()) {
    context.warn({Diagnostic::Severity::Warning,
                  translated("no normal plot for {1}: its residuals are all zero", {result.dependent.name}),
                  request.methodPlace,
                  {}});
    return;
  }
  context.output.addChart(kRegressionProcedure, buildNormalPlot(result, std::move(residuals.standardized)));
}

void showModels(CommandContext& context, const RegressionResult& result) {
  const auto& statistics = result.request.statistics;
  OutputDocument& output = context.output;
  output.addTable(kRegressionProcedure, buildEnteredTable(result));
  if (statistics.test(kRegressionSummary) || statistics.test(kRegressionChange)) {
    output.addTable(kRegressionProcedure, buildModelSummary(result));
  }
  if (statistics.test(kRegressionAnova)) output.addTable(kRegressionProcedure, buildRegressionAnova(result));
  constexpr std::array kOfCoefficients = {kRegressionCoefficients, kRegressionInterval,
                                          kRegressionCorrelations, kRegressionTolerance};
  if (std::ranges::any_of(kOfCoefficients, [&](std::size_t kind) { return statistics.test(kind); })) {
    output.addTable(kRegressionProcedure, buildCoefficients(result));
  }
}

void regress(CommandContext& context, const RegressionResult& result, std::size_t dependent,
             std::span<const std::span<const double>> variables) {
  const RegressionRequest& request = result.request;
  const bool entered = !result.selection.steps.empty();
  if (entered) {
    showModels(context, result);
  } else {
    const std::string refused = describeRefusals(result);
    context.warn({Diagnostic::Severity::Warning,
                  translated("no variables were entered into the equation for {1}", {result.dependent.name}),
                  request.methodPlace,
                  refused.empty() ? refused : translated("not entered: {1}", {refused})});
  }
  if (request.statistics.test(kRegressionExcluded)) {
    const PivotTable excluded = buildExcludedTable(result);
    if (!excluded.rows.empty()) context.output.addTable(kRegressionProcedure, excluded);
  }
  if (!entered) return;
  if (request.statistics.test(kRegressionDiagnostics)) {
    context.output.addTable(kRegressionProcedure, buildCollinearityDiagnostics(result));
  }
  if (request.residuals) showResiduals(context, result, dependent, variables);
}

}  // namespace

void runRegression(CommandContext& context) {
  const Dataset& dataset = requireActiveDataset(context);
  const RegressionRequest request = parseRegression(context, dataset);
  const std::vector<std::span<const double>> variables = valuesOf(regressionVariables(request));
  const CrossProducts products = computeCrossProducts(variables);
  if (products.caseCount == 0) {
    warnOfNoCase(context, request);
    return;
  }
  std::vector<std::size_t> candidates(request.predictors.size());
  std::iota(candidates.begin(), candidates.end(), std::size_t{0});
  for (std::size_t i = 0; i < request.dependents.size(); ++i) {
    const std::size_t number = candidates.size() + i;
    const Column& dependent = *request.dependents[i];
    const LinearSystem system(products, number, candidates, request.throughOrigin);
    if (!checkDependent(context, request, system, dependent, number)) continue;
    const Selection selection = selectPredictors(system, request.blocks, request.criteria);
    regress(context, {request, dependent, dataset.caseCount, products, system, selection}, number, variables);
  }
}

}  // namespace genostat::standalone
