// Sums of squares and cross-products of deviations from the means.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "standalone/statistics/double_double.h"

namespace genostat::standalone {

// A case counts when none of the variables is missing in it. Accurate to about 28 digits of the
// largest term, so that what is computed from them loses nothing to cancellation.
struct CrossProducts {
  std::size_t variableCount = 0;
  std::size_t caseCount = 0;
  std::vector<DoubleDouble> means;  // [variable]
  std::vector<DoubleDouble> sums;   // [variable * variableCount + variable]; symmetric

  const DoubleDouble& sum(std::size_t row, std::size_t column) const {
    return sums[row * variableCount + column];
  }
};

// `variables`: [variable][case], all of the same length; not-a-number is missing. Without cases
// means and sums are zero. Values beyond 1e150 in size overflow to infinities or not-a-number.
CrossProducts computeCrossProducts(std::span<const std::span<const double>> variables);

}  // namespace genostat::standalone
