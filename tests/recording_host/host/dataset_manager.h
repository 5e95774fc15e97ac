#pragma once

#include <list>

#include "tests/recording_host/record.h"

namespace recording {
// Written only when the host does not pretend that the next names are taken.
inline void writeOfNames(const std::string& line) {
  if (state().takenNames == 0) write(line);
}
}  // namespace recording

class SvrDMDataset {
 public:
  explicit SvrDMDataset(const std::string& handle) : handle_(handle) {}
  void GetHandle(std::string& name) const {
    name = handle_;
    recording::writeOfNames("SvrDMDataset.GetHandle = " + recording::shown(name));
  }

 private:
  std::string handle_;
};

class ServerDataManager {
 public:
  static ServerDataManager* GetInstance() {
    static ServerDataManager manager;
    ServerDataManager* instance = recording::state().datasetManager ? &manager : nullptr;
    recording::writeOfNames("ServerDataManager.GetInstance() = " + recording::shown(instance));
    return instance;
  }
  void GetAllDatasets(std::list<SvrDMDataset*>& datasets) {
    recording::writeOfNames("ServerDataManager.GetAllDatasets()");
    open_.clear();
    datasets.clear();
    for (const auto& handle : recording::state().datasets) {
      datasets.push_back(handle ? &open_.emplace_back(*handle) : nullptr);
    }
  }
  std::string recordedName() const { return "ServerDataManager"; }

 private:
  std::list<SvrDMDataset> open_;
};
