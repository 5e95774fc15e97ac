// The languages whose string tables are installed.
//
// A folder of string tables has a folder for each language: de/client.txt translates this program's texts,
// de/GENOSTAT.txt and de/global.txt those that modules look up. In client.txt an English text is the key of
// its translation, and `\n`, `\t` and `\\` stand for a line feed, a tab and a backslash, on both sides; a key
// that begins with `#` is written with `\#`.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "standalone/language/language.h"

namespace genostat::standalone {

// The language of this name, "en" and "pseudo" included; none where no folder has its tables. What two
// folders translate, the first one does. Faulty lines are skipped.
std::optional<Language> installedLanguage(const std::string& name,
                                          const std::vector<std::filesystem::path>& folders);

// The first of the wanted ones that is installed, or English.
Language firstInstalledLanguage(const std::vector<std::string>& wanted,
                                const std::vector<std::filesystem::path>& folders);

// The names of all installed languages, sorted.
std::vector<std::string> installedLanguages(const std::vector<std::filesystem::path>& folders);

}  // namespace genostat::standalone
