#include "standalone/procedures/statistic_cell.h"

#include <algorithm>
#include <cmath>

namespace genostat::standalone {

CellValue statisticCell(const Column& variable, const std::optional<double>& value, int extra) {
  if (!value) return {};
  constexpr int kMostOwnDecimals = 4;
  constexpr int kMostDecimals = 5;
  constexpr int kMostSmallDecimals = 12;
  constexpr int kSmallDigits = 3;
  const int own = variable.decimals + extra;
  const int decimals = std::min({own, kMostOwnDecimals + extra, kMostDecimals});
  if (*value == 0 || std::abs(*value) >= 0.1) return numberCell(*value, decimals);
  // In 0.00123 the first two decimals do not count.
  const int zeros = -static_cast<int>(std::floor(std::log10(std::abs(*value)))) - 1;
  const int most = std::max(decimals, std::min(own, kMostSmallDecimals));
  return numberCell(*value, std::clamp(zeros + kSmallDigits, decimals, most));
}

}  // namespace genostat::standalone
