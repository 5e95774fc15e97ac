// What is to be done about a job that has ended: how it went, its files, its copy.
#pragma once

#include <filesystem>
#include <mutex>
#include <set>
#include <string>

#include "standalone/services/client_message.h"

namespace genostat::standalone {

// Why an analysis failed: the sentence in the error-details file that it left beside its result
// file, or else what the end message says. Empty when it did not fail; then the message's syntax
// imports the results.
std::string failureOf(const ClientMessage& ended);

// Removes what an analysis may leave beside its result file: the error details and its progress. Missing
// files are fine.
void removeLeftovers(const std::filesystem::path& csv);

// The names and the files of jobs whose messages have come, whether or not anybody has taken them.
// Thread-safe.
//
// A job's file names come from the clock, and a job may get the names of an earlier one whose files
// are gone. So files are looked after while the sender waits in its post: then no later job runs.
class PostedJobs {
 public:
  // On the sender's thread, before anybody else sees the message: says in it why an analysis failed, and
  // removes what the analysis left.
  void onPost(ClientMessage& message);

  // Every job name that a message has named so far.
  std::set<std::string> names() const;
  // The syntax of the job with this result, spelled as in its message, has run: the name may come to mean
  // another program's file.
  void forgetResult(const std::string& csv);
  // Removes the results whose syntax has not run.
  void removeResults() const;
  // Removes what the analyses of cancelled jobs left. To be called when no job runs.
  void removeCancelledLeftovers();

 private:
  mutable std::mutex mutex_;  // guards all below
  std::set<std::string> names_;
  std::set<std::string> results_;    // whose syntax has not run
  std::set<std::string> cancelled_;  // whose analyses may still have to end
};

// Gives each job of a run a file name of its own.
class CopyNames {
 public:
  // The job's name made safe for a file name on any system; `fallback` for a nameless job.
  // "_2", "_3" and so on are appended to names given before. All UTF-8, without a suffix.
  std::string next(const std::string& jobName, const std::string& fallback);

 private:
  std::set<std::string> given_;  // in upper case, as some systems take no account of case
};

}  // namespace genostat::standalone
