#include "platform/process.h"

#include <windows.h>

#include <tlhelp32.h>

#include <optional>
#include <set>
#include <utility>

#include "platform/windows/handle.h"

namespace genostat::platform {

namespace {

class WindowsProcess : public ChildProcess {
 public:
  WindowsProcess(UniqueHandle process, DWORD id) : process_(std::move(process)), id_(id) {}

  std::int32_t id() const override { return static_cast<std::int32_t>(id_); }

  std::uint32_t wait() override {
    WaitForSingleObject(process_.get(), INFINITE);
    DWORD exitCode = 0;
    GetExitCodeProcess(process_.get(), &exitCode);
    return exitCode;
  }

 private:
  UniqueHandle process_;
  DWORD id_;
};

// When a process was created, in units of 100 ns; none where the system does not say.
std::optional<std::uint64_t> creationTime(DWORD id) {
  const UniqueHandle process(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id), CloseHandle);
  FILETIME created = {};
  FILETIME other = {};
  if (!process.valid() || GetProcessTimes(process.get(), &created, &other, &other, &other) == 0) {
    return std::nullopt;
  }
  return (static_cast<std::uint64_t>(created.dwHighDateTime) << 32) | created.dwLowDateTime;
}

bool killTree(DWORD id, std::set<DWORD>& visited);

// A parent id outlives its process: an entry that is older than `parent` names a predecessor that had
// the same id, and is a stranger. False when the process table cannot be read.
bool killChildren(DWORD parent, const std::optional<std::uint64_t>& created, std::set<DWORD>& visited) {
  const UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0), CloseHandle);
  if (!snapshot.valid()) return false;
  PROCESSENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  if (Process32First(snapshot.get(), &entry) == 0) return false;
  do {
    if (entry.th32ParentProcessID != parent) continue;
    const std::optional<std::uint64_t> childCreated = creationTime(entry.th32ProcessID);
    if (created && childCreated && *childCreated < *created) continue;
    killTree(entry.th32ProcessID, visited);
  } while (Process32Next(snapshot.get(), &entry) != 0);
  return true;
}

// `visited` stops at loops.
bool killTree(DWORD id, std::set<DWORD>& visited) {
  if (!visited.insert(id).second) return false;
  const std::optional<std::uint64_t> created = creationTime(id);
  if (!killChildren(id, created, visited)) return false;
  bool ended = false;
  {
    const UniqueHandle process(OpenProcess(PROCESS_TERMINATE, FALSE, id), CloseHandle);
    ended = process.valid() && TerminateProcess(process.get(), 1) != 0;
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
  UniqueHandle handle(process.hProcess, CloseHandle);
  CloseHandle(process.hThread);
  return std::make_unique<WindowsProcess>(std::move(handle), process.dwProcessId);
}

bool killProcessTree(std::int32_t id) {
  if (id <= 0) return false;
  std::set<DWORD> visited;
  return killTree(static_cast<DWORD>(id), visited);
}

}  // namespace genostat::platform
