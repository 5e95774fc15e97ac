// Where a session shows what happens.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "standalone/session/job_tracker.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

// Notices may come from any thread, the rest from the command thread. An implementation adds errors and
// warnings to the output document as well.
class SessionView {
 public:
  virtual ~SessionView() = default;
  // A line of progress: job 'a' queued.
  virtual void showNotice(const std::string& text) = 0;
  virtual void showDiagnostic(const Diagnostic& diagnostic) = 0;
  // The jobs that have not ended, whenever they may have changed, until the session is interrupted.
  virtual void jobsChanged(const std::vector<JobStatus>&) {}
  // A job's result file, right before the job's syntax imports it. Throws CommandError to fail.
  virtual void showResults(const std::filesystem::path&) {}
};

}  // namespace genostat::standalone
