// The names of part files.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace genostat::platform {

std::string partName(unsigned number);

// The part files in a folder, of the living and the dead; none when it cannot be read. An empty path is the
// current folder.
std::vector<std::filesystem::path> partsIn(const std::filesystem::path& folder);

}  // namespace genostat::platform
