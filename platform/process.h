// Child processes: start, wait, end with all descendants.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace genostat::platform {

// Ends the launcher's file name: ".bat" on Windows, ".sh" elsewhere.
extern const char* const kLauncherSuffix;

// What is started. Windows takes `commandLine` whole; other systems take the three parts.
struct LaunchCommand {
  std::u16string commandLine;
  std::string launcher;  // with its suffix
  std::string script;
  std::string payload;
};

// A started process. As long as this object lives, the system gives the process's id to
// no other process, even after the process has ended.
class ChildProcess {
 public:
  static constexpr std::uint32_t kLostExitCode = 255;

  // Null when the process cannot be created. The child inherits the environment and the current
  // folder, no handles but the standard streams (a terminal is not for it to read), and leads a process group
  // of its own.
  static std::unique_ptr<ChildProcess> start(const LaunchCommand& command);

  virtual ~ChildProcess() = default;

  // Greater than 0; -1 once the id could not be kept (see wait).
  virtual std::int32_t id() const = 0;
  // Blocks until the process has ended; its exit code, bit for bit, or 128 plus the signal for
  // a process that a signal ended. Where somebody else has reaped the process (a host that ignores
  // SIGCHLD, or reaps every child), the code and the id are lost: kLostExitCode and -1.
  virtual std::uint32_t wait() = 0;
};

// Ends every descendant of a process, children before parents, then the process itself; on POSIX
// systems also what is left of the process group that it leads.
// True when the process itself was ended. An id of 0 or less reaches no system call.
bool killProcessTree(std::int32_t id);

}  // namespace genostat::platform
