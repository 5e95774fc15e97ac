// How many reads there are, and how long.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

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
  void add(std::uint64_t length) {
    ++reads_;
    bases_ += length;
    if (length < table_.size()) {
      ++table_[static_cast<std::size_t>(length)];
    } else {
      addToGrown(length);
    }
  }
  void merge(const ReadLengths& other);

  std::uint64_t reads() const { return reads_; }
  LengthSummary summary() const;
  // Every length that occurs with the number of its reads, ascending.
  std::vector<std::pair<std::uint64_t, std::uint64_t>> byLength() const;

 private:
  // A table for the usual lengths, as long as the longest of them needs; a tree above, where a table could
  // outgrow the reads themselves.
  static constexpr std::uint64_t kTableLimit = 1 << 16;

  void addToGrown(std::uint64_t length);

  std::vector<std::uint64_t> table_;
  std::map<std::uint64_t, std::uint64_t> longer_;
  std::uint64_t reads_ = 0;
  std::uint64_t bases_ = 0;
};

// Reads by length, coarsely enough to show.
struct LengthBin {
  std::uint64_t shortest = 0;
  std::uint64_t longest = 0;  // included
  std::uint64_t reads = 0;

  friend bool operator==(const LengthBin&, const LengthBin&) = default;
};

// At most kMaxLengthBins bins of equal width from the shortest to the longest read; the last may be cut off.
inline constexpr std::uint64_t kMaxLengthBins = 200;
std::vector<LengthBin> lengthBins(const ReadLengths& lengths);

}  // namespace genostat::analysis
