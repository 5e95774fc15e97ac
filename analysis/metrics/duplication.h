// How many reads repeat others.
//
// Reads are told apart by their first kKeyLength characters. Only the first kMaxKeys distinct keys of a file
// are collected, from then on reads of other keys are passed over; how often the keys at each level of
// duplication were missed by that is estimated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace genostat::analysis {

inline constexpr std::size_t kKeyLength = 50;
inline constexpr std::size_t kMaxKeys = 100'000;

struct DuplicationCounts {
  std::uint64_t reads = 0;  // all of the file
  // How many of them had been seen when the collection of keys last grew, or counted a known key before it
  // was full.
  std::uint64_t limit = 0;
  // In order of their first read, in upper case, with the number of their reads.
  std::vector<std::pair<std::string, std::uint64_t>> keys;
};

}  // namespace genostat::analysis
