// The commands of this room.
#pragma once

#include <span>

#include "standalone/session/command_context.h"

namespace genostat::standalone {

// All of them, as a session takes them.
std::span<const CommandHandler> procedureCommands();

// Each throws CommandError to fail.
void runPreserve(CommandContext& context);
void runRestore(CommandContext& context);
void runSet(CommandContext& context);

void runGetData(CommandContext& context);
void runCacheOrExecute(CommandContext& context);

void runDatasetName(CommandContext& context);
void runDatasetActivate(CommandContext& context);
void runDatasetClose(CommandContext& context);

void runDescriptives(CommandContext& context);
void runFrequencies(CommandContext& context);
void runCorrelations(CommandContext& context);
void runNonparCorr(CommandContext& context);
void runRegression(CommandContext& context);

}  // namespace genostat::standalone
