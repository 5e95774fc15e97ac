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
#include <new>
#include <optional>
#include <span>
#include <string_view>
#include <thread>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/posix/descriptor.h"

namespace genostat::platform {

namespace {

// Waits without reaping: the dead child keeps its id until this object goes.
class PosixProcess : public ChildProcess {
 public:
  PosixProcess() = default;
  ~PosixProcess() override {
    // A child that was never waited for is left to run; it is reaped only when it has ended.
    int status = 0;
    if (id_ > 0) waitpid(id_, &status, WNOHANG);
  }

  void own(pid_t id) { id_ = id; }
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
  pid_t id_ = -1;
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

bool hasEnded(const std::optional<ProcessStat>& stat) {
  return !stat || stat->state == 'Z' || stat->state == 'X';
}

using Children = std::unordered_map<pid_t, std::vector<pid_t>>;  // by their parent

// One pass over the process table; none when it cannot be read.
std::optional<Children> readChildren() {
  const std::unique_ptr<DIR, CloseFolder> table(opendir("/proc"));
  if (!table) return std::nullopt;
  Children children;
  while (const dirent* entry = readdir(table.get())) {
    const char* end = entry->d_name + std::strlen(entry->d_name);
    pid_t id = 0;
    if (std::from_chars(entry->d_name, end, id).ptr != end) continue;
    const std::optional<ProcessStat> stat = readStat(id);
    if (stat) children[stat->parent].push_back(id);
  }
  return children;
}

bool standsStill(pid_t id) {
  const std::optional<ProcessStat> stat = readStat(id);
  return hasEnded(stat) || stat->state == 'T' || stat->state == 't';
}

// Stops processes, so that they start no more children while their tree is ended.
// A stop takes effect a moment after kill(2) has returned; none is waited for when one takes too long.
void freeze(std::span<const pid_t> processes) {
  for (const pid_t id : processes)
    kill(id, SIGSTOP);
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(50);
  for (const pid_t id : processes) {
    while (!standsStill(id) && std::chrono::steady_clock::now() < deadline)
      std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
}

// A process and all its descendants, parents before children, all of them frozen. Those that were started
// before their parent stood still are found by the next pass; most often the second finds nothing new. Empty
// when the process table cannot be read.
std::vector<pid_t> frozenTree(pid_t root) {
  constexpr int kMaxPasses = 100;  // for what cannot be stopped and goes on starting processes
  std::vector<pid_t> tree = {root};
  std::unordered_set<pid_t> known = {root};
  std::size_t frozen = 0;
  for (int pass = 0; pass < kMaxPasses && frozen < tree.size(); ++pass) {
    freeze(std::span(tree).subspan(frozen));
    frozen = tree.size();
    const std::optional<Children> children = readChildren();
    if (!children) {
      for (const pid_t id : tree)
        kill(id, SIGCONT);
      return {};
    }
    for (std::size_t i = 0; i < tree.size(); ++i) {
      const auto found = children->find(tree[i]);
      if (found == children->end()) continue;
      for (const pid_t child : found->second) {
        if (child > 1 && known.insert(child).second) tree.push_back(child);
      }
    }
  }
  return tree;
}

// The children of an ended process are no longer its own.
bool killTree(pid_t root) {
  if (hasEnded(readStat(root))) return false;
  bool ended = false;
  const std::vector<pid_t> tree = frozenTree(root);
  // Not every compiler takes a reversed view of it.
  for (auto id = tree.rbegin(); id != tree.rend(); ++id) {
    ended = kill(*id, SIGKILL) == 0;
  }
  return ended;
}

}  // namespace

const char* const kLauncherSuffix = ".sh";

std::unique_ptr<ChildProcess> ChildProcess::start(const LaunchCommand& command) {
  std::string launcher = command.launcher;
  std::string script = command.script;
  std::string payload = command.payload;
  char* const arguments[] = {launcher.data(), script.data(), payload.data(), nullptr};
  const SpawnSetup setup;
  // First, since without memory for it the process would run with nobody to wait for it.
  auto process = std::make_unique<PosixProcess>();
  pid_t id = 0;
  if (posix_spawn(&id, launcher.c_str(), &setup.actions, &setup.attributes, arguments, environ) != 0) {
    return nullptr;
  }
  process->own(id);
  return process;
}

bool killProcessTree(std::int32_t id) {
  // kill(2) takes -1, 0 and 1 for everybody, the own group and the system's first process.
  if (id <= 1) return false;
  const bool leadsGroup = getpgid(id) == id;
  bool ended = false;
  try {
    ended = killTree(id);
  } catch (const std::bad_alloc&) {
    // No memory to find its descendants; the process, which may be frozen by now, must not stay.
    ended = kill(id, SIGKILL) == 0;
  }
  // Descendants whose parents had ended before are no longer in the tree, but still in the group.
  if (ended && leadsGroup) kill(-id, SIGKILL);
  return ended;
}

}  // namespace genostat::platform
