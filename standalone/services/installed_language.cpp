#include "standalone/services/installed_language.h"

#include <set>
#include <system_error>
#include <utility>

#include "platform/path_text.h"
#include "standalone/language/wanted_languages.h"
#include "standalone/services/string_table_file.h"

namespace genostat::standalone {

namespace {

constexpr std::string_view kEnglish = "en";
constexpr std::string_view kPseudo = "pseudo";

std::string unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      plain += text[i];
      continue;
    }
    const char next = text[++i];
    plain += next == 'n' ? '\n' : next == 't' ? '\t' : next;
  }
  return plain;
}

}  // namespace

std::optional<Language> installedLanguage(const std::string& name,
                                          const std::vector<std::filesystem::path>& folders) {
  if (name == kPseudo || name == "qps_PLOC") return pseudoLanguage();
  Language language;
  language.code = name;
  bool installed = name == kEnglish;
  for (const std::filesystem::path& folder : folders) {
    std::error_code ignored;
    const std::filesystem::path tables = folder / name;
    installed = std::filesystem::is_directory(tables, ignored) || installed;
    for (const auto& [english, text] : readStringTable(stringTableFile(tables, kClientTable)).texts) {
      if (!text.empty()) language.texts.emplace(unescaped(english), unescaped(text));
    }
  }
  if (!installed) return std::nullopt;
  return language;
}

Language firstInstalledLanguage(const std::vector<std::string>& wanted,
                                const std::vector<std::filesystem::path>& folders) {
  for (const std::string& name : wanted) {
    if (std::optional<Language> language = installedLanguage(name, folders)) return *std::move(language);
  }
  return {};
}

std::vector<std::string> installedLanguages(const std::vector<std::filesystem::path>& folders) {
  std::set<std::string> names = {std::string(kEnglish), std::string(kPseudo)};
  for (const std::filesystem::path& folder : folders) {
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
      const std::string name = platform::pathToUtf8(entry.path().filename());
      const std::vector<std::string> known = languageNames(name);
      if (entry.is_directory(error) && !known.empty() && known.front() == name) names.insert(name);
    }
  }
  return {names.begin(), names.end()};
}

}  // namespace genostat::standalone
