#include <array>

#include "standalone/procedures/commands.h"
#include "standalone/syntax/keyword.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

// For statistics that generated syntax may ask for before this host has them.
void notAvailableYet(CommandContext& context) {
  const Token& name = context.command.tokens.front();
  TokenCursor::fail(toUpperAscii(name.text) + " is not available yet", name);
}

constexpr std::array kCommands = {
    CommandHandler{"PRESERVE", runPreserve},
    CommandHandler{"RESTORE", runRestore},
    CommandHandler{"SET", runSet},
    CommandHandler{"GET DATA", runGetData},
    CommandHandler{"CACHE", runCacheOrExecute},
    CommandHandler{"EXECUTE", runCacheOrExecute},
    CommandHandler{"DATASET NAME", runDatasetName},
    CommandHandler{"DATASET ACTIVATE", runDatasetActivate},
    CommandHandler{"DATASET CLOSE", runDatasetClose},
    CommandHandler{"DESCRIPTIVES", runDescriptives},
    CommandHandler{"FREQUENCIES", notAvailableYet},
    CommandHandler{"CORRELATIONS", notAvailableYet},
    CommandHandler{"NONPAR CORR", notAvailableYet},
    CommandHandler{"REGRESSION", notAvailableYet},
};

}  // namespace

std::span<const CommandHandler> procedureCommands() {
  return kCommands;
}

}  // namespace genostat::standalone
