// What the client knows of its jobs, from the messages alone.
//
// Messages name jobs by their names only, and names may repeat. Jobs run one at a time in the order
// in which they were queued, so a message means the oldest job of its name that it can mean. A job
// that could not be started ends without a message: it shows when a later job begins to
// run, or when the module does not know its name any more.
#pragma once

#include <chrono>
#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "standalone/services/client_message.h"

namespace genostat::standalone {

struct JobEvent {
  // Ended: with syntax to run. Cancelled: without. Lost: without any message.
  enum class Kind { Queued, Running, Ended, Cancelled, Lost };

  Kind kind;
  std::string jobName;
  std::size_t parameterSize = 0;  // Lost only: as in the message of its submission
};

// A job that has not ended.
struct JobStatus {
  std::string name;
  bool running = false;                         // false: it waits
  std::chrono::steady_clock::time_point since;  // when it began to run, or to wait
};

// Command thread only.
class JobTracker {
 public:
  // What a message says, in order. Nothing when it repeats what is known.
  std::vector<JobEvent> onMessage(const ClientMessage& message);

  // The jobs that have not ended, in the order of their submission.
  std::vector<JobStatus> openJobs() const;

  // The names of the jobs that have not ended. To be asked, and the module to be asked about
  // them, before the last messages are taken.
  std::set<std::string> openNames() const;

  // The module knows none of these names any more, and all messages it sent before it said so
  // have been taken: what is open under these names is lost.
  std::vector<JobEvent> onUnknown(const std::set<std::string>& names);

 private:
  enum class State { Queued, Running, Cancelled, Closed };

  struct Job {
    std::string name;
    State state;
    std::chrono::steady_clock::time_point since;
    std::size_t parameterSize;

    bool isOpen() const { return state == State::Queued || state == State::Running; }
  };

  static JobEvent lost(const Job& job) { return {JobEvent::Kind::Lost, job.name, job.parameterSize}; }
  Job* oldest(const std::string& name, State state);
  std::vector<JobEvent> queue(const ClientMessage& message);
  std::vector<JobEvent> begin(const std::string& name);
  std::vector<JobEvent> end(const ClientMessage& message);
  void dropClosed();

  std::vector<Job> jobs_;  // in the order of their submission
};

}  // namespace genostat::standalone
