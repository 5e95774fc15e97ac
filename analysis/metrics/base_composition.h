// Which bases the reads are made of.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "analysis/fastq/record.h"

namespace genostat::analysis {

struct BaseSummary {
  std::uint64_t gc = 0;  // G and C, in upper and lower case
  std::uint64_t at = 0;  // A and T

  // 100 (G + C) / (A + C + G + T); nothing when there is none of the four.
  std::optional<double> gcPercent() const;
};

class BaseComposition {
 public:
  void add(std::span<const Record> batch);
  BaseSummary summary() const { return counts_; }

 private:
  BaseSummary counts_;
};

}  // namespace genostat::analysis
