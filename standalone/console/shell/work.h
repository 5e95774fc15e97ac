// The session of genostat shell, and the work in it that Ctrl-C stops.
#pragma once

#include <atomic>
#include <cstddef>
#include <string>
#include <vector>

#include "standalone/console/options.h"
#include "standalone/console/shell/view.h"
#include "standalone/session/session.h"

namespace genostat::standalone {

// All but stop() belongs to the command thread.
class ShellWork {
 public:
  // Borrows the view. Throws UsageError, or what Session throws.
  ShellWork(const RunOptions& options, ShellView& view);

  Session& session() { return session_; }
  CommandRunner& commands() { return session_.commands(); }
  JobFollower& jobs() { return session_.jobs(); }
  // News of the jobs that have come by now.
  void followJobs();
  // What commands may name: jobs that have not ended, datasets with a name, variables of the active one.
  std::vector<std::string> jobNames();
  std::vector<std::string> datasetNames();
  std::vector<std::string> variableNames();

  // These end early after stop().
  void run(SourceText text);
  void runEndedJobs();
  // Shows the progress of the jobs until all have ended, and runs what they send back.
  void waitForJobs();
  void finishJobs();
  // Returns when all have ended; not to be stopped.
  void cancelAllJobs();

  // Says, once for each job, that the results of jobs that have ended wait.
  void announceHeldResults();

  // Stops what runs. False when nothing does. Any thread.
  bool stop();
  // What ran last was stopped.
  bool isStopped() const { return stopped_; }

 private:
  class Running;

  void runEndedUntilStopped();
  void runEndedJob();

  ShellView& view_;
  Session session_;
  std::size_t heldResultsAnnounced_ = 0;
  std::atomic<bool> running_{false};
  std::atomic<bool> stopped_{false};
};

}  // namespace genostat::standalone
