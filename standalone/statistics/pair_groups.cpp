#include "standalone/statistics/pair_groups.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace genostat::standalone {

namespace {

// Variables that are missing in the same cases.
struct MissingPattern {
  std::vector<bool> missing;  // [case]
  std::vector<std::size_t> variables;
};

std::vector<MissingPattern> findPatterns(VariableSpans variables) {
  std::vector<MissingPattern> patterns;
  for (std::size_t variable = 0; variable < variables.size(); ++variable) {
    std::vector<bool> missing(variables[variable].size());
    for (std::size_t i = 0; i < missing.size(); ++i) {
      missing[i] = std::isnan(variables[variable][i]);
    }
    const auto same = std::ranges::find(patterns, missing, &MissingPattern::missing);
    if (same != patterns.end()) {
      same->variables.push_back(variable);
    } else {
      patterns.push_back({std::move(missing), {variable}});
    }
  }
  return patterns;
}

PairGroup groupWithin(std::vector<std::size_t> variables) {
  PairGroup group{std::move(variables), {}};
  for (std::size_t i = 0; i < group.variables.size(); ++i) {
    for (std::size_t j = i; j < group.variables.size(); ++j) {
      group.pairs.emplace_back(i, j);
    }
  }
  return group;
}

PairGroup groupBetween(const std::vector<std::size_t>& some, const std::vector<std::size_t>& others) {
  PairGroup group{some, {}};
  group.variables.insert(group.variables.end(), others.begin(), others.end());
  for (std::size_t i = 0; i < some.size(); ++i) {
    for (std::size_t j = some.size(); j < group.variables.size(); ++j) {
      group.pairs.emplace_back(i, j);
    }
  }
  return group;
}

}  // namespace

std::vector<PairGroup> groupPairs(VariableSpans variables, Deletion deletion) {
  if (deletion == Deletion::Listwise) {
    std::vector<std::size_t> all(variables.size());
    std::iota(all.begin(), all.end(), std::size_t{0});
    return {groupWithin(std::move(all))};
  }
  const std::vector<MissingPattern> patterns = findPatterns(variables);
  std::vector<PairGroup> groups;
  for (std::size_t i = 0; i < patterns.size(); ++i) {
    groups.push_back(groupWithin(patterns[i].variables));
    for (std::size_t j = i + 1; j < patterns.size(); ++j) {
      groups.push_back(groupBetween(patterns[i].variables, patterns[j].variables));
    }
  }
  return groups;
}

}  // namespace genostat::standalone
