#include "standalone/statistics/rank_correlation.h"

#include <cmath>

#include "standalone/statistics/kendall.h"

namespace genostat::standalone {

namespace {

Correlation withItself(const RankedVariable& variable, const std::vector<bool>& included) {
  Correlation result;
  bool constant = true;
  std::uint32_t first = 0;
  for (const std::uint32_t number : variable.order) {
    if (!included[number]) continue;
    if (result.caseCount++ == 0) first = variable.groups[number];
    constant = constant && variable.groups[number] == first;
  }
  if (result.caseCount < 2) {
    result.obstacle = Correlation::Obstacle::TooFewCases;
  } else if (constant) {
    result.obstacle = Correlation::Obstacle::Constant;
  } else {
    result.coefficient = 1;
  }
  return result;
}

}  // namespace

RankCorrelation::RankCorrelation(VariableSpans variables, Deletion deletion)
    : variables_(variables.begin(), variables.end()), groups_(groupPairs(variables, deletion)) {
  for (const std::span<const double> variable : variables) {
    ranked_.push_back(rankVariable(variable));
  }
}

std::vector<bool> RankCorrelation::casesOf(const PairGroup& group) const {
  std::vector<bool> cases(variables_.empty() ? 0 : variables_.front().size(), true);
  for (const std::size_t variable : group.variables) {
    // Nothing to look for where nothing is missing.
    if (ranked_[variable].order.size() == cases.size()) continue;
    for (std::size_t i = 0; i < cases.size(); ++i) {
      if (std::isnan(variables_[variable][i])) cases[i] = false;
    }
  }
  return cases;
}

CorrelationMatrix RankCorrelation::spearman() const {
  CorrelationMatrix matrix(variables_.size());
  for (const PairGroup& group : groups_) {
    const std::vector<bool> cases = casesOf(group);
    std::vector<std::vector<double>> ranks;
    for (const std::size_t variable : group.variables) {
      ranks.push_back(midRanks(ranked_[variable], cases));
    }
    const std::vector<std::span<const double>> spans(ranks.begin(), ranks.end());
    const CrossProducts products = computeCrossProducts(spans);
    for (const auto& [i, j] : group.pairs) {
      matrix.set(group.variables[i], group.variables[j], correlationOf(products, i, j));
    }
  }
  return matrix;
}

CorrelationMatrix RankCorrelation::kendall() const {
  CorrelationMatrix matrix(variables_.size());
  for (const PairGroup& group : groups_) {
    const std::vector<bool> cases = casesOf(group);
    for (const auto& [i, j] : group.pairs) {
      const std::size_t one = group.variables[i];
      const std::size_t other = group.variables[j];
      matrix.set(
          one, other,
          one == other ? withItself(ranked_[one], cases) : kendallTauB(ranked_[one], ranked_[other], cases));
    }
  }
  return matrix;
}

}  // namespace genostat::standalone
