#include "standalone/statistics/ranked_variable.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace genostat::standalone {

namespace {

struct ValueOfCase {
  double value;
  std::uint32_t number;
};

}  // namespace

RankedVariable rankVariable(std::span<const double> values) {
  if (values.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw std::length_error("too many cases to rank");
  }
  // Values move along with their cases: looked up from afar they would cost more than the comparisons.
  std::vector<ValueOfCase> sorted;
  sorted.reserve(values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (!std::isnan(values[i])) sorted.push_back({values[i], static_cast<std::uint32_t>(i)});
  }
  std::ranges::sort(sorted, {}, &ValueOfCase::value);

  RankedVariable ranked;
  ranked.order.reserve(sorted.size());
  ranked.groups.resize(values.size());
  for (std::size_t i = 0; i < sorted.size(); ++i) {
    if (i == 0 || sorted[i].value != sorted[i - 1].value) ++ranked.groupCount;
    ranked.order.push_back(sorted[i].number);
    ranked.groups[sorted[i].number] = static_cast<std::uint32_t>(ranked.groupCount - 1);
  }
  return ranked;
}

std::vector<double> midRanks(const RankedVariable& variable, const std::vector<bool>& included) {
  std::vector<double> ranks(variable.groups.size(), std::numeric_limits<double>::quiet_NaN());
  std::vector<std::uint32_t> tied;
  std::size_t ranked = 0;
  const auto close = [&] {
    const double rank = static_cast<double>(ranked) + (static_cast<double>(tied.size()) + 1) / 2;
    for (const std::uint32_t number : tied) {
      ranks[number] = rank;
    }
    ranked += tied.size();
    tied.clear();
  };
  for (const std::uint32_t number : variable.order) {
    if (!included[number]) continue;
    if (!tied.empty() && variable.groups[number] != variable.groups[tied.front()]) close();
    tied.push_back(number);
  }
  close();
  return ranks;
}

}  // namespace genostat::standalone
