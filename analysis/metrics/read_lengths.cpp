#include "analysis/metrics/read_lengths.h"

namespace genostat::analysis {

ReadLengths::ReadLengths() : table_(kTableSize) {}

void ReadLengths::add(std::span<const Record> batch) {
  reads_ += batch.size();
  for (const Record& record : batch) {
    const std::uint64_t length = record.sequence.size();
    bases_ += length;
    if (length < kTableSize) {
      ++table_[length];
    } else {
      ++longer_[length];
    }
  }
}

LengthSummary ReadLengths::summary() const {
  LengthSummary summary{.reads = reads_, .bases = bases_};
  if (reads_ == 0) return summary;
  // The reads in order of length, the two in the middle numbered from 0: the same one for an odd count.
  const std::uint64_t lowerMiddle = (reads_ - 1) / 2;
  const std::uint64_t upperMiddle = reads_ / 2;
  std::uint64_t seen = 0;
  std::uint64_t middleSum = 0;
  const auto visit = [&](std::uint64_t length, std::uint64_t count) {
    if (count == 0) return;
    if (seen == 0) summary.shortest = length;
    summary.longest = length;
    for (const std::uint64_t middle : {lowerMiddle, upperMiddle}) {
      if (middle >= seen && middle - seen < count) middleSum += length;
    }
    seen += count;
  };
  for (std::uint64_t length = 0; length < kTableSize; ++length) {
    visit(length, table_[length]);
  }
  for (const auto& [length, count] : longer_) {
    visit(length, count);
  }
  summary.mean = static_cast<double>(bases_) / static_cast<double>(reads_);
  summary.median = static_cast<double>(middleSum) / 2;
  return summary;
}

}  // namespace genostat::analysis
