// Follows the jobs that commands submit: shows what becomes of them, runs what they send back, cancels them.
#pragma once

#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <stop_token>
#include <string>
#include <vector>

#include "standalone/services/session_adapter.h"
#include "standalone/session/command_gate.h"
#include "standalone/session/finished_job.h"
#include "standalone/session/job_tracker.h"
#include "standalone/session/module.h"
#include "standalone/session/session_view.h"

namespace genostat::standalone {

// The module's client: owns the adapter to which the module posts. One at a time; all but cancelForGood() and
// waitUntilShown() belongs to the command thread.
class JobFollower {
 public:
  struct Options {
    bool interactive = true;
    std::filesystem::path eventsFile;  // gets each client message as a line; empty: none
    std::filesystem::path csvFolder;   // gets a copy of each job's results; empty: none
  };

  // Borrows all. `runSyntax` runs the commands of an end message.
  JobFollower(Options options, const JobControl& module, CommandGate& gate, SessionView& view,
              std::function<void(const SourcePtr&)> runSyntax);
  JobFollower(const JobFollower&) = delete;
  JobFollower& operator=(const JobFollower&) = delete;

  SessionAdapter& adapter() { return adapter_; }
  // Whether a job failed, or a file could not be written.
  bool failed() const { return failed_; }

  // Shows what the messages that have come say.
  void showMessages();
  // Waits for all jobs, then runs the syntax of their end messages in order of arrival.
  void finish();

  // For clients that go on reading commands while jobs run:

  // Shows what has become of the jobs, and waits up to `patience` for the first news.
  void follow(std::chrono::milliseconds patience);
  std::vector<JobStatus> openJobs() const { return tracker_.openJobs(); }
  // How many jobs have ended whose syntax has not run. It can run unless the module's queue is full.
  std::size_t endedCount() const { return ended_.size(); }
  bool canRunEnded() const { return !ended_.empty() && !module_.isQueueFull(); }
  // Runs the syntax of the job that ended first.
  void runEnded();
  // False for a name that no job has that waits or runs. Its end is shown when it has come.
  bool cancel(const std::string& name);
  void cancelAll();
  // Whether a cancelled job may still have to end.
  bool isCancelling() const { return !cancels_.empty(); }

  // For a program that is interrupted, which then ends:

  // Cancels all jobs, waits until their processes have ended and removes their files. Called once the gate
  // has closed, by any other thread than the command thread.
  void cancelForGood();
  // On the command thread meanwhile: shows messages until `end`.
  void showMessagesUntil(const std::stop_token& end);
  // Waits until that has shown all messages; false on time-out. Any other thread.
  bool waitUntilShown(std::chrono::milliseconds timeout) { return adapter_.waitUntilIdle(timeout); }

 private:
  void onMessage(const ClientMessage& message);
  void showOpenJobs();
  void showEvent(const JobEvent& event);
  void onEnded(const ClientMessage& message);
  void reportError(const std::string& message);
  void waitForJobs();
  void checkForLostJobs();
  void repeatCancels();
  void clearUpCancelled();
  bool moduleHoldsJobs() const;
  void cancelUntilNoneIsLeft();
  void showResults(const std::filesystem::path& csv);
  void copyResults(const ClientMessage& message, const std::filesystem::path& csv);

  const Options options_;
  const JobControl& module_;
  CommandGate& gate_;
  SessionView& view_;
  const std::function<void(const SourcePtr&)> runSyntax_;
  PostedJobs posted_;
  SessionAdapter adapter_;
  JobTracker tracker_;
  std::deque<ClientMessage> ended_;  // jobs whose syntax has not run
  // When the cancellation of each is to be repeated.
  std::map<std::string, std::chrono::steady_clock::time_point> cancels_;
  CopyNames copyNames_;
  bool failed_ = false;
  bool cancelled_ = false;  // a job was, and its files may still have to be removed
  bool eventsFailureShown_ = false;
};

}  // namespace genostat::standalone
