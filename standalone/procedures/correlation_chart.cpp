#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string>
#include <utility>

#include "standalone/language/translation.h"
#include "standalone/procedures/correlation_output.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kMostVariables = 8;
constexpr std::size_t kMostCases = 1000;

// Cases that show a point: pairwise with at least two values, listwise with all of them.
std::vector<std::size_t> casesToDraw(const CorrelationList& list, std::size_t drawn, Deletion deletion) {
  const std::size_t count = list.variables.front()->numbers.size();
  std::vector<std::size_t> cases;
  for (std::size_t i = 0; i < count; ++i) {
    const auto isValid = [i](const Column* variable) { return !std::isnan(variable->numbers[i]); };
    const auto end = list.variables.begin() + static_cast<std::ptrdiff_t>(drawn);
    const bool shown = deletion == Deletion::Listwise
                           ? std::ranges::all_of(list.variables, isValid)
                           : std::count_if(list.variables.begin(), end, isValid) > 1;
    if (shown) cases.push_back(i);
  }
  return cases;
}

std::vector<std::size_t> chooseEvenly(const std::vector<std::size_t>& cases) {
  std::vector<std::size_t> chosen;
  for (std::size_t i = 0; i < kMostCases; ++i) {
    chosen.push_back(cases[i * cases.size() / kMostCases]);
  }
  return chosen;
}

}  // namespace

std::optional<Chart> correlationChart(const CorrelationList& list, Deletion deletion) {
  const std::size_t drawn = std::min(list.variables.size(), kMostVariables);
  if (drawn < 2) return std::nullopt;
  std::vector<std::size_t> cases = casesToDraw(list, drawn, deletion);
  if (cases.empty()) return std::nullopt;
  Chart chart;
  chart.title = translated("Scatter-plot matrix");
  if (drawn < list.variables.size()) {
    chart.notes.push_back(translated("The first {1} of {2} variables are drawn.",
                                     {std::to_string(drawn), std::to_string(list.variables.size())}));
  }
  if (cases.size() > kMostCases) {
    chart.notes.push_back(translated("{1} of {2} cases are drawn, chosen evenly.",
                                     {std::to_string(kMostCases), std::to_string(cases.size())}));
    cases = chooseEvenly(cases);
  }
  ScatterMatrix matrix;
  for (std::size_t variable = 0; variable < drawn; ++variable) {
    const Column& column = *list.variables[variable];
    matrix.variables.push_back(column.name);
    std::vector<double>& values = matrix.values.emplace_back();
    for (const std::size_t i : cases) {
      values.push_back(column.numbers[i]);
    }
  }
  chart.data = std::move(matrix);
  return chart;
}

}  // namespace genostat::standalone
