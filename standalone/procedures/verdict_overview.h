#pragma once

#include <optional>

#include "standalone/data/dataset.h"
#include "standalone/output/chart.h"

namespace genostat::standalone {

// The verdicts on the samples of a quality-control job, worst first. Its checks are the string variables that
// hold nothing but pass, warn and fail, in any case, and empty texts; none with fewer than two of them or
// without cases. The samples' names come from the variable Sample or else from the first string variable
// that is no check; names that are empty or repeated are made distinct.
std::optional<Chart> verdictOverview(const Dataset& dataset);

}  // namespace genostat::standalone
