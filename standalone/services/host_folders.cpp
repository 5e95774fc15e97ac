#include "standalone/services/host_folders.h"

#include <string>
#include <utility>

#include "host/path_service.h"
#include "platform/launcher_folder.h"
#include "platform/path_text.h"
#include "standalone/language/language.h"

namespace genostat::standalone {

namespace {

constexpr int kInstallationFolder = 3;

struct InstallationFinder : PathFinder {
  const std::string& path() override { return prefix; }

  std::string prefix;
};

struct State {
  HostFolders folders;
  std::string temporaryNarrow;
  InstallationFinder installation;
};

State& state() {
  // Never destroyed: a module's thread may still ask while the program ends.
  static State* const kept = new State;
  return *kept;
}

}  // namespace

void setHostFolders(HostFolders folders) {
  State& kept = state();
  kept.folders = std::move(folders);
  kept.temporaryNarrow = platform::pathToNarrow(kept.folders.temporary);
  const std::filesystem::path& launchers = kept.folders.installation;
  kept.installation.prefix = launchers.empty() ? std::string() : platform::launcherPrefix(launchers);
}

const HostFolders& hostFolders() {
  return state().folders;
}

std::vector<std::filesystem::path> stringTableFolders(const std::filesystem::path& chosen) {
  const std::string& code = language().code;
  std::vector<std::filesystem::path> folders = {chosen, chosen / code};
  const std::filesystem::path& shipped = state().folders.shippedStrings;
  if (!shipped.empty() && shipped != chosen) folders.push_back(shipped / code);
  return folders;
}

}  // namespace genostat::standalone

PathFinder* PathFactory::getPathInstance(int kind) {
  namespace standalone = genostat::standalone;
  return kind == standalone::kInstallationFolder ? &standalone::state().installation : nullptr;
}

const char* GetZorvTempPath() {
  return genostat::standalone::state().temporaryNarrow.c_str();
}
