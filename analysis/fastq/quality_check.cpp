#include "analysis/fastq/quality_check.h"

#include <algorithm>

namespace genostat::analysis {

std::optional<FastqError> qualityDefect(const Record& record, std::uint64_t number) {
  const auto wrong = std::find_if_not(record.quality.begin(), record.quality.end(),
                                      [](char c) { return c >= '!' && c <= '~'; });
  if (wrong == record.quality.end()) return std::nullopt;
  return FastqError(number, record.line + 3,
                    "the quality has " + characterText(*wrong) + " at position " +
                        std::to_string(wrong - record.quality.begin() + 1) + "; allowed are '!' to '~'");
}

}  // namespace genostat::analysis
