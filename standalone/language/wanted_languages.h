// Which languages the user wants, by the habits of POSIX systems.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

// Variables of the environment; empty where there is none.
struct LanguageVariables {
  std::string language;  // LANGUAGE: a list, "de_AT:de:fr"
  std::string all;       // LC_ALL
  std::string messages;  // LC_MESSAGES
  std::string lang;      // LANG
};

// Names of languages, the most wanted first, each with its country and then without: "de_AT", "de". The first
// of LC_ALL, LC_MESSAGES and LANG that is set names the locale. The locale "C" (or "POSIX") wants English,
// whatever LANGUAGE says; otherwise LANGUAGE goes before the locale. `system` is asked where no variable says
// anything.
std::vector<std::string> wantedLanguages(const LanguageVariables& variables,
                                         const std::vector<std::string>& system);

// "de_AT.UTF-8" and "de-at" are "de_AT" and "de"; nothing for what cannot be a language's name.
std::vector<std::string> languageNames(std::string_view locale);

}  // namespace genostat::standalone
