#include "standalone/statistics/significance.h"

#include <boost/math/distributions/normal.hpp>
#include <boost/math/distributions/students_t.hpp>
#include <cmath>

namespace genostat::standalone {

double correlationTail(double coefficient, double unexplained, std::size_t caseCount) {
  if (unexplained <= 0) return 0;
  const auto freedom = static_cast<double>(caseCount - 2);
  const double t = std::abs(coefficient) * std::sqrt(freedom / unexplained);
  return boost::math::cdf(boost::math::complement(boost::math::students_t(freedom), t));
}

double normalTail(double z) {
  return boost::math::cdf(boost::math::complement(boost::math::normal(), std::abs(z)));
}

}  // namespace genostat::standalone
