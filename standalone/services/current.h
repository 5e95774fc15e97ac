// What the host libraries find when a module calls them: the running command and its metadata, the session's
// stores, the client's adapter. Command thread only, but for the adapter.
#pragma once

#include <functional>

#include "standalone/syntax/command.h"

class ZORV_Adapter;

namespace genostat::standalone {

class DatasetStore;
class OutputDocument;

// Null or ignored while no session or no command runs.
const Command* currentCommand();
DatasetStore* currentDatasets();
OutputDocument* currentOutput();
// Shows a diagnostic; an error marks the running command as failed.
void reportDiagnostic(const Diagnostic& diagnostic);

// What these find while this object lives. Borrows everything; one at a time.
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

// What GetMetaDataJson answers until the module has taken it, or another command begins: which text of the
// user and which of its commands submits a job.
void setJobMetadata(int workbookId, int paragraphId);

// What GetAdapter() answers from now on; null: no client. Borrowed. A message that is being
// delivered by another thread may still use the adapter before. Any thread.
void setCurrentAdapter(ZORV_Adapter* adapter);

}  // namespace genostat::standalone
