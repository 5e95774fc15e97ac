// Short sequences to look for, in the form that the search wants them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace genostat::analysis {

// Up to eight probes of 1 to 12 letters A, C, G, T, N; N stands for any of these five.
class ProbeSet {
 public:
  static constexpr std::size_t kMost = 8;
  static constexpr std::size_t kLongest = 12;
  // The offsets at which the filter looks: with four letters and eight probes one offset in 512 passes by
  // chance.
  static constexpr std::array<std::size_t, 6> kFilterOffsets = {0, 2, 4, 6, 8, 11};

  explicit ProbeSet(std::vector<std::string> probes);

  std::size_t size() const { return probes_.size(); }
  std::size_t shortest() const { return shortest_; }

  // For each of the filter's offsets: by the low four bits of a letter, which in A, C, G, T and N differ, the
  // probes that may have it there, one bit each.
  const std::array<std::array<std::uint8_t, 16>, 6>& filter() const { return filter_; }

  // Whether a probe stands at the front of `text`, of which `size` letters (in any case) belong to the read.
  bool matches(std::size_t probe, const char* text, std::size_t size) const;

 private:
  std::vector<std::string> probes_;
  std::size_t shortest_ = kLongest;
  std::array<std::array<std::uint8_t, 16>, 6> filter_ = {};
};

// A probe's first occurrence in a read.
struct ProbeHit {
  std::uint32_t record;  // its number within the batch
  std::uint32_t probe;
  std::uint64_t offset;
};

}  // namespace genostat::analysis
