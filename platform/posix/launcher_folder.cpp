#include "platform/launcher_folder.h"

#include "platform/path_text.h"

namespace genostat::platform {

std::string launcherPrefix(const std::filesystem::path& folder) {
  // An empty last component makes a path end in a separator.
  return pathToNarrow(folder / "");
}

std::size_t longestParameters(const std::filesystem::path& /*folder*/) {
  // Of one argument, with its end; all of them together may be longer.
  return 32 * 4096 - 1;
}

}  // namespace genostat::platform
