#include "run/launch_command.h"

#include "platform/files.h"

namespace genostat {

namespace {

constexpr char kScriptsFolder[] = "scripts";
constexpr char kScriptName[] = "genostat.pyc";
constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::string encodeBase64(std::string_view data) {
  std::string text;
  text.reserve((data.size() + 2) / 3 * 4);
  std::uint32_t bits = 0;
  int count = -6;  // bits held beyond the next character's six
  for (const char byte : data) {
    bits = (bits << 8) | static_cast<unsigned char>(byte);
    for (count += 8; count >= 0; count -= 6) {
      text += kAlphabet[(bits >> count) & 63];
    }
  }
  if (count > -6) text += kAlphabet[((bits << 8) >> (count + 8)) & 63];
  while (text.size() % 4 != 0) {
    text += '=';
  }
  return text;
}

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
  for (const std::string& argument : {command.launcher, script, payload}) {
    command.commandLine.append(command.commandLine.empty() ? u"\"" : u" \"");
    command.commandLine.append(widenBytes(argument)).append(u"\"");
  }
  return command;
}

std::string scriptPath(const std::string& installationFolder) {
  const std::string preferred = installationFolder + kScriptsFolder + platform::kPathSeparator + kScriptName;
  return platform::fileExists(preferred) ? preferred : installationFolder + kScriptName;
}

}  // namespace genostat
