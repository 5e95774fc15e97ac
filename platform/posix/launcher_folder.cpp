#include "platform/launcher_folder.h"

#include "platform/program.h"

namespace genostat::platform {

std::string launcherPrefix(const std::filesystem::path& folder) {
  // An empty last component makes a path end in a separator.
  return pathToNarrow(folder / "");
}

}  // namespace genostat::platform
