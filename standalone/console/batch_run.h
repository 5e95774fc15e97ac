#pragma once

#include "standalone/console/options.h"

namespace genostat::console {

// Runs a file of command syntax to its end; the program's exit status. Once per program, before
// any thread is started.
int runBatch(const RunOptions& options);

}  // namespace genostat::console
