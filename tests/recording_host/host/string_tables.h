#pragma once

#include "tests/recording_host/record.h"

class FacSTDictionary : public recording::Object {
 public:
  explicit FacSTDictionary(const std::string& folder) : Object("FacSTDictionary", folder) {}
  void SetProcedure(const std::string& procedure) {
    recording::call("FacSTDictionary.SetProcedure", procedure);
  }
  void SetGlobalStringTable(const std::string& folder) {
    recording::call("FacSTDictionary.SetGlobalStringTable", folder);
  }
  // A text that differs from its key.
  std::string LookUp(const std::string& key) const {
    return recording::answer("<" + key + ">", "FacSTDictionary.LookUp", key);
  }
};
