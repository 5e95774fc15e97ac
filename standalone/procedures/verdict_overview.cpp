#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "common/quality/checks.h"
#include "standalone/language/translation.h"
#include "standalone/procedures/imported_data.h"

namespace genostat::standalone {

namespace {

using common::Verdict;

constexpr std::size_t kMostSamples = 500;
constexpr std::size_t kFewestChecks = 2;

bool holdsOnlyVerdicts(const Column& column) {
  return column.type == Column::Type::String &&
         std::ranges::all_of(
             column.texts, [](const std::string& text) { return common::verdictNamed(text).has_value(); }) &&
         std::ranges::any_of(column.texts, [](const std::string& text) { return !text.empty(); });
}

// How a case ranks: each failure counts more than any number of warnings.
struct RankedCase {
  std::size_t row = 0;
  std::size_t failures = 0;
  std::size_t warnings = 0;
};

// The worst cases, in the dataset's order where they are equally bad.
std::vector<RankedCase> worstCases(const std::vector<const Column*>& checks, std::size_t caseCount) {
  std::vector<RankedCase> cases(caseCount);
  for (std::size_t row = 0; row < caseCount; ++row) {
    cases[row].row = row;
    for (const Column* check : checks) {
      const std::optional<Verdict> verdict = common::verdictNamed(check->texts[row]);
      cases[row].failures += verdict == Verdict::Fail ? 1U : 0U;
      cases[row].warnings += verdict == Verdict::Warn ? 1U : 0U;
    }
  }
  std::ranges::stable_sort(cases, [](const RankedCase& left, const RankedCase& right) {
    return left.failures != right.failures ? left.failures > right.failures : left.warnings > right.warnings;
  });
  if (cases.size() > kMostSamples) cases.resize(kMostSamples);
  return cases;
}

// The title of a check of the analysis; other variables keep their names.
std::string titleOf(const std::string& variable) {
  const auto known = std::ranges::find(common::kChecks, variable, &common::CheckNames::column);
  return known != common::kChecks.end() ? translated(known->title) : variable;
}

// A chart takes rows of one name for one row.
std::string distinctName(std::unordered_set<std::string>& taken, const std::string& name) {
  std::string distinct = name;
  for (std::size_t i = 2; !taken.insert(distinct).second; ++i) {
    distinct = name + " (" + std::to_string(i) + ")";
  }
  return distinct;
}

const Column* namesOfSamples(const Dataset& dataset, const std::vector<const Column*>& checks) {
  const auto isText = [&](const Column& column) {
    return column.type == Column::Type::String && std::ranges::find(checks, &column) == checks.end();
  };
  const Column* sample = dataset.find("Sample");
  if (sample != nullptr && isText(*sample)) return sample;
  const auto first = std::ranges::find_if(dataset.columns, isText);
  return first != dataset.columns.end() ? &*first : nullptr;
}

}  // namespace

std::optional<Chart> verdictOverview(const Dataset& dataset) {
  std::vector<const Column*> checks;
  for (const Column& column : dataset.columns) {
    if (holdsOnlyVerdicts(column)) checks.push_back(&column);
  }
  if (checks.size() < kFewestChecks) return std::nullopt;

  const Column* names = namesOfSamples(dataset, checks);
  VerdictMap map;
  for (const Column* check : checks) {
    map.checks.push_back(titleOf(check->name));
  }
  std::unordered_set<std::string> taken;
  for (const RankedCase& ranked : worstCases(checks, dataset.caseCount)) {
    const std::string name = names != nullptr ? names->texts[ranked.row] : std::string();
    map.samples.push_back(
        distinctName(taken, name.empty() ? translated("Case {1}", {std::to_string(ranked.row + 1)}) : name));
    std::vector<Verdict>& verdicts = map.verdicts.emplace_back();
    for (const Column* check : checks) {
      verdicts.push_back(common::verdictNamed(check->texts[ranked.row]).value_or(Verdict::None));
    }
  }
  Chart chart{translated("Quality Overview"), {}, {}};
  if (dataset.caseCount > kMostSamples) {
    chart.notes.push_back(translated("The {1} worst of {2} samples are shown.",
                                     {std::to_string(kMostSamples), std::to_string(dataset.caseCount)}));
  }
  chart.data = std::move(map);
  return chart;
}

}  // namespace genostat::standalone
