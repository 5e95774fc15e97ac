// The level of all qualities together.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "analysis/fastq/record.h"

namespace genostat::analysis {

struct QualitySummary {
  std::uint64_t characters = 0;
  std::uint64_t sum = 0;        // of the characters' codes
  unsigned char lowest = 0xFF;  // code of the lowest character

  // What a character's code exceeds its Phred value by: 33, or 64 in a file whose lowest character is '@' or
  // above.
  int offset() const { return lowest < 64 ? 33 : 64; }
  // Over all bases; nothing without bases.
  std::optional<double> meanPhred() const;
};

class QualityLevel {
 public:
  void add(std::span<const Record> batch);
  QualitySummary summary() const { return counts_; }

 private:
  QualitySummary counts_;
};

}  // namespace genostat::analysis
