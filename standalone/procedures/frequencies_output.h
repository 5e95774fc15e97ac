#pragma once

#include "standalone/output/output_document.h"
#include "standalone/procedures/frequencies_request.h"

namespace genostat::standalone {

// Computes what is asked for and adds it to the output: a table of statistics, then for each
// variable a table of its values and a histogram. Notes say what had to be left out.
void showFrequencies(const FrequenciesRequest& request, OutputDocument& output);

}  // namespace genostat::standalone
