#include "platform/process.h"

#include <windows.h>

#include <tlhelp32.h>

#include <optional>
#include <set>
#include <utility>

#include "platform/windows/kernel_object.h"

namespace genostat::platform {

namespace {

class WindowsProcess : public ChildProcess {
 public:
  WindowsProcess(Handle process, DWORD id) : process_(std::move(process)), id_(id) {}

  std::int32_t id() const override { return static_cast<std::int32_t>(id_); }

  std::uint32_t wait() override {
    WaitForSingleObject(kernelObject(process_), INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(kernelObject(process_), &exitCode);
    return exitCode;
  }

 private:
  Handle process_;
  DWORD id_;
};

// When a process was created, in units of 100 ns; none where the system does not say.
std::optional<std::uint64_t> creationTime(DWORD id) {
  const Handle process = owned(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
  FILETIME created = {};
  FILETIME other = {};
  if (!process || GetProcessTimes(kernelObject(process), &created, &other, &other, &other) == 0) {
    return std::nullopt;
  }
  return (static_cast<std::uint64_t>(created.dwHighDateTime) << 32) | created.dwLowDateTime;
}

bool killTree(DWORD id, std::set<DWORD>& visited);

// A parent id outlives its process: an entry that is older than `parent` names a predecessor that had
// the same id, and is a stranger. False when the process table cannot be read.
bool killChildren(DWORD parent, const std::optional<std::uint64_t>& created, std::set<DWORD>& visited) {
  const Handle snapshot = owned(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) return false;
  PROCESSENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  if (Process32First(kernelObject(snapshot), &entry) == 0) return false;
  do {
    if (entry.th32ParentProcessID != parent) continue;
    const std::optional<std::uint64_t> childCreated = creationTime(entry.th32ProcessID);
    if (created && childCreated && *childCreated < *created) continue;
    killTree(entry.th32ProcessID, visited);
  } while (Process32Next(kernelObject(snapshot), &entry) != 0);
  return true;
}

// `visited` stops at loops.
bool killTree(DWORD id, std::set<DWORD>& visited) {
  if (!visited.insert(id).second) return false;
  const std::optional<std::uint64_t> created = creationTime(id);
  if (!killChildren(id, created, visited)) return false;
  bool ended = false;
  {
    const Handle process = owned(OpenProcess(PROCESS_TERMINATE, FALSE, id));
    ended = process && TerminateProcess(kernelObject(process), 1) != 0;
  }
  // A child that was being created while its parent ended may never come to run, but would stay.
  if (ended) killChildren(id, created, visited);
  return ended;
}

}  // namespace

const char* const kLauncherSuffix = ".bat";

std::unique_ptr<ChildProcess> ChildProcess::start(const LaunchCommand& command) {
  // The system may write into the command line while it starts the process.
  std::wstring line(command.commandLine.begin(), command.commandLine.end());
  STARTUPINFOW startup = {};
  startup.cb = sizeof(startup);
  PROCESS_INFORMATION process = {};
  if (CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE,
                     CREATE_NEW_PROCESS_GROUP | CREATE_UNICODE_ENVIRONMENT, nullptr, nullptr, &startup,
                     &process) == 0) {
    return nullptr;
  }
  Handle handle = owned(process.hProcess);
  owned(process.hThread).close();
  return std::make_unique<WindowsProcess>(std::move(handle), process.dwProcessId);
}

bool killProcessTree(std::int32_t id) {
  if (id <= 0) return false;
  std::set<DWORD> visited;
  return killTree(static_cast<DWORD>(id), visited);
}

}  // namespace genostat::platform
