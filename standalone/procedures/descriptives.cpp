// DESCRIPTIVES: moments of numeric variables.
//
//   DESCRIPTIVES [VARIABLES=] list
//     [/STATISTICS=[DEFAULT] [ALL] [MEAN] [SEMEAN] [STDDEV] [VARIANCE] [RANGE] [MINIMUM] [MAXIMUM]
//                  [SUM] [SKEWNESS] [KURTOSIS]]
//     [/MISSING=VARIABLE|LISTWISE].

#include <algorithm>
#include <array>
#include <bitset>
#include <optional>
#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/complete_cases.h"
#include "standalone/procedures/statistic_cell.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/statistics/moments.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

// In the order of the table's columns.
enum Statistic : std::size_t {
  Range,
  Minimum,
  Maximum,
  Sum,
  Mean,
  MeanError,
  Deviation,
  Variance,
  Skewness,
  Kurtosis,
  StatisticCount
};
using Statistics = std::bitset<StatisticCount>;

constexpr std::size_t kDefaultKeyword = StatisticCount;
constexpr std::size_t kAllKeyword = StatisticCount + 1;
constexpr std::array<std::string_view, StatisticCount + 2> kDescriptivesWords = {
    "RANGE",  "MINIMUM",  "MAXIMUM",  "SUM",      "MEAN",    "SEMEAN",
    "STDDEV", "VARIANCE", "SKEWNESS", "KURTOSIS", "DEFAULT", "ALL"};

Statistics defaultStatistics() {
  Statistics statistics;
  for (const Statistic statistic : {Mean, Deviation, Minimum, Maximum}) {
    statistics.set(statistic);
  }
  return statistics;
}

struct Request {
  std::vector<const Column*> variables;
  Statistics statistics = defaultStatistics();
  bool listwise = false;
};

Statistics parseStatistics(TokenCursor& cursor) {
  Statistics statistics;
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = cursor.expectKeyword(kDescriptivesWords, translated("statistic"));
    if (keyword == kAllKeyword) {
      statistics.set();
    } else if (keyword == kDefaultKeyword) {
      statistics |= defaultStatistics();
    } else {
      statistics.set(keyword);
    }
  }
  return statistics.none() ? defaultStatistics() : statistics;
}

Request parseRequest(CommandContext& context, const Dataset& dataset) {
  enum Subcommand : std::size_t { VariablesSubcommand, StatisticsSubcommand, MissingSubcommand };
  static constexpr std::array<std::string_view, 3> kSubcommands = {"VARIABLES", "STATISTICS", "MISSING"};
  static constexpr std::array<std::string_view, 2> kMissing = {"VARIABLE", "LISTWISE"};
  TokenCursor cursor(context.command);
  const Token& name = cursor.next();
  Request request;
  // The list may follow the command's name.
  if (atBareVariableList(dataset, cursor, kSubcommands))
    request.variables = parseNumericVariables(context, dataset, cursor);
  while (const auto subcommand = cursor.nextSubcommand(kSubcommands)) {
    if (*subcommand == VariablesSubcommand) {
      if (!request.variables.empty())
        TokenCursor::fail(translated("the variables are listed twice"), cursor.peek());
      request.variables = parseNumericVariables(context, dataset, cursor);
    } else if (*subcommand == StatisticsSubcommand) {
      request.statistics = parseStatistics(cursor);
    } else {
      request.listwise = cursor.expectKeyword(kMissing) == 1;
    }
  }
  if (request.variables.empty())
    TokenCursor::fail(translated("{1} names no variable", {"DESCRIPTIVES"}), name);
  return request;
}

struct Descriptions {
  std::vector<Moments> moments;  // [variable]
  std::size_t completeCount = 0;
};

Descriptions describe(const Request& request, std::size_t caseCount) {
  const bool shape = request.statistics.test(Skewness) || request.statistics.test(Kurtosis);
  const MomentDetail detail = shape ? MomentDetail::Shape : MomentDetail::Spread;
  Descriptions results;
  if (request.listwise) {
    const std::vector<bool> complete = completeCases(request.variables, caseCount);
    for (const Column* column : request.variables) {
      results.moments.push_back(computeMoments(valuesOfCases(*column, complete), detail));
    }
    results.completeCount = results.moments.front().count;
    return results;
  }
  std::vector<const Column*> incomplete;
  for (const Column* column : request.variables) {
    results.moments.push_back(computeMoments(column->numbers, detail));
    if (results.moments.back().count < caseCount) incomplete.push_back(column);
  }
  const std::vector<bool> complete = completeCases(incomplete, caseCount);
  results.completeCount = static_cast<std::size_t>(std::ranges::count(complete, true));
  return results;
}

struct Shown {
  std::string_view label;
  std::optional<double> Moments::*value;
  std::optional<double> Moments::*error;  // a standard error beside it, or null
  int extraDecimals;                      // beyond the variable's own
  bool ownDecimals;                       // false: decimals do not depend on the variable
};

constexpr std::array<Shown, StatisticCount> kShown = {{
    {marked("Range"), &Moments::range, nullptr, 0, true},
    {marked("Minimum"), &Moments::minimum, nullptr, 0, true},
    {marked("Maximum"), &Moments::maximum, nullptr, 0, true},
    {marked("Sum"), &Moments::sum, nullptr, 0, true},
    {marked("Mean"), &Moments::mean, nullptr, 2, true},
    {marked("Std. Error of Mean"), &Moments::meanError, nullptr, 3, true},
    {marked("Std. Deviation"), &Moments::standardDeviation, nullptr, 3, true},
    {marked("Variance"), &Moments::variance, nullptr, 3, true},
    {marked("Skewness"), &Moments::skewness, &Moments::skewnessError, 3, false},
    {marked("Kurtosis"), &Moments::kurtosis, &Moments::kurtosisError, 3, false},
}};

CellValue toCell(const Shown& shown, const Column& column, const std::optional<double>& value) {
  if (shown.ownDecimals) return statisticCell(column, value, shown.extraDecimals);
  return value ? numberCell(*value, shown.extraDecimals) : CellValue();
}

std::vector<Category> columnLabels(const Statistics& statistics) {
  std::vector<Category> labels = {{"N", {}}};
  for (std::size_t i = 0; i < StatisticCount; ++i) {
    if (!statistics.test(i)) continue;
    labels.push_back({translated(kShown[i].label), {}});
    if (kShown[i].error != nullptr)
      labels.back().children = {{translated("Statistic"), {}}, {translated("Std. Error"), {}}};
  }
  return labels;
}

PivotTable buildTable(const Request& request, const Descriptions& results) {
  PivotTable table;
  table.title = translated("Descriptive Statistics");
  table.columns = columnLabels(request.statistics);
  for (std::size_t variable = 0; variable < request.variables.size(); ++variable) {
    const Column& column = *request.variables[variable];
    const Moments& moments = results.moments[variable];
    table.rows.push_back({column.name, {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    cells.push_back(numberCell(static_cast<double>(moments.count), 0));
    for (std::size_t i = 0; i < StatisticCount; ++i) {
      if (!request.statistics.test(i)) continue;
      const Shown& shown = kShown[i];
      cells.push_back(toCell(shown, column, moments.*shown.value));
      if (shown.error != nullptr) cells.push_back(toCell(shown, column, moments.*shown.error));
    }
  }
  table.rows.push_back({translated("Valid N (listwise)"), {}});
  table.cells.emplace_back().push_back(numberCell(static_cast<double>(results.completeCount), 0));
  return table;
}

}  // namespace

void runDescriptives(CommandContext& context) {
  const Dataset& dataset = requireActiveDataset(context);
  const Request request = parseRequest(context, dataset);
  context.output.addTable("DESCRIPTIVES", buildTable(request, describe(request, dataset.caseCount)));
}

}  // namespace genostat::standalone
