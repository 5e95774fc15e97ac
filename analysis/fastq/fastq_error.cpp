#include "analysis/fastq/fastq_error.h"

#include <algorithm>

namespace genostat::analysis {

std::string characterText(char c) {
  if (c == '\n' || c == '\r') return "a line end";
  const auto code = static_cast<unsigned char>(c);
  if (code > ' ' && code <= '~') return std::string("'") + c + "'";
  return "character code " + std::to_string(code);
}

std::optional<FastqError> qualityDefect(const Record& record, std::uint64_t number) {
  const auto wrong = std::find_if_not(record.quality.begin(), record.quality.end(),
                                      [](char c) { return c >= '!' && c <= '~'; });
  if (wrong == record.quality.end()) return std::nullopt;
  return FastqError(number, record.line + 3,
                    "the quality has " + characterText(*wrong) + " at position " +
                        std::to_string(wrong - record.quality.begin() + 1) + "; allowed are '!' to '~'");
}

}  // namespace genostat::analysis
