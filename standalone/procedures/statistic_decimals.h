// How many decimals the statistics of a variable are shown with.
#pragma once

#include <algorithm>

#include "standalone/data/dataset.h"

namespace genostat::standalone {

// Values computed from data show a little more than the data do (`extra`), but no forest of digits.
inline int statisticDecimals(const Column& column, int extra) {
  constexpr int kMostOwnDecimals = 4;
  constexpr int kMostDecimals = 5;
  return std::min(std::min(column.decimals, kMostOwnDecimals) + extra, kMostDecimals);
}

}  // namespace genostat::standalone
