// Labels and footnotes that the tables of a regression share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/procedures/regression_tables.h"

namespace genostat::standalone {

inline constexpr std::string_view kConstantName = marked("(Constant)");

// "x4, x1"; `predictors` are indices into those of the request.
std::string predictorNames(const RegressionResult& result, const std::vector<std::size_t>& predictors);
// "Predictors: (Constant), x4, x1"
std::string predictorsNote(const RegressionResult& result, const LinearFit& fit);
// "Dependent variable: y"
std::string dependentNote(const RegressionResult& result);
// What an analyst would ask when tests are missing; empty when none is.
std::string missingTestsNote(const LinearFit& fit);
// "1" for the first step.
std::string modelLabel(std::size_t step);

}  // namespace genostat::standalone
