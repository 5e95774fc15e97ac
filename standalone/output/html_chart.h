// Charts as HTML: what a script draws, and what can be read without it.
#pragma once

#include <string>
#include <string_view>

#include "standalone/output/chart.h"

namespace genostat::standalone {

// A figure with caption, summary, legend, the chart's data for the script, notes, and, where they are few
// enough to read, the data as a table. `id` names the figure and begins the names of its parts. Charts of
// very many points are thinned, and a note says so.
std::string renderChartAsHtml(const Chart& chart, std::string_view id);

}  // namespace genostat::standalone
