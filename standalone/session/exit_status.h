// How the program ends.
#pragma once

#include "common/cli/command_line.h"

namespace genostat::standalone {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;  // a command or a job failed, or output could not be written
constexpr int kUsageError = common::kWrongUsage;
constexpr int kInterrupted = 130;  // the session ends the program with it by itself

}  // namespace genostat::standalone
