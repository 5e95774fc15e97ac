// Percentiles and n-tiles.
#pragma once

#include <span>
#include <vector>

namespace genostat::standalone {

// A share of the values, p = numerator / denominator. Both are whole where the share is one that a
// person would write down, so that (n + 1) p hits a whole rank exactly when it should.
struct Share {
  double percent = 0;  // 100 p, rounded; equal shares have equal percents
  double numerator = 0;
  double denominator = 1;
};

// `percent`: from 0 to 100. Up to nine decimals are taken as written: 33.3 is 333 / 1000.
Share shareOfPercent(double percent);
// The boundary above the first `tile` of `tiles` groups of equal size: tile / tiles.
Share shareOfTiles(int tile, int tiles);

// The values in ascending order, without the missing ones (not-a-number).
std::vector<double> sortedValues(std::span<const double> values);

// The weighted average at (n + 1) p: with k the whole part of that rank and f the rest, the value
// (1 - f) x(k) + f x(k+1), where x(1) is the smallest value; the smallest one for ranks below 1 and
// the largest for ranks above n. Correctly rounded but for the last bit. `sorted` must not be empty.
// Source: R. J. Hyndman, Y. Fan, "Sample quantiles in statistical packages", The American
// Statistician 50 (1996) 361-365, definition 6.
double quantile(std::span<const double> sorted, const Share& share);

}  // namespace genostat::standalone
