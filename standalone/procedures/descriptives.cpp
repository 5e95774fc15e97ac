// DESCRIPTIVES: moments of numeric variables.
//
//   DESCRIPTIVES [VARIABLES=] list
//     [/STATISTICS=[DEFAULT] [ALL] [MEAN] [SEMEAN] [STDDEV] [VARIANCE] [RANGE] [MINIMUM] [MAXIMUM]
//                  [SUM] [SKEWNESS] [KURTOSIS]]
//     [/MISSING=VARIABLE|LISTWISE].

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/table_cells.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/procedures/variable_statistics.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

// In the order of the table's columns.
constexpr std::array kDescriptives = {kRange,     kMinimum,   kMaximum,  kSum,      kMean,
                                      kMeanError, kDeviation, kVariance, kSkewness, kKurtosis};

struct Request {
  std::vector<const Column*> variables;
  std::vector<Statistic> statistics = usualStatistics(kDescriptives);
  Deletion deletion = Deletion::Pairwise;
};

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
      request.statistics = parseStatistics(cursor, kDescriptives, false);
    } else {
      request.deletion = cursor.expectKeyword(kMissing) == 1 ? Deletion::Listwise : Deletion::Pairwise;
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
  const bool shape = std::ranges::any_of(
      request.statistics, [](const Statistic& statistic) { return statistic.error != nullptr; });
  Descriptions results;
  results.moments =
      momentsOf(request.variables, request.deletion, shape ? MomentDetail::Shape : MomentDetail::Spread);
  results.completeCount = results.moments.front().count;
  if (request.deletion == Deletion::Listwise) return results;
  std::vector<const Column*> incomplete;
  for (std::size_t i = 0; i < request.variables.size(); ++i) {
    if (results.moments[i].count < caseCount) incomplete.push_back(request.variables[i]);
  }
  const std::vector<bool> complete = completeCases(incomplete, caseCount);
  results.completeCount = static_cast<std::size_t>(std::ranges::count(complete, true));
  return results;
}

std::vector<Category> columnLabels(const std::vector<Statistic>& statistics) {
  std::vector<Category> labels = {{"N", {}}};
  for (const Statistic& statistic : statistics) {
    labels.push_back({translated(statistic.label), {}});
    if (statistic.error != nullptr)
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
    const VariableStatistics values{results.moments[variable], {}, {}, {}};
    table.rows.push_back({column.name, {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    cells.push_back(countCell(values.count));
    for (const Statistic& statistic : request.statistics) {
      cells.push_back(statistic.cell(column, values.*statistic.value));
      if (statistic.error != nullptr) cells.push_back(statistic.cell(column, values.*statistic.error));
    }
  }
  table.rows.push_back({translated("Valid N (listwise)"), {}});
  table.cells.emplace_back().push_back(countCell(results.completeCount));
  return table;
}

}  // namespace

void runDescriptives(CommandContext& context) {
  const Dataset& dataset = requireActiveDataset(context);
  const Request request = parseRequest(context, dataset);
  context.output.addTable("DESCRIPTIVES", buildTable(request, describe(request, dataset.caseCount)));
}

}  // namespace genostat::standalone
