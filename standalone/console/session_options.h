// What the subcommands have in common on the command line.
#pragma once

#include <initializer_list>
#include <string>

#include "common/cli/command_line.h"
#include "standalone/console/options.h"

namespace genostat::standalone {

// Sections of a command's help.
common::HelpSection examples(std::initializer_list<const char*> lines);
common::HelpSection exitStatusHelp();

// --temp, --output and what else of RunOptions every session has; `options` outlives the command.
void addSessionOptions(const common::Command& command, RunOptions& options);

// The options of genostat qc.
void addQcOptions(const common::Command& qc, QcOptions& options);
common::CommandHelp qcHelp();

}  // namespace genostat::standalone
