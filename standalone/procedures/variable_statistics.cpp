#include "standalone/procedures/variable_statistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>

#include "standalone/procedures/table_cells.h"

namespace genostat::standalone {

namespace {

bool isUsual(const Statistic& statistic) {
  static constexpr std::array kUsual = {kMean.keyword, kDeviation.keyword, kMinimum.keyword,
                                        kMaximum.keyword};
  return std::ranges::find(kUsual, statistic.keyword) != kUsual.end();
}

}  // namespace

CellValue Statistic::cell(const Column& variable, const std::optional<double>& number) const {
  return ownDecimals ? statisticCell(variable, number, extraDecimals) : cellOf(number, extraDecimals);
}

std::vector<Statistic> usualStatistics(std::span<const Statistic> offered) {
  std::vector<Statistic> usual;
  std::ranges::copy_if(offered, std::back_inserter(usual), isUsual);
  return usual;
}

std::vector<Statistic> parseStatistics(TokenCursor& cursor, std::span<const Statistic> offered,
                                       bool mayBeNone) {
  std::vector<std::string_view> words;
  std::ranges::transform(offered, std::back_inserter(words), &Statistic::keyword);
  words.insert(words.end(), {"DEFAULT", "ALL"});
  if (mayBeNone) words.emplace_back("NONE");
  if (cursor.atSubcommandEnd()) return usualStatistics(offered);
  std::vector<bool> chosen(offered.size());
  while (!cursor.atSubcommandEnd()) {
    const std::string_view word = words[cursor.expectKeyword(words, translated("statistic"))];
    for (std::size_t i = 0; i < offered.size(); ++i) {
      const bool named =
          word == "ALL" || word == offered[i].keyword || (word == "DEFAULT" && isUsual(offered[i]));
      chosen[i] = named || (chosen[i] && word != "NONE");
    }
  }
  std::vector<Statistic> statistics;
  for (std::size_t i = 0; i < offered.size(); ++i) {
    if (chosen[i]) statistics.push_back(offered[i]);
  }
  return statistics;
}

std::vector<bool> completeCases(const std::vector<const Column*>& variables, std::size_t caseCount) {
  std::vector<bool> complete(caseCount, true);
  for (const Column* variable : variables) {
    for (std::size_t i = 0; i < caseCount; ++i) {
      if (std::isnan(variable->numbers[i])) complete[i] = false;
    }
  }
  return complete;
}

std::vector<Moments> momentsOf(const std::vector<const Column*>& variables, Deletion deletion,
                               MomentDetail detail) {
  std::vector<bool> complete;
  if (deletion == Deletion::Listwise) complete = completeCases(variables, variables.front()->numbers.size());
  std::vector<Moments> moments;
  for (const Column* variable : variables) {
    if (deletion == Deletion::Pairwise) {
      moments.push_back(computeMoments(variable->numbers, detail));
      continue;
    }
    std::vector<double> values = variable->numbers;
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!complete[i]) values[i] = std::numeric_limits<double>::quiet_NaN();
    }
    moments.push_back(computeMoments(values, detail));
  }
  return moments;
}

}  // namespace genostat::standalone
