#include "entry/record/genomic_parser_exception.h"

#include <array>

namespace {

constexpr std::array<const char*, 23> kTexts = {
    "Unknown error occurred",
    "Syntax error in command",
    "Invalid command",
    "Missing required parameter",
    "Invalid parameter value",
    "File not found",
    "Invalid file path",
    "Invalid folder path",
    "Error processing FASTQ file",
    "Invalid adapter type",
    "Missing custom adapter sequence",
    "Invalid variable name",
    "Duplicate variable name",
    "Invalid numeric value",
    "Value out of range",
    "Job queue threshold exceeded. Maximum allowed jobs in queue is ",
    "Maximum limit for automatic job names exceeded. It should not be more than 100",
    "Invalid job name",
    "Duplicate job name",
    "GENOSTAT procedure is not supported in command-line mode. Please use the interactive ZORV Statistics "
    "client.",
    "Error generating automatic job name",
    "Incompatible parameters",
    "Mutually exclusive parameters"};
static_assert(kTexts.size() == static_cast<std::size_t>(CommandErrorCode::MutuallyExclusiveParameters) + 1);

}  // namespace

const char* commandErrorText(CommandErrorCode code) {
  const auto index = static_cast<std::size_t>(code);
  return index < kTexts.size() ? kTexts[index] : "Unspecified error";
}

GenomicParserException::GenomicParserException(CommandErrorCode code, const std::string& detail)
    : code_(code), message_(commandErrorText(code)) {
  if (!detail.empty()) message_ += ": " + detail;
}
