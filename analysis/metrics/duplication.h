// How many reads repeat others.
//
// Reads are distinguished by their first kKeyLength characters. Only the first kMaxKeys distinct keys of a
// file are collected, from then on reads of other keys are passed over. How many keys of each level of
// duplication were missed by that is estimated: a key that occurs d times in the file had none of its reads
// among the first `limit` with a probability that is easily computed, and as many more keys of its level must
// exist.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace genostat::analysis {

inline constexpr std::size_t kKeyLength = 50;
inline constexpr std::size_t kMaxKeys = 100'000;

struct DuplicationCounts {
  std::uint64_t reads = 0;  // all of the file
  // How many of them had been seen when the collection last grew or, before it was full, met a known key.
  std::uint64_t limit = 0;
  // In order of their first read, in upper case, with the number of their reads. The texts belong to whoever
  // collected them.
  std::vector<std::pair<std::string_view, std::uint64_t>> keys;
};

// Reads whose key occurs so often, as estimated for the whole file.
struct DuplicationLevel {
  std::uint64_t from = 0;      // occurrences; up to the next level's
  double readsPercent = 0;     // of all reads
  double distinctPercent = 0;  // of the distinct keys
};

struct DuplicationSummary {
  // Percentage of the reads that would be left if each key occurred once.
  double deduplicatedPercent = 100;
  std::vector<DuplicationLevel> levels;
};

DuplicationSummary estimateDuplication(const DuplicationCounts& counts);

}  // namespace genostat::analysis
