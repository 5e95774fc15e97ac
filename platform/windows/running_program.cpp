#include "platform/running_program.h"

#include <windows.h>

#include <shellapi.h>

#include "platform/windows/wide_text.h"

namespace genostat::platform {

std::vector<std::string> commandLineArguments(int, const char* const*) {
  // The C runtime converts its arguments to the ANSI code page; those of the system are not converted.
  int count = 0;
  wchar_t** wide = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(narrow(wide[i], CP_UTF8));
  }
  LocalFree(wide);
  return arguments;
}

std::filesystem::path programFolder() {
  std::wstring path(32768, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())));
  return std::filesystem::path(path).parent_path();
}

int processId() {
  return static_cast<int>(GetCurrentProcessId());
}

std::string hostName() {
  std::wstring name(256, L'\0');
  auto size = static_cast<DWORD>(name.size());
  name.resize(GetComputerNameExW(ComputerNameDnsHostname, name.data(), &size) != 0 ? size : 0);
  return narrow(name, CP_UTF8);
}

void exitNow(int status) {
  // ExitProcess would run the libraries' destructors after it has stopped their threads anywhere.
  TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
  ExitProcess(static_cast<UINT>(status));
}

}  // namespace genostat::platform
