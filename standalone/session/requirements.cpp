#include "standalone/session/requirements.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <string_view>
#include <system_error>

#include "platform/path_text.h"
#include "platform/process.h"
#include "platform/running_program.h"
#include "standalone/language/translation.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

constexpr const char* kLauncherName = "statisticspython3";

std::string quoted(const std::filesystem::path& path) {
  return "\"" + platform::pathToUtf8(path) + "\"";
}

// Tried by writing, as permissions alone do not say enough.
std::string whyNotWritable(const std::filesystem::path& folder) {
  const std::filesystem::path probe = folder / ("genostat-" + std::to_string(platform::processId()) + ".tmp");
  errno = 0;
  const bool written = static_cast<bool>(std::ofstream(probe) << '\n' << std::flush);
  const int code = errno;
  std::error_code ignored;
  std::filesystem::remove(probe, ignored);
  if (written) return {};
  return code != 0 ? translatedReason(std::generic_category().message(code))
                   : translated("no file can be written");
}

}  // namespace

bool submitsJob(const Command& command) {
  constexpr std::array<std::string_view, 7> kSubcommands = {
      "JOB", "DESCRIPTIVES", "FREQUENCIES", "CORRELATIONS", "REGRESSION", "PRINT", "DELETE"};
  const auto& tokens = command.tokens;
  for (std::size_t i = 1; i < tokens.size(); ++i) {
    // The slash before the first subcommand may be left out.
    const bool begins = i == 1 || tokens[i - 1].isSymbol('/');
    if (!begins || tokens[i].kind != Token::Kind::Word) continue;
    const auto index = matchKeyword(tokens[i].text, kSubcommands);
    if (index && (kSubcommands[*index] == "PRINT" || kSubcommands[*index] == "DELETE")) return false;
  }
  return true;
}

std::string missingRequirement(const HostFolders& folders) {
  std::error_code ignored;
  const std::filesystem::path launcher =
      folders.installation / (std::string(kLauncherName) + platform::kLauncherSuffix);
  if (!std::filesystem::is_regular_file(launcher, ignored)) {
    return translated("the analysis cannot be started: the launcher {1} is missing", {quoted(launcher)});
  }
  constexpr auto kAnyoneExecutes = std::filesystem::perms::owner_exec | std::filesystem::perms::group_exec |
                                   std::filesystem::perms::others_exec;
  if ((std::filesystem::status(launcher, ignored).permissions() & kAnyoneExecutes) ==
      std::filesystem::perms::none) {
    return translated("the analysis cannot be started: the launcher {1} is not executable",
                      {quoted(launcher)});
  }
  if (std::filesystem::is_regular_file(folders.temporary, ignored)) {
    return translated(
        "the analysis cannot be started: the temporary folder {1} is a file (--temp chooses another)",
        {quoted(folders.temporary)});
  }
  if (!std::filesystem::is_directory(folders.temporary, ignored)) {
    return translated(
        "the analysis cannot be started: the temporary folder {1} does not exist (--temp chooses another)",
        {quoted(folders.temporary)});
  }
  const std::string reason = whyNotWritable(folders.temporary);
  if (reason.empty()) return {};
  return translated(
      "the analysis cannot be started: cannot write to the temporary folder {1}: {2} (--temp chooses "
      "another)",
      {quoted(folders.temporary), reason});
}

}  // namespace genostat::standalone
