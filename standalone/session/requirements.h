// What a job needs before it is queued. The module starts jobs in the background and says nothing
// when one cannot be started, so the session looks first.
#pragma once

#include <string>

#include "standalone/services/host_folders.h"
#include "standalone/syntax/command.h"

namespace genostat::standalone {

// Whether a GENOSTAT command submits a job: it has neither PRINT nor DELETE.
bool submitsJob(const Command& command);

// What is missing, as a sentence naming its path; empty when a job can be started.
std::string missingRequirement(const HostFolders& folders);

}  // namespace genostat::standalone
