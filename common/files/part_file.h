// Part files: files on their way, written under a passing name and then moved to their own in one step.
//
// The passing name is "<number>.genostat-part". Whoever writes it keeps it locked, so any later run can see
// which ones nobody will finish.
#pragma once

#include <filesystem>

#include "platform/locked_file.h"

namespace genostat::common {

// Creates a part file in a folder; an empty path is the current one. Failures as in LockedFile.
platform::LockedFile createPart(const std::filesystem::path& folder);

// Makes sure that a file could be written in this folder or, when it is missing, where it would be made.
// Throws as above.
void tryFolder(const std::filesystem::path& folder);

// Removes the part files in a folder whose writers are no longer alive. Does what it can and reports no
// failure.
void removeAbandonedParts(const std::filesystem::path& folder);

}  // namespace genostat::common
