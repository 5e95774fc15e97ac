#include "run/launch_command.h"

#include "platform/files.h"

namespace genostat {

namespace {

constexpr char kScriptsFolder[] = "scripts";
constexpr char kScriptName[] = "genostat.pyc";

}  // namespace

std::u16string widenBytes(std::string_view bytes) {
  std::u16string wide;
  wide.reserve(bytes.size());
  for (const char byte : bytes) {
    wide += static_cast<char16_t>(static_cast<signed char>(byte));
  }
  return wide;
}

platform::LaunchCommand launchCommand(const std::string& launcher, const std::string& script,
                                      const std::string& payload) {
  platform::LaunchCommand command;
  command.launcher = launcher + platform::kLauncherSuffix;
  command.script = script;
  command.payload = payload;
  command.commandLine = u"\"" + widenBytes(launcher) + widenBytes(platform::kLauncherSuffix) + u"\" \"" +
                        widenBytes(script) + u"\" \"" + widenBytes(payload) + u"\"";
  return command;
}

std::string scriptPath(const std::string& installationFolder) {
  const std::string preferred = installationFolder + kScriptsFolder + platform::kPathSeparator + kScriptName;
  return platform::fileExists(preferred) ? preferred : installationFolder + kScriptName;
}

}  // namespace genostat
