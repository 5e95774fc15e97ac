// How a host names the folder of the launcher to the module.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace genostat::platform {

// The prefix of the launcher's name: the folder with a separator at its end. On Windows the module passes
// each byte on as one character, which is right for ASCII only. A folder with another name is put first in
// the process's search path instead, and the prefix is empty. Call it before other threads start.
std::string launcherPrefix(const std::filesystem::path& folder);

// How many characters of parameters the system passes to a launcher in this folder, and the launcher to an
// analysis beside it.
std::size_t longestParameters(const std::filesystem::path& folder);

}  // namespace genostat::platform
