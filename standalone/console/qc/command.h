#pragma once

#include <string>

#include "standalone/console/qc/request.h"

namespace genostat::standalone {

// The GENOSTAT command for a checked request, as a person would write it: one file a line, lists wrapped.
// Ends with a line feed.
std::string qcCommand(const QcRequest& request, const QcOptions& options);

}  // namespace genostat::standalone
