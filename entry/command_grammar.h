// The grammar of the GENOSTAT command, as the host's parser wants it described.
#pragma once

#include "host/syntax_parser.h"

namespace genostat {

// Adds the seven subcommands with their parameters.
void describeCommand(CommandDescriptor& command);

}  // namespace genostat
