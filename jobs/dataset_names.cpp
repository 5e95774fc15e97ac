#include "jobs/dataset_names.h"

#include <algorithm>
#include <list>

#include "host/dataset_manager.h"
#include "host/platform_library.h"

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
