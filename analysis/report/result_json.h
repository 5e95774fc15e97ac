// The whole result as one JSON document: the table's columns and the curves and lists they come from.
// docs/analyser.md describes its members.
#pragma once

#include <string>

#include "analysis/report/result_csv.h"
#include "analysis/request/adapter.h"

namespace genostat::analysis {

// The document in pieces: what comes before the samples, each sample after its separator, and the end. UTF-8;
// invalid bytes are replaced, values that are missing or not finite are null.
std::string jsonBeginning(const Adapter& adapter);
std::string jsonSample(const ResultRow& row, bool isFirst);
std::string jsonEnd();

}  // namespace genostat::analysis
