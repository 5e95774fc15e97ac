// Variables of the environment, and the languages that the user has chosen.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace genostat::platform {

// A path in a variable of the environment; empty where there is none. Names are ASCII. Set before other
// threads start; processes started later inherit it.
std::filesystem::path environmentPath(const char* name);
void setEnvironmentPath(const char* name, const std::filesystem::path& value);

// The user's languages in order of preference, such as "de-DE". Empty where the system keeps them only in
// variables of the environment.
std::vector<std::string> systemLanguages();

}  // namespace genostat::platform
