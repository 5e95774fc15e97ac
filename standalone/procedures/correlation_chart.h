#pragma once

#include <optional>

#include "standalone/data/dataset.h"
#include "standalone/output/chart.h"
#include "standalone/procedures/correlation_command.h"

namespace genostat::standalone {

// A scatter-plot matrix of the list's variables, as many of them and of their cases as can still be
// distinguished and drawn in a moment; its notes say what was left out. Listwise without incomplete
// cases. None for a single variable and without a case.
std::optional<Chart> correlationChart(const CorrelationList& list, Deletion deletion);

}  // namespace genostat::standalone
