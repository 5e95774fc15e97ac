#include "standalone/procedures/complete_cases.h"

#include <cmath>
#include <limits>

namespace genostat::standalone {

std::vector<bool> completeCases(const std::vector<const Column*>& variables, std::size_t caseCount) {
  std::vector<bool> complete(caseCount, true);
  for (const Column* variable : variables) {
    for (std::size_t i = 0; i < caseCount; ++i) {
      if (std::isnan(variable->numbers[i])) complete[i] = false;
    }
  }
  return complete;
}

std::vector<double> valuesOfCases(const Column& variable, const std::vector<bool>& complete) {
  std::vector<double> values = variable.numbers;
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!complete[i]) values[i] = std::numeric_limits<double>::quiet_NaN();
  }
  return values;
}

}  // namespace genostat::standalone
