// Makes a session and its running command known to the host libraries. Command thread only.
#pragma once

#include <functional>

#include "standalone/services/current.h"

namespace genostat::standalone {

// What current.h answers while this object lives. Borrows everything; one at a time.
class SessionScope {
 public:
  struct Parts {
    DatasetStore* datasets = nullptr;
    OutputDocument* output = nullptr;
    std::function<void(const Diagnostic&)> report;
  };

  explicit SessionScope(Parts parts);
  ~SessionScope();
  SessionScope(const SessionScope&) = delete;
  SessionScope& operator=(const SessionScope&) = delete;
};

// The command that runs while this object lives.
class CommandScope {
 public:
  explicit CommandScope(const Command& command);
  ~CommandScope();
  CommandScope(const CommandScope&) = delete;
  CommandScope& operator=(const CommandScope&) = delete;
};

}  // namespace genostat::standalone
