#include "standalone/procedures/regression_labels.h"

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

std::string missingTestsNote(const LinearFit& fit) {
  if (fit.residualFreedom == 0) return "As many coefficients as cases: nothing is left to test them by";
  if (fit.exact) return "The predictors determine the dependent variable exactly: nothing is left to test by";
  return {};
}

std::string modelLabel(std::size_t step) {
  return std::to_string(step + 1);
}

}  // namespace genostat::standalone
