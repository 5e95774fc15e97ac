// How many reads there are, and how long.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <vector>

#include "analysis/fastq/record.h"

namespace genostat::analysis {

struct LengthSummary {
  std::uint64_t reads = 0;
  std::uint64_t bases = 0;  // sequence characters, whatever they are
  std::uint64_t shortest = 0;
  std::uint64_t longest = 0;
  double mean = 0;    // 0 without reads, like the median
  double median = 0;  // the mean of the middle two for an even number of reads
};

// Counts reads by length.
class ReadLengths {
 public:
  ReadLengths();

  void add(std::span<const Record> batch);
  LengthSummary summary() const;

 private:
  // A table for the usual lengths; a tree above, where a table could outgrow the reads themselves.
  static constexpr std::uint64_t kTableSize = 1 << 16;

  std::vector<std::uint64_t> table_;
  std::map<std::uint64_t, std::uint64_t> longer_;
  std::uint64_t reads_ = 0;
  std::uint64_t bases_ = 0;
};

}  // namespace genostat::analysis
