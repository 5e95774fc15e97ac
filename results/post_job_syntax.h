// The command syntax that the host's client runs when a job has ended.
#pragma once

#include <string>

#include "entry/record/geno_job_settings.h"

namespace genostat {

// The /PRINT command and a line feed; for a job with results also the import of its result file,
// the analyses that were asked for, and the /DELETE command. Texts go in as they are: a quote in a
// name or a path is not escaped.
std::string postJobSyntax(const GenoJobSettings& settings, bool failed);

}  // namespace genostat
