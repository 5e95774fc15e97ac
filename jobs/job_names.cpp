#include "jobs/job_names.h"

#include <algorithm>
#include <list>

#include "entry/record/genomic_parser_exception.h"
#include "entry/record/texts.h"
#include "host/dataset_manager.h"
#include "host/platform_library.h"
#include "jobs/geno_stat_algo_manager.h"

namespace {
constexpr int kMaxAutomaticNames = 100;
}

namespace genostat {

bool isDatasetName(const std::string& name) {
  ServerDataManager* manager = ServerDataManager::GetInstance();
  if (manager == nullptr) return false;
  std::list<SvrDMDataset*> datasets;
  manager->GetAllDatasets(datasets);
  return std::any_of(datasets.begin(), datasets.end(), [&name](const SvrDMDataset* dataset) {
    if (dataset == nullptr) return false;
    std::string handle;
    dataset->GetHandle(handle);
    return ZORVMBstricmp_A(handle.c_str(), name.c_str()) == 0;
  });
}

}  // namespace genostat

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
