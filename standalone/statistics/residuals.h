// What a linear regression leaves: one pass over the cases.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "standalone/statistics/cross_products.h"
#include "standalone/statistics/linear_system.h"

namespace genostat::standalone {

struct Spread {
  double minimum = 0;
  double maximum = 0;
  double mean = 0;
  std::optional<double> deviation;  // with n - 1; none for one case
};

struct ResidualSummary {
  Spread predicted;
  Spread residual;
  std::optional<Spread> standardizedPredicted;  // (predicted - mean) / deviation
  std::optional<Spread> standardizedResidual;   // residual / standard error of the estimate
  // Σ (e / (1 - h))², h the leverage of the case: the squares of prediction errors when each case
  // is predicted by the regression on the others (D. M. Allen, "The relationship between
  // variable selection and data augmentation and a method for prediction", Technometrics 16 (1974)
  // 125-127). None when some case has a leverage of 1: the others do not determine the regression.
  std::optional<double> press;
  std::vector<double> standardized;  // residuals in the order of the cases, when they were asked for
};

// `variables`: [variable][case], the ones that `products` was computed from; a case in which any of
// them is missing does not count. `fit` must come from a system of these products, and so must
// `dependent`.
ResidualSummary summarizeResiduals(std::span<const std::span<const double>> variables,
                                   const CrossProducts& products, std::size_t dependent, const LinearFit& fit,
                                   bool keepStandardized);

}  // namespace genostat::standalone
