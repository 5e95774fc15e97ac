// Paths in messages.
#pragma once

#include <filesystem>
#include <string>

#include "common/text/printable_text.h"
#include "platform/path_text.h"

namespace genostat::standalone {

inline std::string quotedPath(const std::filesystem::path& path) {
  return common::quotedName(platform::pathToUtf8(path));
}

}  // namespace genostat::standalone
