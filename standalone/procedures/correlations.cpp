// CORRELATIONS: Pearson's coefficients.
//
//   CORRELATIONS [VARIABLES=] list [WITH list]
//     [/VARIABLES=list [WITH list]]...             a further table for each
//     [/PRINT=[TWOTAIL] [ONETAIL] [SIG|NOSIG] [FULL|LOWER]]
//     [/STATISTICS=[DESCRIPTIVES] [XPROD] [ALL]]
//     [/MISSING=[PAIRWISE|LISTWISE] [INCLUDE|EXCLUDE]].
//
// Both tails together give a row of significances for each; flags then go by the two-tailed one.
// NOSIG flags significant coefficients; the rows of significances stay.

#include <array>
#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/complete_cases.h"
#include "standalone/procedures/correlation_chart.h"
#include "standalone/procedures/correlation_command.h"
#include "standalone/procedures/correlation_table.h"
#include "standalone/procedures/statistic_cell.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/statistics/correlation_matrix.h"
#include "standalone/statistics/moments.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

struct PearsonRequest {
  std::vector<CorrelationList> lists;
  CorrelationPrint print;
  bool descriptives = false;
  bool products = false;
  Deletion deletion = Deletion::Pairwise;
};

void parsePearsonStatistics(TokenCursor& cursor, PearsonRequest& request) {
  enum : std::size_t { Descriptives, Products };
  static constexpr std::array<std::string_view, 3> kPearsonStatistics = {"DESCRIPTIVES", "XPROD", "ALL"};
  while (!cursor.atSubcommandEnd()) {
    const std::size_t keyword = cursor.expectKeyword(kPearsonStatistics, translated("statistic"));
    if (keyword != Products) request.descriptives = true;
    if (keyword != Descriptives) request.products = true;
  }
}

PearsonRequest parsePearsonRequest(CommandContext& context, const Dataset& dataset) {
  enum : std::size_t { VariablesPart, PrintPart, StatisticsPart, MissingPart };
  static constexpr std::array<std::string_view, 4> kPearsonSubcommands = {"VARIABLES", "PRINT", "STATISTICS",
                                                                          "MISSING"};
  TokenCursor cursor(context.command);
  const Token& name = cursor.next();
  PearsonRequest request;
  // The list may stand right behind the command's name.
  if (atBareVariableList(dataset, cursor, kPearsonSubcommands)) {
    request.lists.push_back(parseCorrelationList(context, dataset, cursor));
  }
  while (const auto subcommand = cursor.nextSubcommand(kPearsonSubcommands)) {
    switch (*subcommand) {
      case VariablesPart:
        request.lists.push_back(parseCorrelationList(context, dataset, cursor));
        break;
      case PrintPart:
        while (!cursor.atSubcommandEnd()) {
          applyPrintKeyword(request.print, cursor.expectKeyword(kCorrelationPrintKeywords));
        }
        break;
      case StatisticsPart:
        parsePearsonStatistics(cursor, request);
        break;
      case MissingPart:
        request.deletion = parseDeletion(cursor);
        break;
      default:
        break;
    }
  }
  if (request.lists.empty()) TokenCursor::fail(translated("{1} names no variable", {"CORRELATIONS"}), name);
  return request;
}

PivotTable momentsTable(const CorrelationList& list, Deletion deletion) {
  PivotTable table;
  table.title = translated("Descriptive Statistics");
  table.columns = {{translated("Mean"), {}}, {translated("Std. Deviation"), {}}, {"N", {}}};
  const bool listwise = deletion == Deletion::Listwise;
  const std::vector<bool> complete =
      listwise ? completeCases(list.variables, list.variables.front()->numbers.size()) : std::vector<bool>();
  for (const Column* column : list.variables) {
    const Moments moments =
        computeMoments(listwise ? valuesOfCases(*column, complete) : column->numbers, MomentDetail::Spread);
    table.rows.push_back({column->name, {}});
    table.cells.push_back({statisticCell(*column, moments.mean, 2),
                           statisticCell(*column, moments.standardDeviation, 3),
                           numberCell(static_cast<double>(moments.count), 0)});
  }
  return table;
}

}  // namespace

void runCorrelations(CommandContext& context) {
  static constexpr std::string_view kProcedure = "CORRELATIONS";
  const Dataset& dataset = requireActiveDataset(context);
  const PearsonRequest request = parsePearsonRequest(context, dataset);
  for (const CorrelationList& list : request.lists) {
    if (request.descriptives) context.output.addTable(kProcedure, momentsTable(list, request.deletion));
    CorrelationTable table(translated("Correlations"), list, request.print, request.deletion);
    table.add({"", translated("Pearson Correlation"), request.products},
              pearsonMatrix(list.values(), request.deletion));
    context.output.addTable(kProcedure, table.finish());
    if (const auto chart = correlationChart(list, request.deletion)) {
      context.output.addChart(kProcedure, *chart);
    }
  }
}

}  // namespace genostat::standalone
