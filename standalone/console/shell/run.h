#pragma once

#include "standalone/console/options.h"

namespace genostat::standalone {

// genostat shell: the program's exit status. Once per program, before any thread is started.
int runShell(const ShellOptions& options);

}  // namespace genostat::standalone
