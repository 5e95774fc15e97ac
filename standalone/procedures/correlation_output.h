// The tables and the chart of CORRELATIONS and NONPAR CORR.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"
#include "standalone/procedures/correlation_command.h"
#include "standalone/statistics/correlation_matrix.h"

namespace genostat::standalone {

// One kind of coefficient in a table.
struct CorrelationKind {
  std::string group;        // heads the rows of this kind; empty: they are not grouped
  std::string coefficient;  // "Pearson Correlation"
  bool products;            // with rows of cross-products and covariances
  CorrelationMatrix matrix;
};

PivotTable correlationTable(std::string title, const CorrelationList& list, const CorrelationRequest& request,
                            const std::vector<CorrelationKind>& kinds);

// A scatter-plot matrix of the list's variables, as many of them and of their cases as can still be
// distinguished and drawn in a moment; its notes say what was left out. Listwise without incomplete
// cases. None for a single variable and without a case.
std::optional<Chart> correlationChart(const CorrelationList& list, Deletion deletion);

}  // namespace genostat::standalone
