// The host's dataset manager, over the session's datasets.

#include <memory>
#include <vector>

#include "host/dataset_manager.h"
#include "standalone/data/dataset.h"
#include "standalone/services/current.h"

ServerDataManager* ServerDataManager::GetInstance() {
  static ServerDataManager* const kManager = new ServerDataManager;
  return kManager;
}

void ServerDataManager::GetAllDatasets(std::list<SvrDMDataset*>& datasets) {
  // The manager owns what it lists until the next call. It is never destroyed, nor is this.
  static auto* const listed = new std::vector<std::unique_ptr<SvrDMDataset>>;
  datasets.clear();
  listed->clear();
  const genostat::standalone::DatasetStore* store = genostat::standalone::currentDatasets();
  if (store == nullptr) return;
  for (const auto& dataset : store->all()) {
    if (dataset->name.empty()) continue;
    listed->push_back(std::make_unique<SvrDMDataset>(dataset->name));
    datasets.push_back(listed->back().get());
  }
}
