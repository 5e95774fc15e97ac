// Which language the program speaks.
#pragma once

#include <string>
#include <vector>

namespace genostat::standalone {

// Sets the language: that of --language among the arguments, or else what the system says the user wants.
// Once, before the arguments are parsed, since the help is translated too.
void chooseLanguage(const std::vector<std::string>& arguments);

// Why a language cannot be spoken; empty: it can.
std::string missingLanguage(const std::string& name);

}  // namespace genostat::standalone
