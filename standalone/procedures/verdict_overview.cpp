#include "standalone/procedures/verdict_overview.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

using Verdict = VerdictMap::Verdict;

constexpr std::size_t kMostSamples = 500;
constexpr std::size_t kFewestChecks = 2;

// Indexed by Verdict.
constexpr std::array<std::string_view, 4> kVerdictWords = {"", "pass", "warn", "fail"};
static_assert(static_cast<std::size_t>(Verdict::Fail) + 1 == kVerdictWords.size());

std::optional<Verdict> verdictOf(std::string_view text) {
  for (std::size_t i = 0; i < kVerdictWords.size(); ++i) {
    if (equalsIgnoreCase(text, kVerdictWords[i])) return static_cast<Verdict>(i);
  }
  return std::nullopt;
}

bool holdsOnlyVerdicts(const Column& column) {
  return column.type == Column::Type::String &&
         std::ranges::all_of(column.texts,
                             [](const std::string& text) { return verdictOf(text).has_value(); }) &&
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
      const std::optional<Verdict> verdict = verdictOf(check->texts[row]);
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

// What the analysis checks, as readers are told.
constexpr std::array<std::string_view, 11> kKnownChecks = {marked("Basic statistics"),
                                                           marked("Per base sequence quality"),
                                                           marked("Per sequence quality scores"),
                                                           marked("Per base sequence content"),
                                                           marked("Per sequence GC content"),
                                                           marked("Per base N content"),
                                                           marked("Sequence length distribution"),
                                                           marked("Sequence duplication levels"),
                                                           marked("Overrepresented sequences"),
                                                           marked("Adapter content"),
                                                           marked("Per tile sequence quality")};

// "per_base_n_content" as a reader's "Per base N content".
std::string readableName(std::string name) {
  std::ranges::replace(name, '_', ' ');
  name.front() = toUpperAscii(std::string_view(name).substr(0, 1)).front();
  for (const std::string_view abbreviation : {" n ", " gc "}) {
    if (const std::size_t place = name.find(abbreviation); place != std::string::npos)
      name.replace(place, abbreviation.size(), toUpperAscii(abbreviation));
  }
  return std::ranges::find(kKnownChecks, name) != kKnownChecks.end() ? translated(name) : name;
}

// A chart takes rows of one name for one row.
class DistinctNames {
 public:
  std::string add(const std::string& name) {
    std::string distinct = name;
    for (std::size_t i = 2; !taken_.insert(distinct).second; ++i) {
      distinct = name + " (" + std::to_string(i) + ")";
    }
    return distinct;
  }

 private:
  std::unordered_set<std::string> taken_;
};

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
    map.checks.push_back(readableName(check->name));
  }
  DistinctNames distinct;
  for (const RankedCase& ranked : worstCases(checks, dataset.caseCount)) {
    const std::string name = names != nullptr ? names->texts[ranked.row] : std::string();
    map.samples.push_back(
        distinct.add(name.empty() ? translated("Case {1}", {std::to_string(ranked.row + 1)}) : name));
    std::vector<Verdict>& verdicts = map.verdicts.emplace_back();
    for (const Column* check : checks) {
      verdicts.push_back(verdictOf(check->texts[ranked.row]).value_or(Verdict::None));
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
