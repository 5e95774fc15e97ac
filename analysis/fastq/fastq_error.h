// A FASTQ file that breaks the rules, and where.
#pragma once

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <utility>

#include "analysis/fastq/record.h"

namespace genostat::analysis {

// what() reads "record 3, line 12: the quality has 24 characters, the sequence 25", without the file's
// name; for a file without any record it is the bare sentence.
// Copies share nothing, unlike those of the standard exceptions: threads hand them on.
class FastqError : public std::exception {
 public:
  explicit FastqError(std::string sentence) : sentence_(std::move(sentence)) {}

  // Records and lines are counted from 1.
  FastqError(std::uint64_t record, std::uint64_t line, const std::string& sentence)
      : FastqError("record " + std::to_string(record) + ", line " + std::to_string(line) + ": " + sentence) {
    record_ = record;
  }

  const char* what() const noexcept override { return sentence_.c_str(); }

  // Which of two errors comes first in the file; 0 for the bare sentence.
  std::uint64_t record() const { return record_; }

 private:
  std::string sentence_;
  std::uint64_t record_ = 0;
};

// A character as a message shows it: "'A'", "a line end", "character code 7".
std::string characterText(char c);

// Why a record's quality breaks the rule that it holds only '!' to '~', or nothing when it does not. `number`
// is the record's in its file, from 1. Plain and slow: for records that are known to be suspicious.
std::optional<FastqError> qualityDefect(const Record& record, std::uint64_t number);

}  // namespace genostat::analysis
