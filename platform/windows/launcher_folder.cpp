#include "platform/launcher_folder.h"

#include <windows.h>

#include <algorithm>

#include "platform/environment.h"
#include "platform/path_text.h"

namespace genostat::platform {

std::string launcherPrefix(const std::filesystem::path& folder) {
  const std::wstring& name = folder.native();
  if (std::all_of(name.begin(), name.end(), [](wchar_t unit) { return unit < 0x80; })) {
    return pathToNarrow(folder / "");
  }
  const std::wstring front = name + L";";
  const std::wstring before = environmentPath("PATH").native();
  if (!before.starts_with(front)) SetEnvironmentVariableW(L"PATH", (front + before).c_str());
  // Otherwise a launcher in the current folder would be started instead.
  SetEnvironmentVariableW(L"NoDefaultCurrentDirectoryInExePath", L"1");
  return {};
}

std::size_t longestParameters(const std::filesystem::path& folder) {
  // Of a line in a command file. It also names the command interpreter, or the analysis, and a script.
  constexpr std::size_t kLine = 8191;
  constexpr std::size_t kOtherWords = 120;
  const std::size_t paths = 2 * folder.native().size() + kOtherWords;
  return kLine - std::min(kLine, paths);
}

}  // namespace genostat::platform
