// The folders of a session, as the host libraries hand them to modules.
#pragma once

#include <filesystem>
#include <vector>

namespace genostat::standalone {

struct HostFolders {
  std::filesystem::path temporary;     // absolute; need not exist
  std::filesystem::path installation;  // absolute; the launcher's folder
  // Holds the string tables; empty: "strings" in the folder that a dictionary is made for.
  std::filesystem::path strings = {};
  // What comes with the program, asked after the former; empty: nothing.
  std::filesystem::path shippedStrings = {};
};

// Where string tables are looked for, in this order: the user's folder, its folder of the program's language,
// and the language's folder of the shipped tables. `chosen` is where the user has his.
std::vector<std::filesystem::path> stringTableFolders(const std::filesystem::path& chosen);

// Set before a module is loaded, as its threads read them without a lock.
void setHostFolders(HostFolders folders);
const HostFolders& hostFolders();

}  // namespace genostat::standalone
