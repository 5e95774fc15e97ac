// From the command line to a session, for the subcommands that run one.
#pragma once

#include <stdexcept>
#include <string>

#include "standalone/console/options.h"
#include "standalone/console/view/console_view.h"
#include "standalone/session/session.h"

namespace genostat::standalone {

// The command line cannot be followed; what() is the sentence for the user.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Throws UsageError.
SessionOptions sessionOptions(const RunOptions& options);

// Makes sure of the files before the work begins. Throws UsageError, or std::runtime_error for a file that
// cannot be written.
void prepareOutputs(const RunOptions& options, ConsoleView& view, const std::string& title);

}  // namespace genostat::standalone
