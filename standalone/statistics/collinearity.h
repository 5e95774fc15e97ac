// How near the predictors of a regression are to determining one another.
#pragma once

#include <cstddef>
#include <vector>

#include "standalone/statistics/cross_products.h"
#include "standalone/statistics/linear_system.h"

namespace genostat::standalone {

// Of the columns of the design matrix (the constant's, then the predictors', about zero) scaled to
// unit length: D. A. Belsley, E. Kuh, R. E. Welsch, "Regression Diagnostics" (Wiley 1980), 3.2.
struct CollinearityDimension {
  double eigenvalue = 0;      // of X'X; the dimensions come with the largest first
  double conditionIndex = 1;  // √(largest eigenvalue / eigenvalue)
  // [coefficient], the constant's first: the share of its variance that this dimension brings.
  std::vector<double> varianceProportions;
};

// `fit` must come from a system of these products.
std::vector<CollinearityDimension> computeCollinearity(const CrossProducts& products, const LinearFit& fit);

}  // namespace genostat::standalone
