// What GET DATA shows of an import.
#pragma once

#include <optional>
#include <string>

#include "standalone/data/dataset.h"
#include "standalone/output/chart.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// What an import has brought: each variable with its type and the values of the first cases.
PivotTable importedDataTable(const Dataset& dataset, const std::string& fileName);

// The verdicts on the samples of a quality-control job, worst first. Its checks are the string variables that
// hold nothing but pass, warn and fail, in any case, and empty texts; none with fewer than two of them or
// without cases. The samples' names come from the variable Sample or else from the first string variable
// that is no check; names that are empty or repeated are made distinct.
std::optional<Chart> verdictOverview(const Dataset& dataset);

}  // namespace genostat::standalone
