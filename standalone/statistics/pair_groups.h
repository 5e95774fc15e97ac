// Pairs of variables by the cases that count for them.
#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

namespace genostat::standalone {

// Variables of a dataset: [variable][case], all of the same length; not-a-number is missing.
using VariableSpans = std::span<const std::span<const double>>;

// Which cases count for a pair: those complete in the pair, or those complete in all variables.
enum class Deletion { Pairwise, Listwise };

// Pairs with the same cases, so that what depends on the cases is computed once for all of them:
// the cases complete in all `variables` are those of each pair.
struct PairGroup {
  std::vector<std::size_t> variables;
  std::vector<std::pair<std::size_t, std::size_t>> pairs;  // positions within `variables`
};

// Each pair of variables, and each variable with itself, is in one group, once.
std::vector<PairGroup> groupPairs(VariableSpans variables, Deletion deletion);

}  // namespace genostat::standalone
