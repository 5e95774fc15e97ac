// A session: runs command syntax, follows the jobs that it submits, runs what they send back.
#pragma once

#include <atomic>
#include <chrono>
#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/output/output_document.h"
#include "standalone/services/current_scope.h"
#include "standalone/services/host_folders.h"
#include "standalone/services/session_adapter.h"
#include "standalone/session/command_context.h"
#include "standalone/session/command_gate.h"
#include "standalone/session/dispatcher.h"
#include "standalone/session/finished_job.h"
#include "standalone/session/job_tracker.h"
#include "standalone/session/module.h"
#include "standalone/session/private_folder.h"
#include "standalone/syntax/command.h"
#include "standalone/syntax/expectation.h"

namespace genostat::standalone {

struct SessionOptions {
  HostFolders folders;
  bool privateTemporaryFolder = false;  // work in a folder of its own below the temporary one
  std::filesystem::path moduleFolder;
  bool interactive = true;           // false: the host's command-line mode
  std::filesystem::path eventsFile;  // gets each client message as a line; empty: none
  std::filesystem::path csvFolder;   // gets a copy of each job's results; empty: none
};

// Where a session shows what happens. Notices may come from any thread, the rest from the command
// thread. An implementation adds errors and warnings to the output document as well.
class SessionView {
 public:
  virtual ~SessionView() = default;
  // A line of progress: job 'a' queued.
  virtual void showNotice(const std::string& text) = 0;
  virtual void showDiagnostic(const Diagnostic& diagnostic) = 0;
  // The jobs that have not ended, whenever they may have changed; an interrupted session no longer tells.
  virtual void jobsChanged(const std::vector<JobStatus>&) {}
  // A job's result file, right before the job's syntax imports it. Throws CommandError to fail.
  virtual void showResults(const std::filesystem::path&) {}
};

// One at a time. All but stop() and interrupt() belongs to the command thread.
class Session {
 public:
  // Borrows the view and the document. Throws ModuleError when the module cannot be used.
  Session(SessionOptions options, SessionView& view, OutputDocument& output);
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Runs the commands of a text. A command that fails is shown, and the next one runs.
  void run(const SourcePtr& text);

  // Waits for all jobs, then runs the syntax of their end messages in order of arrival.
  void finishJobs();

  // For clients that go on reading commands while jobs run:

  // Shows what has become of the jobs, and waits up to `patience` for the first news.
  void followJobs(std::chrono::milliseconds patience);
  std::vector<JobStatus> openJobs() const { return tracker_.openJobs(); }
  // Whether a job has ended whose syntax has not run. It can run unless the module's queue is full.
  std::size_t endedJobCount() const { return ended_.size(); }
  bool hasEndedJobs() const { return !ended_.empty(); }
  bool canRunEndedJobs() const { return hasEndedJobs() && !module_.isQueueFull(); }
  // Runs the syntax of the job that ended first.
  void runEndedJob();
  // False for a name that no job has that waits or runs. Its end is shown when it has come.
  bool cancelJob(const std::string& name);
  void cancelAllJobs();
  // Whether a cancelled job may still have to end.
  bool isCancelling() const { return !cancels_.empty(); }
  // No further command of a run() that is under way begins. Any thread.
  void stop() { stopped_ = true; }

  DatasetStore& datasets() { return datasets_; }
  // What may stand behind a text whose last command has no end yet, as the command's parser says.
  Expectation expectedBehind(const std::string& text);
  // The commands that there are, in upper case.
  std::vector<std::string_view> commandNames() const { return dispatcher_.names(); }

  // Ends the session: an interrupt no longer has an effect. True when no command and no job failed
  // and all files could be written.
  bool close();

  // Cancels all jobs, waits until their processes have ended, removes their files and ends the
  // program with exit status 130. The command thread stops before its next command. A second call
  // ends the program at once. From any thread; the session must live until the program ends.
  void interrupt();

 private:
  // Runs `work` as a command. Does not return once the session is interrupted.
  void asCommand(const std::function<void()>& work);
  [[noreturn]] void waitForProgramEnd();

  // The syntax of an end message is run whole, or results would be lost.
  void runCommands(const SourcePtr& text, bool stoppable = false);
  void runItem(const ScanResult::Item& item);
  void execute(const Command& command);
  void runModule(const Command& command);
  std::vector<Diagnostic> syntaxErrors(const Command& command);
  void report(const Diagnostic& diagnostic);
  void reportError(const std::string& message);

  void showMessages();
  void onMessage(const ClientMessage& message);
  void onEnded(const ClientMessage& message);
  void showJobEvent(const JobEvent& event);
  void tellJobs();
  void showStringTableWarnings();
  void waitForJobs();
  void checkForLostJobs();
  void runEndSyntax(const ClientMessage& message);
  void showResults(const std::filesystem::path& csv);
  void copyResults(const ClientMessage& message, const std::filesystem::path& csv);

  void repeatCancels();
  void clearUpCancelled();
  void cancelJobs();
  bool moduleHoldsJobs() const;

  PrivateFolder privateFolder_;
  SessionOptions options_;
  SessionView& view_;
  SessionAdapter adapter_;
  Module module_;
  Dispatcher dispatcher_;
  DatasetStore datasets_;
  OutputDocument& output_;
  Settings settings_;
  SessionScope scope_;
  std::function<void(const Diagnostic&)> reporter_;
  int workbook_ = 0;
  int paragraph_ = 0;
  bool failed_ = false;
  bool cancelled_ = false;  // a job was, since the last wait for all jobs
  bool eventsFailureShown_ = false;
  JobTracker tracker_;
  std::atomic<bool> stopped_{false};
  // When the cancellation of each is to be repeated.
  std::map<std::string, std::chrono::steady_clock::time_point> cancels_;
  std::deque<ClientMessage> ended_;  // jobs whose syntax has not run
  CopyNames copyNames_;

  CommandGate gate_;
};

}  // namespace genostat::standalone
