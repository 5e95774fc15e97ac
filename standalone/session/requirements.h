// What a job needs before it is queued. The module starts jobs in the background and says nothing
// when one cannot be started, so the session looks first.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "standalone/services/host_folders.h"
#include "standalone/syntax/command.h"

namespace genostat::standalone {

// Whether a GENOSTAT command submits a job: it has neither PRINT nor DELETE.
bool submitsJob(const Command& command);

// What is missing, as a sentence naming its path; empty when a job can be started.
std::string missingRequirement(const HostFolders& folders);

// About how many characters the parameters have that a launcher gets for these files and folders: the module
// hands them over as one argument, JSON in base64.
std::size_t parameterSize(std::span<const std::string> names);
// The same for a command that submits a job.
std::size_t parameterSize(const Command& command);

// Why a job was not started that the module had taken, as far as the host can see afterwards; a sentence.
// `shownName` is the job's name as it is shown.
std::string whyNotStarted(const std::string& shownName, std::size_t parameterSize,
                          const HostFolders& folders);

}  // namespace genostat::standalone
