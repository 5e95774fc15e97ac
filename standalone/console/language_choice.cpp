#include "standalone/console/language_choice.h"

#include <fmt/format.h>

#include <cstddef>
#include <filesystem>
#include <string_view>

#include "platform/environment.h"
#include "platform/path_text.h"
#include "platform/running_program.h"
#include "standalone/language/translation.h"
#include "standalone/language/wanted_languages.h"
#include "standalone/services/installed_language.h"
#include "standalone/syntax/diagnostic.h"

namespace genostat::standalone {

namespace {

std::vector<std::filesystem::path>& tableFolders() {
  static std::vector<std::filesystem::path> folders;
  return folders;
}

// The last value that an option has, as far as that can be seen before the arguments are parsed.
std::string valueOf(std::string_view option, const std::vector<std::string>& arguments) {
  std::string value;
  for (std::size_t i = 0; i < arguments.size() && arguments[i] != "--"; ++i) {
    const std::string& argument = arguments[i];
    if (argument == option && i + 1 < arguments.size()) value = arguments[i + 1];
    if (argument.starts_with(option) && argument.substr(option.size()).starts_with('=')) {
      value = argument.substr(option.size() + 1);
    }
  }
  return value;
}

std::vector<std::string> languagesOfSystem() {
  const auto variable = [](const char* name) {
    return platform::pathToUtf8(platform::environmentPath(name));
  };
  return wantedLanguages(
      {variable("LANGUAGE"), variable("LC_ALL"), variable("LC_MESSAGES"), variable("LANG")},
      platform::systemLanguages());
}

}  // namespace

void chooseLanguage(const std::vector<std::string>& arguments) {
  const std::string strings = valueOf("--strings", arguments);
  const std::string home = valueOf("--home", arguments);
  if (!strings.empty()) {
    tableFolders().push_back(platform::pathFromUtf8(strings));
  } else if (!home.empty()) {
    tableFolders().push_back(platform::pathFromUtf8(home) / "strings");
  }
  tableFolders().push_back(platform::programFolder() / "strings");
  std::vector<std::string> wanted = languageNames(valueOf("--language", arguments));
  if (wanted.empty()) wanted = languagesOfSystem();
  setLanguage(firstInstalledLanguage(wanted, tableFolders()));
}

std::string missingLanguage(const std::string& name) {
  for (const std::string& wanted : languageNames(name)) {
    if (installedLanguage(wanted, tableFolders())) return {};
  }
  return translated(
      "there is no language {1}; expected one of: {2}",
      {quoteForMessage(name), fmt::to_string(fmt::join(installedLanguages(tableFolders()), ", "))});
}

}  // namespace genostat::standalone
