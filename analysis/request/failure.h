// How an analysis fails: the exit code, what it is about, and a sentence for people.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace genostat::analysis {

// The program's exit codes. Whoever starts the program chooses its message text by them.
enum class ExitCode : int {
  Success = 0,
  General = 1,
  FileNotFound = 2,
  InvalidJson = 3,
  InvalidConfiguration = 4,
  InvalidFastq = 5,
  PermissionDenied = 7,
  NoFastqFiles = 8,
  OutputFailed = 9,
  InvalidAdapter = 10,
  OutOfMemory = 12,
  WrongArguments = 13,
};

// Ends the job. `subject` is the path, name or sequence that the failure is about; what() is
// a full sentence without a final period. Both are UTF-8 as far as the system's names are.
class Failure : public std::runtime_error {
 public:
  Failure(ExitCode code, std::string subject, const std::string& sentence)
      : std::runtime_error(sentence), code_(code), subject_(std::move(subject)) {}

  ExitCode code() const { return code_; }
  const std::string& subject() const { return subject_; }

 private:
  ExitCode code_;
  std::string subject_;
};

}  // namespace genostat::analysis
