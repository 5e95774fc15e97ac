// The bins of a histogram.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace genostat::standalone {

// Bin i holds the values from firstEdge + i * width up to, but without, the next edge; the last bin
// may hold its upper edge as well.
struct HistogramBins {
  double firstEdge = 0;
  double width = 1;
  std::vector<std::size_t> counts;
};

// The width is the smaller one that two rules ask for, and 1, 2 or 5 times a power of ten near it:
//   2 · IQR / ∛n          D. Freedman, P. Diaconis, "On the histogram as a density estimator: L2
//                         theory", Z. Wahrscheinlichkeitstheorie 57 (1981) 453-476
//   range / (1 + log2 n)  H. A. Sturges, "The choice of a class interval", Journal of the American
//                         Statistical Association 21 (1926) 65-66
// The second rule serves few values, and values of which more than half are equal. There are never
// more than 60 bins or so. Edges are multiples of the width. Where all values are multiples of
// 10^-decimals, no bin is narrower than that, and bins that narrow have the values in their middle:
// otherwise every few bins would be empty by rounding alone. Values that are all equal are one bin.
//
// `sorted`: ascending, without missing values. None without values and where the values lie too
// far apart or too close together for double.
std::optional<HistogramBins> binValues(std::span<const double> sorted, int decimals);

}  // namespace genostat::standalone
