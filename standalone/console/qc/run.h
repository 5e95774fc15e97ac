#pragma once

#include "standalone/console/options.h"

namespace genostat::standalone {

// genostat qc: the program's exit status. Once per program, before any thread is started.
int runQc(const QcOptions& options);

}  // namespace genostat::standalone
