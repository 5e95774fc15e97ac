// The statistics of a variable in tables.
#pragma once

#include <optional>

#include "standalone/data/dataset.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// A statistic in the variable's units, with `extra` decimals more than the data have, but five at most, or
// three after the zeros of a small value. Blank for one that does not exist.
CellValue statisticCell(const Column& variable, const std::optional<double>& value, int extra);

}  // namespace genostat::standalone
