#include "analysis/metrics/read_lengths.h"

#include <algorithm>

#include "analysis/metrics/sums.h"

namespace genostat::analysis {

void ReadLengths::addToGrown(std::uint64_t length) {
  if (length >= kTableLimit) {
    ++longer_[length];
    return;
  }
  table_.resize(static_cast<std::size_t>(length) + 1);
  ++table_.back();
}

void ReadLengths::merge(const ReadLengths& other) {
  addAll(table_, other.table_);
  for (const auto& [length, count] : other.longer_) {
    longer_[length] += count;
  }
  reads_ += other.reads_;
  bases_ += other.bases_;
}

std::vector<std::pair<std::uint64_t, std::uint64_t>> ReadLengths::byLength() const {
  std::vector<std::pair<std::uint64_t, std::uint64_t>> lengths;
  for (std::uint64_t length = 0; length < table_.size(); ++length) {
    const std::uint64_t count = table_[static_cast<std::size_t>(length)];
    if (count > 0) lengths.emplace_back(length, count);
  }
  lengths.insert(lengths.end(), longer_.begin(), longer_.end());
  return lengths;
}

LengthSummary ReadLengths::summary() const {
  LengthSummary summary{.reads = reads_, .bases = bases_};
  if (reads_ == 0) return summary;
  // The reads in order of length, the two in the middle numbered from 0: the same one for an odd count.
  const std::uint64_t lowerMiddle = (reads_ - 1) / 2;
  const std::uint64_t upperMiddle = reads_ / 2;
  const auto lengths = byLength();
  std::uint64_t seen = 0;
  std::uint64_t middleSum = 0;
  for (const auto& [length, count] : lengths) {
    for (const std::uint64_t middle : {lowerMiddle, upperMiddle}) {
      if (middle >= seen && middle - seen < count) middleSum += length;
    }
    seen += count;
  }
  summary.shortest = lengths.front().first;
  summary.longest = lengths.back().first;
  summary.mean = static_cast<double>(bases_) / static_cast<double>(reads_);
  summary.median = static_cast<double>(middleSum) / 2;
  return summary;
}

std::vector<LengthBin> lengthBins(const ReadLengths& lengths) {
  const auto counts = lengths.byLength();
  std::vector<LengthBin> bins;
  if (counts.empty()) return bins;
  const std::uint64_t shortest = counts.front().first;
  const std::uint64_t longest = counts.back().first;
  const std::uint64_t width = (longest - shortest) / kMaxLengthBins + 1;
  for (std::uint64_t first = shortest; first <= longest; first += width) {
    bins.push_back({first, std::min(first + width - 1, longest), 0});
  }
  for (const auto& [length, reads] : counts) {
    bins[static_cast<std::size_t>((length - shortest) / width)].reads += reads;
  }
  return bins;
}

}  // namespace genostat::analysis
