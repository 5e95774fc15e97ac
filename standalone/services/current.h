// What the host libraries find when a module calls them: the running command and the
// session's stores. Null or ignored while no session or no command runs.
#pragma once

#include "standalone/syntax/command.h"

namespace genostat::standalone {

class DatasetStore;
class OutputDocument;

const Command* currentCommand();
DatasetStore* currentDatasets();
OutputDocument* currentOutput();
// Shows a diagnostic; an error marks the running command as failed.
void reportDiagnostic(const Diagnostic& diagnostic);

}  // namespace genostat::standalone
