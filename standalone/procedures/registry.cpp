#include <array>

#include "standalone/procedures/commands.h"

namespace genostat::standalone {

namespace {

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
    CommandHandler{"FREQUENCIES", runFrequencies},
    CommandHandler{"CORRELATIONS", runCorrelations},
    CommandHandler{"NONPAR CORR", runNonparCorr},
    CommandHandler{"REGRESSION", runRegression},
};

}  // namespace

std::span<const CommandHandler> procedureCommands() {
  return kCommands;
}

}  // namespace genostat::standalone
