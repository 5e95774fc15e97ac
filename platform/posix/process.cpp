#include "platform/process.h"

#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <charconv>
#include <chrono>
#include <cstring>
#include <optional>
#include <set>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

// Waits without reaping: the dead child keeps its id until this object goes.
class PosixProcess : public ChildProcess {
 public:
  explicit PosixProcess(pid_t id) : id_(id) {}

  ~PosixProcess() override {
    // A child that was never waited for is left to run; it is reaped only when it has ended.
    int status = 0;
    if (id_ > 0) waitpid(id_, &status, WNOHANG);
  }

  std::int32_t id() const override { return id_; }

  std::uint32_t wait() override {
    siginfo_t info = {};
    const auto waitForEnd = [&] { return waitid(P_PID, static_cast<id_t>(id_), &info, WEXITED | WNOWAIT); };
    if (uninterrupted(waitForEnd) != 0) {
      id_ = -1;
      return kLostExitCode;
    }
    const auto status = static_cast<std::uint32_t>(info.si_status);
    return info.si_code == CLD_EXITED ? status : 128u + status;
  }

 private:
  pid_t id_;
};

// Attributes and file actions of one spawn.
class SpawnSetup {
 public:
  SpawnSetup() {
    posix_spawnattr_init(&attributes);
    posix_spawn_file_actions_init(&actions);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    // Own group: an interrupt typed at the host's terminal must not reach the analysis.
    posix_spawnattr_setpgroup(&attributes, 0);
    // The host may block or ignore signals; the analysis starts with none of that.
    posix_spawnattr_setsigmask(&attributes, &none);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_addclosefrom_np(&actions, STDERR_FILENO + 1);
    // Outside the terminal's foreground group, a process that reads the terminal is stopped for ever.
    if (isatty(STDIN_FILENO) == 1) {
      posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    }
  }
  ~SpawnSetup() {
    posix_spawn_file_actions_destroy(&actions);
    posix_spawnattr_destroy(&attributes);
  }
  SpawnSetup(const SpawnSetup&) = delete;
  SpawnSetup& operator=(const SpawnSetup&) = delete;

  posix_spawnattr_t attributes;
  posix_spawn_file_actions_t actions;
};

struct CloseFolder {
  void operator()(DIR* folder) const { closedir(folder); }
};

struct ProcessStat {
  char state;
  pid_t parent;
};

// From /proc/ID/stat: "ID (name) state parent ...". The name may hold blanks and parentheses.
std::optional<ProcessStat> readStat(pid_t id) {
  const std::string path = "/proc/" + std::to_string(id) + "/stat";
  const Handle file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file) return std::nullopt;
  char buffer[512];
  const ssize_t size = read(descriptor(file), buffer, sizeof(buffer));
  const std::string_view text(buffer, size > 0 ? static_cast<std::size_t>(size) : 0);
  const std::size_t name = text.rfind(')');
  if (name == std::string_view::npos || name + 4 >= text.size()) return std::nullopt;
  ProcessStat stat = {text[name + 2], 0};
  std::from_chars(text.data() + name + 4, text.data() + text.size(), stat.parent);
  return stat;
}

// All children of a process, or none at all when the process table cannot be read.
std::optional<std::vector<pid_t>> childrenOf(pid_t parent) {
  const std::unique_ptr<DIR, CloseFolder> table(opendir("/proc"));
  if (!table) return std::nullopt;
  std::vector<pid_t> children;
  while (const dirent* entry = readdir(table.get())) {
    const char* end = entry->d_name + std::strlen(entry->d_name);
    pid_t id = 0;
    if (std::from_chars(entry->d_name, end, id).ptr != end) continue;
    const std::optional<ProcessStat> stat = readStat(id);
    if (stat && stat->parent == parent) children.push_back(id);
  }
  return children;
}

bool hasEnded(const std::optional<ProcessStat>& stat) {
  return !stat || stat->state == 'Z' || stat->state == 'X';
}

// Stops a process, so that it starts no more children while its tree is ended.
// A stop takes effect a moment after kill(2) has returned.
void freeze(pid_t id) {
  if (kill(id, SIGSTOP) != 0) return;
  for (int i = 0; i < 50; ++i) {
    const std::optional<ProcessStat> stat = readStat(id);
    if (hasEnded(stat) || stat->state == 'T' || stat->state == 't') return;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

bool killTree(pid_t id, std::set<pid_t>& visited) {
  // kill(2) takes -1, 0 and 1 for everybody, the own group and the system's first process.
  if (id <= 1 || !visited.insert(id).second) return false;
  // The children of an ended process are no longer its own.
  if (hasEnded(readStat(id))) return false;
  freeze(id);
  const std::optional<std::vector<pid_t>> children = childrenOf(id);
  if (!children) {
    kill(id, SIGCONT);
    return false;
  }
  for (const pid_t child : *children) {
    killTree(child, visited);
  }
  return kill(id, SIGKILL) == 0;
}

}  // namespace

const char* const kLauncherSuffix = ".sh";

std::unique_ptr<ChildProcess> ChildProcess::start(const LaunchCommand& command) {
  std::string launcher = command.launcher;
  std::string script = command.script;
  std::string payload = command.payload;
  char* const arguments[] = {launcher.data(), script.data(), payload.data(), nullptr};
  const SpawnSetup setup;
  pid_t id = 0;
  if (posix_spawn(&id, launcher.c_str(), &setup.actions, &setup.attributes, arguments, environ) != 0) {
    return nullptr;
  }
  return std::make_unique<PosixProcess>(id);
}

bool killProcessTree(std::int32_t id) {
  std::set<pid_t> visited;
  const bool leadsGroup = id > 1 && getpgid(id) == id;
  if (!killTree(id, visited)) return false;
  // Descendants whose parents had ended before are no longer in the tree, but still in the group.
  if (leadsGroup) kill(-id, SIGKILL);
  return true;
}

}  // namespace genostat::platform
