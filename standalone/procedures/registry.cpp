#include <array>
#include <string>

#include "standalone/procedures/commands.h"
#include "standalone/syntax/token_cursor.h"

namespace genostat::standalone {

namespace {

// For statistics that generated syntax may ask for before this host has them.
template <const char* kName>
void notAvailableYet(CommandContext& context) {
  TokenCursor::fail(std::string(kName) + " is not available yet", context.command.tokens.front());
}

constexpr char kFrequencies[] = "FREQUENCIES";
constexpr char kCorrelations[] = "CORRELATIONS";
constexpr char kNonparametric[] = "NONPAR CORR";
constexpr char kRegression[] = "REGRESSION";

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
    CommandHandler{kFrequencies, notAvailableYet<kFrequencies>},
    CommandHandler{kCorrelations, notAvailableYet<kCorrelations>},
    CommandHandler{kNonparametric, notAvailableYet<kNonparametric>},
    CommandHandler{kRegression, notAvailableYet<kRegression>},
};

}  // namespace

std::span<const CommandHandler> procedureCommands() {
  return kCommands;
}

}  // namespace genostat::standalone
