// How the program ends. An interrupted session ends it with 130 by itself.
#pragma once

#include "common/cli/command_line.h"

namespace genostat::standalone {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;  // a command or a job failed, or output could not be written
constexpr int kUsageError = common::kWrongUsage;
constexpr int kInterrupted = 130;

}  // namespace genostat::standalone
