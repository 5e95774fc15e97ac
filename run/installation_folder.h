// The host's folder that holds the launcher, the scripts and the string tables.
#pragma once

#include <string>

namespace genostat {

// Ends in a separator; empty when the host names no such folder. Any thread.
std::string installationFolder();

}  // namespace genostat
