// Labels, cells and footnotes that the tables of a regression share.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/output/pivot_table.h"
#include "standalone/procedures/regression_tables.h"

namespace genostat::standalone {

// A new table with its title, the note on the dependent variable, and the label of its rows.
PivotTable beginTable(const RegressionResult& result, std::string title, std::string rowLabel = {});

inline constexpr std::string_view kConstantName = marked("(Constant)");

// "x4, x1"; `predictors` are indices into those of the request.
std::string predictorNames(const RegressionResult& result, const std::vector<std::size_t>& predictors);
// "Predictors: (Constant), x4, x1"
std::string predictorsNote(const RegressionResult& result, const LinearFit& fit);
// What an analyst would ask when tests are missing; empty when none is.
std::string missingTestsNote(const LinearFit& fit);
// "1" for the first step.
std::string modelLabel(std::size_t step);

// As many decimals as show two digits of the smallest of the sizes, but no fewer than three.
int decimalsForSizes(std::initializer_list<double> sizes);

}  // namespace genostat::standalone
