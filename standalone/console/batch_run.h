#pragma once

#include <memory>
#include <string>

#include "standalone/console/options.h"
#include "standalone/console/view/console_view.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

// Runs a file of command syntax to its end; the program's exit status. Once per program, before
// any thread is started.
int runBatch(const RunOptions& options);

// The same for a text that is no file, shown by a view of the options' form. `title` heads the report.
int runText(const RunOptions& options, const SourcePtr& text, std::unique_ptr<ConsoleView> view,
            const std::string& title);

}  // namespace genostat::standalone
