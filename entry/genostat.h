// The module's entry: what the host calls for each GENOSTAT command.
#pragma once

#include "platform/export.h"

// Command thread only. Submits a job, shows a job's summary or removes a job's result file, as the
// running command says, and returns at once. Command errors are shown to the user. Exceptions of the host's
// own functions pass through unless they come from reading the command, and so does std::system_error
// when no worker thread can be had for a submitted job, which then stays queued.
extern "C" GENOSTAT_EXPORT void GENOSTAT();
