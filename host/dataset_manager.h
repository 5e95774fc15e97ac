// Host dataset manager: the datasets that are open. Command thread only.
#pragma once

#include <list>
#include <string>
#include <utility>

class SvrDMDataset {
 public:
  explicit SvrDMDataset(std::string handle) : handle_(std::move(handle)) {}

  // Replaces `name` by the name the user knows the dataset by.
  void GetHandle(std::string& name) const { name = handle_; }

 private:
  std::string handle_;
};

class ServerDataManager {
 public:
  // Never destroyed; null on a host without datasets.
  static ServerDataManager* GetInstance();

  // Replaces `datasets`. The entries belong to the manager, are valid until the next
  // call, and may be null.
  void GetAllDatasets(std::list<SvrDMDataset*>& datasets);
};
