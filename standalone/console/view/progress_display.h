// Shows the progress of the job that runs, from a thread of its own.
#pragma once

#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

#include "standalone/console/view/live_lines.h"
#include "standalone/session/job_tracker.h"

namespace genostat::standalone {

class ProgressDisplay {
 public:
  // Borrows the lines.
  explicit ProgressDisplay(LiveLines& lines) : lines_(lines) {}
  ProgressDisplay(const ProgressDisplay&) = delete;
  ProgressDisplay& operator=(const ProgressDisplay&) = delete;
  ~ProgressDisplay() { end(); }

  // The jobs that have not ended. With none of them nothing remains on the terminal. One thread.
  void show(std::vector<JobStatus> jobs);

 private:
  void end();
  void run();

  LiveLines& lines_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::vector<JobStatus> jobs_;  // guarded by mutex_
  bool ended_ = false;           // guarded by mutex_
  std::thread thread_;           // while there are jobs
};

}  // namespace genostat::standalone
