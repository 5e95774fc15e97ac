// The heat of hardening cement: H. Woods, H. H. Steinour, H. R. Starke, "Effect of composition of Portland
// cement on heat evolved during hardening", Industrial and Engineering Chemistry 24 (1932) 1207-1214.
// Four ingredients that nearly sum to 100 percent, so that predictors come and go.
//
// Expected values: R 4.2, every step by anova() of two lm() fits, the rest by lm(), svd() and hatvalues().

#include "standalone/statistics/predictor_selection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/statistics/collinearity.h"
#include "standalone/statistics/residuals.h"

namespace genostat::standalone {
namespace {

using Method = SelectionMethod;

const std::vector<std::vector<double>> kCement = {
    {7, 1, 11, 11, 7, 11, 3, 1, 2, 21, 1, 11, 10},
    {26, 29, 56, 31, 52, 55, 71, 31, 54, 47, 40, 66, 68},
    {6, 15, 8, 8, 6, 9, 17, 22, 18, 4, 23, 9, 8},
    {60, 52, 20, 47, 33, 22, 6, 44, 22, 26, 34, 12, 12},
    {78.5, 74.3, 104.3, 87.6, 95.9, 109.2, 102.7, 72.5, 93.1, 115.9, 83.8, 113.3, 109.4}};

struct Problem {
  explicit Problem(const std::vector<std::vector<double>>& columns, bool throughOrigin = false)
      : variables(columns.begin(), columns.end()),
        products(computeCrossProducts(variables)),
        system(products, columns.size() - 1, listTo(columns.size() - 1), throughOrigin) {}

  static std::vector<std::size_t> listTo(std::size_t count) {
    std::vector<std::size_t> list(count);
    for (std::size_t i = 0; i < count; ++i) {
      list[i] = i;
    }
    return list;
  }

  std::vector<std::span<const double>> variables;
  CrossProducts products;
  LinearSystem system;
};

// "+0+1 -3": what each step entered and removed; refused variables behind it.
std::string describe(const Selection& selection) {
  std::string text;
  for (const SelectionStep& step : selection.steps) {
    text += text.empty() ? "" : " ";
    for (const std::size_t variable : step.entered) {
      text += "+" + std::to_string(variable);
    }
    for (const std::size_t variable : step.removed) {
      text += "-" + std::to_string(variable);
    }
  }
  for (const Refusal& refusal : selection.refusals) {
    text += "; " + std::to_string(refusal.variable) + " " +
            std::string_view("CRTF")[static_cast<std::size_t>(refusal.reason)];
  }
  return text;
}

TEST(PredictorSelection, TakesTheStepsThatTestsOfNestedModelsGive) {
  constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
  // The dependent comes last. The fourth column is twice the first; the last case has a value missing.
  const std::vector<std::vector<double>> degenerate = {{1, 2, 3, 4, 5, 6, kNaN}, {2, 1, 4, 3, 6, 6, 1},
                                                       {5, 5, 5, 5, 5, 5, 5},    {2, 4, 6, 8, 10, 12, 1},
                                                       {1, 4, 3, 2, 0, 7, 1},    {1, 4, 3, 6, 5, 7, 1}};
  const std::vector<std::vector<double>> wide = {{1, 2, 4}, {2, 1, 1}, {5, 6, 9}, {7, 8, 1}};
  struct Row {
    const std::vector<std::vector<double>>& columns;
    std::vector<SelectionBlock> blocks;
    double enter, remove, tolerance;
    std::string expected;
  };
  const std::vector<Row> rows = {
      {kCement, {{Method::Stepwise, {0, 1, 2, 3}}}, 0.06, 0.10, 1e-4, "+3 +0 +1 -3"},
      {kCement, {{Method::Stepwise, {0, 1, 2, 3}}}, 0.05, 0.10, 1e-4, "+3 +0"},
      {kCement, {{Method::Stepwise, {0, 1, 2, 3}}}, 0.0001, 0.0002, 1e-4, ""},
      {kCement, {{Method::Forward, {0, 1, 2, 3}}}, 0.06, 0.07, 1e-4, "+3 +0 +1"},
      {kCement, {{Method::Backward, {0, 1, 2, 3}}}, 0.05, 0.10, 1e-4, "+0+1+2+3 -2 -3"},
      {kCement, {{Method::Backward, {0, 1, 2, 3}}}, 0.05, 0.90, 1e-4, "+0+1+2+3"},
      // The smallest tolerance, that of 3, is .0035.
      {kCement, {{Method::Enter, {0, 1, 2, 3}}}, 0.05, 0.10, 0.01, "+0+1+2; 3 T"},
      // What an earlier block entered, a later one leaves in.
      {kCement, {{Method::Enter, {3}}, {Method::Stepwise, {0, 1, 2}}}, 0.06, 0.10, 1e-4, "+3 +0 +1"},
      {kCement, {{Method::Forward, {3}}, {Method::Backward, {0, 3}}}, 0.05, 0.10, 1e-4, "+3 +0"},
      {degenerate, {{Method::Enter, {0, 1, 2, 3, 4, 0}}}, 0.05, 0.10, 1e-4, "+0+1+4; 2 C; 3 T"},
      {degenerate, {{Method::Forward, {2, 3, 0, 1}}}, 0.05, 0.10, 1e-4, "+3 +1; 2 C"},
      {wide, {{Method::Enter, {0, 1, 2}}}, 0.05, 0.10, 1e-4, "+0+1; 2 F"},
      {wide, {{Method::Backward, {0, 1, 2}}}, 0.05, 0.10, 0, "+0+1; 2 F"},
  };
  for (const Row& row : rows) {
    const Problem problem(row.columns);
    const Selection selection =
        selectPredictors(problem.system, row.blocks, {row.enter, row.remove, row.tolerance});
    EXPECT_EQ(describe(selection), row.expected) << "row " << &row - rows.data();
  }
}

TEST(PredictorSelection, GivesTheNumbersOfEachModel) {
  const Problem problem(kCement);
  const SelectionBlock block{Method::Stepwise, {0, 1, 2, 3}};
  const Selection selection = selectPredictors(problem.system, {&block, 1}, {0.06, 0.10, 1e-4});
  ASSERT_EQ(selection.steps.size(), 4U);
  const LinearFit& fit = selection.steps[3].fit;
  ASSERT_EQ(fit.predictors, (std::vector<std::size_t>{0, 1}));
  const ResidualSummary residuals = summarizeResiduals(problem.variables, problem.products, 4, fit, true);
  const std::vector<CollinearityDimension> dimensions = computeCollinearity(problem.products, fit);
  const Coefficient& constant = *fit.constant;
  const Coefficient& x1 = fit.coefficients[0];
  const Coefficient& x2 = fit.coefficients[1];
  const ExcludedCandidate& x3 = fit.excluded[0];
  const ExcludedCandidate& x4 = fit.excluded[1];
  const FTest entered = *testOfChange(selection.steps[0].fit, selection.steps[1].fit);
  const FTest removed = *testOfChange(selection.steps[2].fit, fit);
  ASSERT_EQ(dimensions.size(), 3U);
  struct Row {
    const char* what;
    double actual, expected;
  };
  const std::vector<Row> rows = {
      {"constant", constant.value.value(), 52.5773488820895},
      {"its error", *constant.standardError, 2.28617433450335},
      {"its t", *constant.t, 22.997961305305},
      {"its significance", *constant.significance, 5.45657090149132e-10},
      {"x1", x1.value.value(), 1.46830574221555},
      {"its error", *x1.standardError, 0.121300923606267},
      {"its significance", *x1.significance, 2.69221217968559e-07},
      {"its beta", *x1.beta, 0.57413671680864},
      {"its tolerance", *x1.tolerance, 0.947751425753913},
      {"upper bound at 90 %", x2.value.value() + confidenceFactor(0.9, 10) * *x2.standardError,
       0.7453603912337},
      {"R square", 1 - fit.residualShare, 0.978678374535632},
      {"adjusted", *fit.adjustedRSquare, 0.974414049442758},
      {"standard error", *fit.standardErrorEstimate, 2.40633503852048},
      {"F", fit.test->f, 229.503697119894},
      {"its significance", fit.test->significance, 4.4065789074639e-09},
      {"F of entering x1", entered.f, 108.223909330744},
      {"its significance", entered.significance, 1.10528141953732e-06},
      {"F of removing x4", removed.f, 1.86326242218808},
      {"its significance", removed.significance, 0.205395438101688},
      {"x3, its beta", *x3.beta, 0.106449337930629},
      {"its t", *x3.t, 1.35356137304088},
      {"its significance", *x3.significance, 0.208889485628755},
      {"its partial correlation", *x3.partialCorrelation, 0.411264338646297},
      {"its tolerance", x3.tolerance, 0.31825591684324},
      {"smallest tolerance with it", x3.minimumTolerance, 0.307591212496576},
      {"x4, its partial correlation", *x4.partialCorrelation, -0.414149248108762},
      {"its tolerance", x4.tolerance, 0.0527980956715651},
      {"eigenvalue 1", dimensions[0].eigenvalue, 2.70511924947516},
      {"eigenvalue 3", dimensions[2].eigenvalue, 0.0449250979698966},
      {"condition index 3", dimensions[2].conditionIndex, 7.7597671776585},
      {"its share in the constant", dimensions[2].varianceProportions[0], 0.934223253569031},
      {"its share in x1", dimensions[2].varianceProportions[1], 0.0012146493130629},
      {"share of 1 in x2", dimensions[0].varianceProportions[2], 0.0107151594370797},
      {"PRESS", *residuals.press, 93.8825464258889},
      {"smallest prediction", residuals.predicted.minimum, 73.2509188712698},
      {"deviation of predictions", *residuals.predicted.deviation, 14.8824801745401},
      {"largest residual", residuals.residual.maximum, 4.04751093343394},
      {"deviation of residuals", *residuals.residual.deviation, 2.19667330252122},
      {"largest standardized", residuals.standardizedResidual->maximum, 4.04751093343394 / 2.40633503852048},
      {"first standardized", residuals.standardized[0], (78.5 - 80.0740018507392) / 2.40633503852048},
  };
  for (const Row& row : rows) {
    // R's own figures hold to about 13 digits.
    EXPECT_LE(std::abs(row.actual - row.expected), 2e-12 * std::abs(row.expected))
        << row.what << " is " << row.actual;
  }
}

TEST(PredictorSelection, FitsThroughTheOrigin) {
  const Problem problem(kCement, true);
  const std::vector<std::size_t> predictors = {0, 1};
  const LinearFit fit = *problem.system.fit(predictors);
  const ResidualSummary residuals = summarizeResiduals(problem.variables, problem.products, 4, fit, false);
  EXPECT_FALSE(fit.constant);
  EXPECT_EQ(fit.residualFreedom, 11U);
  struct Row {
    double actual, expected;
  };
  const std::vector<Row> rows = {{fit.coefficients[0].value.value(), 1.95685129065978},
                                 {*fit.coefficients[1].standardError, 0.15518026490298},
                                 {1 - fit.residualShare, 0.974229433800872},
                                 {*fit.adjustedRSquare, 0.969543876310122},
                                 {*fit.standardErrorEstimate, 16.8428799072512},
                                 {fit.test->f, 207.921775738328},
                                 {*residuals.press, 3928.74728918513}};
  for (const Row& row : rows) {
    EXPECT_LE(std::abs(row.actual - row.expected), 1e-13 * row.expected) << row.actual;
  }
}

}  // namespace
}  // namespace genostat::standalone
