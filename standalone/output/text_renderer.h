// Output as aligned text for terminals and files.
#pragma once

#include <string>
#include <string_view>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

struct TextStyle {
  bool unicode = false;  // box drawing
  bool colour = false;
  int width = 80;  // wide tables are split at this many columns
};

// Renders one item of an output document (its JSON text), with a final line feed. A table has an
// empty line before it. Nothing for an item of a kind that this version does not know.
std::string renderItemAsText(std::string_view itemJson, const TextStyle& style);

// Title, box and footnotes. A table wider than the style's width is cut into several boxes,
// each with the row labels; only a single column that is too wide by itself exceeds it.
std::string renderTableAsText(const PivotTable& table, const TextStyle& style);

}  // namespace genostat::standalone
