// A session: runs command syntax, follows the jobs that it submits, runs what they send back.
#pragma once

#include <atomic>
#include <filesystem>
#include <memory>
#include <span>
#include <stop_token>

#include "standalone/output/output_document.h"
#include "standalone/services/host_folders.h"
#include "standalone/session/command_gate.h"
#include "standalone/session/command_runner.h"
#include "standalone/session/job_follower.h"
#include "standalone/session/module.h"
#include "standalone/session/session_view.h"

namespace genostat::standalone {

class PrivateFolder;

struct SessionOptions {
  HostFolders folders;
  bool privateTemporaryFolder = false;  // work in a folder of its own below the temporary one
  std::filesystem::path moduleFolder;
  JobFollower::Options client;
};

// Joins what runs commands with what follows jobs, and ends both on an interrupt. One at a time. All but
// stop() and interrupt() belongs to the command thread.
class Session {
 public:
  // Runs these commands and the module's. Borrows the view and the document. Throws ModuleError when the
  // module cannot be used, std::runtime_error where no folder can be made.
  Session(SessionOptions options, std::span<const CommandHandler> commands, SessionView& view,
          OutputDocument& output);
  ~Session();

  // Runs the commands of a text. A command that fails is shown, and the next one runs.
  void run(const SourcePtr& text);
  // No further command of a run() that is under way begins. Any thread.
  void stop() { stopped_ = true; }

  CommandRunner& commands() { return commands_; }
  JobFollower& jobs() { return jobs_; }
  const JobFollower& jobs() const { return jobs_; }

  // Ends the session: an interrupt no longer has an effect. True when no command and no job failed
  // and all files could be written.
  bool close();

  // Cancels all jobs, waits until their processes have ended, removes their files and ends the
  // program with exit status 130. The command thread stops before its next command. A second call
  // ends the program at once. From any thread; the session must live until the program ends.
  void interrupt();

 private:
  void runCommands(const SourcePtr& text, bool stoppable);
  // On the command thread, once the session is interrupted. Does not return.
  void waitForProgramEnd();

  std::unique_ptr<PrivateFolder> privateFolder_;  // none where the user has named the temporary folder
  Module module_;
  CommandGate gate_;
  CommandRunner commands_;
  JobFollower jobs_;
  std::atomic<bool> stopped_{false};
  std::stop_source end_;  // of the program, as an interrupt wants it
};

}  // namespace genostat::standalone
