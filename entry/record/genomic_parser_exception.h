// An error in a GENOSTAT command, found after the host's parser has accepted its form.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

enum class CommandErrorCode : std::uint32_t {
  UnknownError = 0,
  SyntaxError = 1,
  InvalidCommand = 2,
  MissingParameter = 3,
  InvalidParameterValue = 4,
  FileNotFound = 5,
  InvalidFilePath = 6,
  InvalidFolderPath = 7,
  FastqError = 8,
  InvalidAdapterType = 9,
  MissingAdapterSequence = 10,
  InvalidVariableName = 11,
  DuplicateVariableName = 12,
  InvalidNumericValue = 13,
  ValueOutOfRange = 14,
  QueueFull = 15,
  TooManyAutomaticNames = 16,
  InvalidJobName = 17,
  DuplicateJobName = 18,
  CommandLineMode = 19,
  AutomaticNameFailed = 20,
  IncompatibleParameters = 21,
  MutuallyExclusiveParameters = 22
};

// The text of a code without a detail; "Unspecified error" for a value outside the enumeration.
const char* commandErrorText(CommandErrorCode code);

class GenomicParserException : public std::exception {
 public:
  // The message is the code's text, followed by ": " and the detail if there is one.
  explicit GenomicParserException(CommandErrorCode code, const std::string& detail = {});
  ~GenomicParserException() override = default;

  const char* what() const noexcept override { return message_.c_str(); }
  CommandErrorCode code() const { return code_; }

 private:
  CommandErrorCode code_;
  std::string message_;
};
