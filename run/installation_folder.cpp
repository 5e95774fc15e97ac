#include "run/installation_folder.h"

#include "host/path_service.h"

namespace genostat {

namespace {
constexpr int kInstallationFolderKind = 3;
}

std::string installationFolder() {
  PathFinder* finder = PathFactory::getPathInstance(kInstallationFolderKind);
  return finder != nullptr ? finder->path() : std::string();
}

}  // namespace genostat
