// What is to be done about a job that has ended: how it went, its files, its copy.
#pragma once

#include <filesystem>
#include <set>
#include <string>

#include "standalone/services/client_message.h"

namespace genostat::standalone {

// Why an analysis failed: the sentence in the error-details file that it left beside its result
// file, or else what the end message tells. Empty when it did not fail; then the message's syntax
// imports the results.
std::string failureOf(const ClientMessage& ended);

// Removes what an analysis may leave beside its result file: the error details, its progress, and unfinished
// results of analyses that have ended. Missing files are fine.
void removeLeftovers(const std::filesystem::path& csv);

// Gives each job of a run a file name of its own.
class CopyNames {
 public:
  // The job's name made safe for a file name on any system; `fallback` for a nameless job.
  // "_2", "_3" and so on are appended to names given before. All UTF-8, without a suffix.
  std::string next(const std::string& jobName, const std::string& fallback);

 private:
  std::set<std::string> given_;  // in upper case, as some systems do not tell case apart
};

}  // namespace genostat::standalone
