// The whole result as one JSON document: the table's columns and the curves and lists they come from.
// docs/analyser.md describes its members.
#pragma once

#include <string>
#include <vector>

#include "analysis/report/result_csv.h"
#include "analysis/request/adapter.h"

namespace genostat::analysis {

// UTF-8; invalid bytes are replaced, values that are missing or not finite are null.
std::string resultJson(const std::vector<ResultRow>& rows, const Adapter& adapter);

}  // namespace genostat::analysis
