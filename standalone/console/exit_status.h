// How the program ends. An interrupted session ends it with 130 by itself.
#pragma once

namespace genostat::standalone {

constexpr int kSuccess = 0;
constexpr int kFailure = 1;     // a command or a job failed, or output could not be written
constexpr int kUsageError = 2;  // the command line cannot be followed
constexpr int kInterrupted = 130;

}  // namespace genostat::standalone
