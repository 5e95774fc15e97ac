#include "platform/process.h"

#include <windows.h>

#include <tlhelp32.h>

#include <map>
#include <new>
#include <optional>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/windows/kernel_object.h"

namespace genostat::platform {

namespace {

class WindowsProcess : public ChildProcess {
 public:
  void own(const PROCESS_INFORMATION& started) {
    process_ = owned(started.hProcess);
    owned(started.hThread).close();
    id_ = started.dwProcessId;
  }
  std::int32_t id() const override { return static_cast<std::int32_t>(id_); }

  std::uint32_t wait() override {
    WaitForSingleObject(kernelObject(process_), INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(kernelObject(process_), &exitCode);
    return exitCode;
  }

 private:
  Handle process_;
  DWORD id_ = 0;
};

// A process by its id, which the system gives to no other one as long as this object lives.
struct KnownProcess {
  explicit KnownProcess(DWORD id) : handle(owned(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id))) {
    FILETIME time = {};
    FILETIME other = {};
    if (handle && GetProcessTimes(kernelObject(handle), &time, &other, &other, &other) != 0)
      created = (static_cast<std::uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
  }

  Handle handle;
  std::optional<std::uint64_t> created;  // in units of 100 ns; none where the system does not say
};

using Children = std::unordered_map<DWORD, std::vector<DWORD>>;  // by their parent, in the order of the table

// One pass over the process table; none when it cannot be read.
std::optional<Children> readChildren() {
  const Handle snapshot = owned(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) return std::nullopt;
  PROCESSENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  if (Process32First(kernelObject(snapshot), &entry) == 0) return std::nullopt;
  Children children;
  do {
    children[entry.th32ParentProcessID].push_back(entry.th32ProcessID);
  } while (Process32Next(kernelObject(snapshot), &entry) != 0);
  return children;
}

bool terminate(DWORD id) {
  const Handle process = owned(OpenProcess(PROCESS_TERMINATE, FALSE, id));
  return process && TerminateProcess(kernelObject(process), 1) != 0;
}

// The processes of one tree, each ended once.
class Tree {
 public:
  // Ends a process after its descendants; true when it was ended itself.
  bool end(DWORD id, KnownProcess process, const Children& table) {
    const KnownProcess& kept = ended_.emplace(id, std::move(process)).first->second;
    endChildren(id, kept, table);
    return terminate(id);
  }

  // Ends the children of all that were ended before; true when there was one.
  bool endChildrenOfTheEnded(const Children& table) {
    std::vector<std::pair<DWORD, const KnownProcess*>> parents;
    for (const auto& [id, process] : ended_)
      parents.emplace_back(id, &process);
    for (const auto& [id, process] : parents)
      endChildren(id, *process, table);
    return ended_.size() > parents.size();
  }

 private:
  // A parent id outlives its process: a child that is older than its parent names a predecessor that had the
  // same id, and is a stranger.
  void endChildren(DWORD parentId, const KnownProcess& parent, const Children& table) {
    const auto children = table.find(parentId);
    if (children == table.end()) return;
    for (const DWORD id : children->second) {
      if (ended_.contains(id)) continue;
      KnownProcess child(id);
      if (parent.created && child.created && *child.created < *parent.created) continue;
      end(id, std::move(child), table);
    }
  }

  std::map<DWORD, KnownProcess> ended_;
};

bool killTree(DWORD id) {
  std::optional<Children> table = readChildren();
  if (!table) return false;
  Tree tree;
  if (!tree.end(id, KnownProcess(id), *table)) return false;
  // A child that was being created while its parent ended may never come to run, but would stay.
  constexpr int kMaxPasses = 100;
  for (int pass = 0; pass < kMaxPasses; ++pass) {
    table = readChildren();
    if (!table || !tree.endChildrenOfTheEnded(*table)) break;
  }
  return true;
}

}  // namespace

const char* const kLauncherSuffix = ".bat";

std::unique_ptr<ChildProcess> ChildProcess::start(const LaunchCommand& command) {
  // The system may write into the command line while it starts the process.
  std::wstring line(command.commandLine.begin(), command.commandLine.end());
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION started = {};
  // First, since without memory for it the process would run with nobody to wait for it.
  auto process = std::make_unique<WindowsProcess>();
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE,
                     CREATE_NEW_PROCESS_GROUP | CREATE_UNICODE_ENVIRONMENT, nullptr, nullptr, &startup,
                     &started) == 0) {
    return nullptr;
  }
  process->own(started);
  return process;
}

bool killProcessTree(std::int32_t id) {
  if (id <= 0) return false;
  try {
    return killTree(static_cast<DWORD>(id));
  } catch (const std::bad_alloc&) {
    // No memory to find its descendants; the process itself must not stay.
    return terminate(static_cast<DWORD>(id));
  }
}

}  // namespace genostat::platform
