// Pivot tables as boxes of text.
#pragma once

#include <string>

#include "standalone/output/pivot_table.h"
#include "standalone/output/text_renderer.h"

namespace genostat::standalone {

// Title, box and footnotes. A table wider than the style's width is cut into several boxes,
// each with the row labels; only a single column that is too wide by itself exceeds it.
std::string renderTableAsText(const PivotTable& table, const TextStyle& style);

}  // namespace genostat::standalone
