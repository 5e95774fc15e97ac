// CORRELATIONS: Pearson's coefficients. NONPAR CORR: Kendall's and Spearman's coefficients of ranks.
//
//   CORRELATIONS [VARIABLES=] list [WITH list]
//     [/VARIABLES=list [WITH list]]...             a further table for each
//     [/PRINT=[TWOTAIL] [ONETAIL] [SIG|NOSIG] [FULL|LOWER]]
//     [/STATISTICS=[DESCRIPTIVES] [XPROD] [ALL]]
//     [/MISSING=[PAIRWISE|LISTWISE] [INCLUDE|EXCLUDE]].
//
//   NONPAR CORR [VARIABLES=] list [WITH list]
//     [/VARIABLES=list [WITH list]]...
//     [/PRINT=[SPEARMAN] [KENDALL] [BOTH] [TWOTAIL] [ONETAIL] [SIG|NOSIG] [FULL|LOWER]]
//     [/MISSING=[PAIRWISE|LISTWISE] [INCLUDE|EXCLUDE]].
//
// Both tails together give a row of significances for each; flags then go by the two-tailed one.
// NOSIG flags significant coefficients; the rows of significances stay. Of ranks, Spearman's unless others
// are named.

#include <string_view>

#include "standalone/language/translation.h"
#include "standalone/output/output_document.h"
#include "standalone/procedures/commands.h"
#include "standalone/procedures/correlation_command.h"
#include "standalone/procedures/correlation_output.h"
#include "standalone/procedures/table_cells.h"
#include "standalone/procedures/variable_list.h"
#include "standalone/procedures/variable_statistics.h"
#include "standalone/statistics/correlation_matrix.h"
#include "standalone/statistics/rank_correlation.h"

namespace genostat::standalone {

namespace {

PivotTable momentsTable(const CorrelationList& list, Deletion deletion) {
  PivotTable table;
  table.title = translated("Descriptive Statistics");
  table.columns = {{translated("Mean"), {}}, {translated("Std. Deviation"), {}}, {"N", {}}};
  const std::vector<Moments> moments = momentsOf(list.variables, deletion, MomentDetail::Spread);
  for (std::size_t i = 0; i < moments.size(); ++i) {
    const Column& column = *list.variables[i];
    table.rows.push_back({column.name, {}});
    table.cells.push_back({kMean.cell(column, moments[i].mean),
                           kDeviation.cell(column, moments[i].standardDeviation),
                           countCell(moments[i].count)});
  }
  return table;
}

}  // namespace

void runCorrelations(CommandContext& context) {
  static constexpr std::string_view kProcedure = "CORRELATIONS";
  const Dataset& dataset = requireActiveDataset(context);
  const CorrelationRequest request = parseCorrelationRequest(context, dataset, false);
  for (const CorrelationList& list : request.lists) {
    if (request.descriptives) context.output.addTable(kProcedure, momentsTable(list, request.deletion));
    const CorrelationKind pearson{"", translated("Pearson Correlation"), request.products,
                                  pearsonMatrix(valuesOf(list.variables), request.deletion)};
    context.output.addTable(kProcedure,
                            correlationTable(translated("Correlations"), list, request, {pearson}));
    if (const auto chart = correlationChart(list, request.deletion)) {
      context.output.addChart(kProcedure, *chart);
    }
  }
}

void runNonparCorr(CommandContext& context) {
  const Dataset& dataset = requireActiveDataset(context);
  const CorrelationRequest request = parseCorrelationRequest(context, dataset, true);
  for (const CorrelationList& list : request.lists) {
    const std::vector<std::span<const double>> values = valuesOf(list.variables);
    const RankCorrelation ranks(values, request.deletion);
    const std::string coefficient = translated("Correlation Coefficient");
    std::vector<CorrelationKind> kinds;
    if (request.kendall)
      kinds.push_back({translated("Kendall's tau_b"), coefficient, false, ranks.kendall()});
    if (request.spearman)
      kinds.push_back({translated("Spearman's rho"), coefficient, false, ranks.spearman()});
    context.output.addTable("NONPAR CORR",
                            correlationTable(translated("Nonparametric Correlations"), list, request, kinds));
  }
}

}  // namespace genostat::standalone
