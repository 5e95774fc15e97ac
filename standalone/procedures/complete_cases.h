// Listwise deletion for procedures that look at one variable after another.
#pragma once

#include <cstddef>
#include <vector>

#include "standalone/data/dataset.h"

namespace genostat::standalone {

// [case]: none of the numeric variables is missing.
std::vector<bool> completeCases(const std::vector<const Column*>& variables, std::size_t caseCount);

// A variable's values, missing in all cases but the complete ones.
std::vector<double> valuesOfCases(const Column& variable, const std::vector<bool>& complete);

}  // namespace genostat::standalone
