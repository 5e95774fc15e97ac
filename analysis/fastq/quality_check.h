// The rule about the characters of a quality line.
#pragma once

#include <cstdint>
#include <optional>

#include "analysis/fastq/fastq_error.h"
#include "analysis/fastq/record.h"

namespace genostat::analysis {

// Why the quality breaks the rule that it holds only '!' to '~', or nothing when it does not. `number` is the
// record's in its file, from 1. Plain and slow: for records that are known to be suspicious.
std::optional<FastqError> qualityDefect(const Record& record, std::uint64_t number);

}  // namespace genostat::analysis
