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
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "analysis/metrics/adapters.h"

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

// A single sequence that makes up a noticeable part of the reads.
struct OverrepresentedSequence {
  std::string sequence;  // the first characters of its reads
  std::uint64_t reads = 0;
  double percent = 0;  // of all reads
  std::string origin;  // the adapter that it holds; empty when none is known
};

// Those above 0.1 % of all reads, the most frequent first, then in order of the file. An origin is looked for
// among `probes` first, then among all known ones.
std::vector<OverrepresentedSequence> overrepresentedSequences(const DuplicationCounts& counts,
                                                              const std::vector<Probe>& probes);

}  // namespace genostat::analysis
