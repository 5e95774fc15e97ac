// Folders and file names of a run. Paths are byte strings in the system's narrow encoding, taken
// as they are; slash and backslash both separate.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace genostat {

// The host's folder that holds the launcher, the scripts and the string tables. Ends in a separator; none
// when the host has no path finder for it. Any thread.
std::optional<std::string> installationFolder();

// `base`, the system's separator unless base is empty or ends in one, and `name`.
std::string joinPath(const std::string& base, const std::string& name);

// The folder part of a path with its final separator; empty when there is none.
std::string getFolderPath(const std::string& path);

// A path in `folder` for a result file of the time T, in seconds since 1970 UTC: T.csv, or the first of
// T_1.csv to T_999.csv that does not exist; T_999.csv when all exist. Nothing is created. Empty when
// the folder does not exist or memory runs out.
std::string generateUniqueFilename(const std::string& folder, std::int64_t time);
// The same for the present time.
std::string generateUniqueFilename(const std::string& folder);

}  // namespace genostat
