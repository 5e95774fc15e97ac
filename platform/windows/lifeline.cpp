#include "platform/lifeline.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/environment.h"
#include "platform/path_text.h"
#include "platform/running_program.h"
#include "platform/windows/kernel_object.h"

namespace genostat::platform {

namespace {

constexpr const char* kParentVariable = "GENOSTAT_PARENT";

// "ID BEGINNING COMPUTER", the beginning in units of 100 ns; empty where the process cannot be seen.
std::string nameOf(DWORD id, const Handle& process) {
  FILETIME begun = {};
  FILETIME other = {};
  if (!process || GetProcessTimes(kernelObject(process), &begun, &other, &other, &other) == 0) return {};
  const auto beginning = (static_cast<std::uint64_t>(begun.dwHighDateTime) << 32) | begun.dwLowDateTime;
  return std::to_string(id) + ' ' + std::to_string(beginning) + ' ' + hostName();
}

}  // namespace

void nameAsParent() {
  const DWORD id = GetCurrentProcessId();
  const Handle self = owned(OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id));
  setEnvironmentPath(kParentVariable, pathFromUtf8(nameOf(id, self)));
}

void onParentGone(std::function<void()> handler) {
  const std::string name = pathToUtf8(environmentPath(kParentVariable));
  const DWORD id = std::strtoul(name.c_str(), nullptr, 10);
  if (id == 0 || !name.ends_with(' ' + hostName())) return;
  auto process = std::make_shared<const Handle>(
      owned(OpenProcess(SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION, FALSE, id)));
  // It is there, but another user's.
  if (process->error() == std::errc::permission_denied) return;
  try {
    std::thread([process, isRunning = nameOf(id, *process) == name, handler = std::move(handler)] {
      if (isRunning) WaitForSingleObject(kernelObject(*process), INFINITE);
      handler();
    }).detach();
  } catch (const std::system_error&) {
    // No thread to be had: the program needs its own ones more.
  }
}

}  // namespace genostat::platform
