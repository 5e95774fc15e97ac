// Pivot tables as HTML.
#pragma once

#include <string>
#include <string_view>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// The table with its caption in a region that scrolls, and its footnotes below. `id` names the whole
// and begins the names of its parts; `name` is said of the region where the table has no title. The table is
// squared up.
std::string renderTableAsHtml(const PivotTable& table, std::string_view id, std::string_view name);

}  // namespace genostat::standalone
