// A launcher that starts the analysis stub.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/path_text.h"
#include "platform/process.h"
#include "platform/running_program.h"

namespace genostat::test {

// The launcher's file name on this system.
inline const std::string kStubLauncher = std::string("statisticspython3") + platform::kLauncherSuffix;

inline void writeStubLauncher(const std::filesystem::path& folder) {
  const std::string stub = platform::pathToNarrow(platform::programFolder() / "analysis_stub");
  // Each system reads its own form; the other's file would only be missing its suffix.
  const bool batch = kStubLauncher.ends_with(".bat");
  std::ofstream(folder / kStubLauncher, std::ios::binary)
      << (batch ? "@\"" + stub + ".exe\" %*\r\n@exit /b %ERRORLEVEL%\r\n"
                : "#!/bin/sh\n\"" + stub + "\" \"$@\"\nexit $?\n");
  std::filesystem::permissions(folder / kStubLauncher, std::filesystem::perms::owner_all);
}

}  // namespace genostat::test
