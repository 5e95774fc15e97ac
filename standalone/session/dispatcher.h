// Finds the handler of a command by its first words.
#pragma once

#include <span>

#include "standalone/session/command_context.h"

namespace genostat::standalone {

// A handler's name is one or two words in upper case. Names match in any case, each word abbreviated to three
// or more letters where that is unique. Throws CommandError at the word that does not fit.
const CommandHandler& findHandler(std::span<const CommandHandler> handlers, const Command& command);

}  // namespace genostat::standalone
