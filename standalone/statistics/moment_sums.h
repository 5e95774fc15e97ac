// The sums over one variable that its moments are made of.
#pragma once

#include <cstddef>
#include <span>

#include "standalone/statistics/double_double.h"

namespace genostat::standalone {

// Not-a-number counts as missing here as well as below.
struct Extent {
  std::size_t count = 0;
  double minimum = 0;  // both 0 without values
  double maximum = 0;
  DoubleDouble sum;  // not finite where the sum is beyond double's range
};
Extent measureExtent(std::span<const double> values);

// Sums of the powers of z = (x - centre) * scale.
struct PowerSums {
  double first = 0;
  double second = 0;
  double third = 0;
  double fourth = 0;
};
PowerSums sumTwoPowers(std::span<const double> values, double centre, double scale);
PowerSums sumFourPowers(std::span<const double> values, double centre, double scale);

}  // namespace genostat::standalone
