// Probabilities that go with coefficients of correlation.
#pragma once

#include <cstddef>

namespace genostat::standalone {

// P(T >= |t|) of Student's t with n - 2 degrees of freedom, t = r √((n-2) / (1-r²)): the one-tailed
// significance of a correlation of `caseCount` cases, at least three. `unexplained` is 1 - r², which
// the caller may know to more digits than r has.
double correlationTail(double coefficient, double unexplained, std::size_t caseCount);

// P(Z >= |z|) of the standard normal distribution.
double normalTail(double z);

}  // namespace genostat::standalone
