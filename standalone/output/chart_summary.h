// What a chart shows, for readers who do not see it.
#pragma once

#include <optional>
#include <string>

#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// A sentence or two: how many values, where they lie, what is wrong.
std::string summarizeChart(const Chart& chart);

// The data as a table, where they are bins or verdicts; nothing for clouds of points.
std::optional<PivotTable> chartAsTable(const Chart& chart);

}  // namespace genostat::standalone
