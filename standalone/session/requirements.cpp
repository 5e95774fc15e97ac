#include "standalone/session/requirements.h"

#include <array>
#include <string_view>
#include <system_error>
#include <vector>

#include "common/files/part_file.h"
#include "platform/launcher_folder.h"
#include "platform/process.h"
#include "standalone/language/translation.h"
#include "standalone/session/quoted_path.h"
#include "standalone/syntax/keyword.h"

namespace genostat::standalone {

namespace {

constexpr const char* kLauncherName = "statisticspython3";

// Tried by writing, as permissions alone do not say enough.
std::string whyNotWritable(const std::filesystem::path& folder) {
  try {
    common::createPart(folder).write("\n");
    return {};
  } catch (const std::system_error& failure) {
    return translatedReason(failure.what());
  }
}

// As text of JSON, in quotes.
std::size_t jsonSize(const std::string& text) {
  constexpr std::size_t kLongestEscape = 6;
  std::size_t size = 2;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    size += byte < 0x20 ? kLongestEscape : c == '"' || c == '\\' ? 2 : 1;
  }
  return size;
}

std::filesystem::path launcherIn(const HostFolders& folders) {
  return folders.installation / (std::string(kLauncherName) + platform::kLauncherSuffix);
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
  const std::filesystem::path launcher = launcherIn(folders);
  if (!std::filesystem::is_regular_file(launcher, ignored)) {
    return translated("the analysis cannot be started: the launcher {1} is missing", {quotedPath(launcher)});
  }
  constexpr auto kAnyoneExecutes = std::filesystem::perms::owner_exec | std::filesystem::perms::group_exec |
                                   std::filesystem::perms::others_exec;
  if ((std::filesystem::status(launcher, ignored).permissions() & kAnyoneExecutes) ==
      std::filesystem::perms::none) {
    return translated("the analysis cannot be started: the launcher {1} is not executable",
                      {quotedPath(launcher)});
  }
  if (std::filesystem::is_regular_file(folders.temporary, ignored)) {
    return translated(
        "the analysis cannot be started: the temporary folder {1} is a file (--temp chooses another)",
        {quotedPath(folders.temporary)});
  }
  if (!std::filesystem::is_directory(folders.temporary, ignored)) {
    return translated(
        "the analysis cannot be started: the temporary folder {1} does not exist (--temp chooses another)",
        {quotedPath(folders.temporary)});
  }
  const std::string reason = whyNotWritable(folders.temporary);
  if (reason.empty()) return {};
  return translated(
      "the analysis cannot be started: cannot write to the temporary folder {1}: {2} (--temp chooses "
      "another)",
      {quotedPath(folders.temporary), reason});
}

std::size_t parameterSize(std::span<const std::string> names) {
  // The result's path, the adapter and the names of the members.
  constexpr std::size_t kOtherMembers = 500;
  std::size_t size = kOtherMembers;
  for (const std::string& name : names) {
    size += jsonSize(name) + 1;
  }
  return size / 3 * 4;
}

std::size_t parameterSize(const Command& command) {
  std::vector<std::string> names;
  for (const Token& token : command.tokens) {
    if (token.kind == Token::Kind::String) names.push_back(token.text);
  }
  return parameterSize(names);
}

std::string whyNotStarted(const std::string& shownName, std::size_t parameterSize,
                          const HostFolders& folders) {
  std::error_code ignored;
  if (!std::filesystem::is_directory(folders.temporary, ignored)) {
    return translated("job '{1}' could not be started: the temporary folder {2} is gone",
                      {shownName, quotedPath(folders.temporary)});
  }
  const std::size_t longest = platform::longestParameters(folders.installation);
  if (parameterSize > longest) {
    return translated(
        "job '{1}' could not be started: its command line has some {2} characters, of which the system takes "
        "{3}; name the folder of its files instead of the files",
        {shownName, std::to_string(parameterSize), std::to_string(longest)});
  }
  return translated("job '{1}' could not be started: its launcher {2} did not start",
                    {shownName, quotedPath(launcherIn(folders))});
}

}  // namespace genostat::standalone
