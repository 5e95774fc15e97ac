#pragma once

#include "tests/recording_host/record.h"

class PathFinder {
 public:
  const std::string& path() {
    recording::answer(*recording::state().home, "PathFinder.path");
    return *recording::state().home;
  }
  std::string recordedName() const { return "PathFinder"; }
};

class PathFactory {
 public:
  static PathFinder* getPathInstance(int kind) {
    static PathFinder finder;
    return recording::answer(recording::state().home ? &finder : nullptr, "PathFactory.getPathInstance",
                             kind);
  }
};

inline const char* GetZorvTempPath() {
  const auto& temp = recording::state().temp;
  return recording::answer(temp ? temp->c_str() : nullptr, "GetZorvTempPath");
}
