// Names for jobs that ask for one.
#include "entry/record/genomic_parser_exception.h"
#include "entry/record/texts.h"
#include "jobs/dataset_names.h"
#include "jobs/geno_stat_algo_manager.h"

namespace {
constexpr int kMaxAutomaticNames = 100;
}

std::string GenoStatAlgoManager::generateUniqueJobName() {
  GenoStatAlgoManager* manager = getManagerInstance();
  if (manager == nullptr) return {};
  const std::string base = manager->getLocalizedString(genostat::texts::kAutomaticJobName);
  for (int n = 1; n <= kMaxAutomaticNames; ++n) {
    std::string candidate = base + "_" + std::to_string(n);
    if (!genostat::isDatasetName(candidate) && !manager->isJobPendingOrRunning(candidate)) return candidate;
  }
  throw GenomicParserException(CommandErrorCode::TooManyAutomaticNames);
}
