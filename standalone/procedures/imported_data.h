#pragma once

#include <string>

#include "standalone/data/dataset.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// What an import has brought: each variable with its type and the values of the first cases.
PivotTable importedDataTable(const Dataset& dataset, const std::string& fileName);

}  // namespace genostat::standalone
