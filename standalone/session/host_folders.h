// The folders of a session, as the host libraries hand them to modules.
#pragma once

#include <filesystem>

namespace genostat::standalone {

struct HostFolders {
  std::filesystem::path temporary;     // absolute; need not exist
  std::filesystem::path installation;  // absolute; the launcher's folder
  // Holds the string tables; empty: "strings" in the folder that a dictionary is made for.
  std::filesystem::path strings;
};

// Set before a module is loaded, as its threads read them without a lock.
void setHostFolders(HostFolders folders);
const HostFolders& hostFolders();

}  // namespace genostat::standalone
