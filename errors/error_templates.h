// The message of each exit code of the analysis.
#pragma once

#include <cstdint>

namespace genostat {

// Exit codes of the analysis that have a message of their own.
enum class AnalysisExitCode : std::uint32_t {
  Success = 0,
  GeneralError = 1,
  FileNotFound = 2,
  InvalidJson = 3,
  InvalidConfiguration = 4,
  FastqError = 5,
  MissingDependencies = 6,
  PermissionDenied = 7,
  NoFastqFiles = 8,
  OutputError = 9,
  InvalidAdapter = 10,
  ParallelProcessingError = 11,
  OutOfMemory = 12,
  InvalidArguments = 13
};

// A message is the localised text of `key`, directly followed by `placeholder`.
struct ErrorTemplate {
  const char* key;
  const char* placeholder;
};

// "Unknown error occurred" for 14 and above, which takes in every negative code.
ErrorTemplate errorTemplate(std::int32_t exitCode);

}  // namespace genostat
