#include "standalone/procedures/regression_labels.h"

#include "standalone/language/translation.h"

namespace genostat::standalone {

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

std::string dependentNote(const RegressionResult& result) {
  return translated(result.request.throughOrigin ? "Dependent variable: {1}; regression through the origin"
                                                 : "Dependent variable: {1}",
                    {result.dependent.name});
}

std::string missingTestsNote(const LinearFit& fit) {
  if (fit.residualFreedom == 0)
    return translated("As many coefficients as cases: nothing is left to test them by");
  if (fit.exact)
    return translated("The predictors determine the dependent variable exactly: nothing is left to test by");
  return {};
}

std::string modelLabel(std::size_t step) {
  return std::to_string(step + 1);
}

}  // namespace genostat::standalone
