// The message of each exit code of the analysis.
#pragma once

#include <cstdint>

namespace genostat {

// A message is the localised text of `key`, directly followed by `placeholder`.
struct ErrorTemplate {
  const char* key;
  const char* placeholder;
};

// "Unknown error occurred" for 14 and above, which takes in every negative code.
ErrorTemplate errorTemplate(std::int32_t exitCode);

}  // namespace genostat
