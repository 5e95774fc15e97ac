// What the environment tells a program.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace genostat::platform {

// A path in a variable of the environment; empty where there is none. Names are ASCII. Set before other
// threads start; processes started later inherit it.
std::filesystem::path environmentPath(const char* name);
void setEnvironmentPath(const char* name, const std::filesystem::path& value);

// The languages in which the system speaks to the user, the most wanted first: "de-DE". Empty where only
// variables of the environment tell.
std::vector<std::string> systemLanguages();

}  // namespace genostat::platform
