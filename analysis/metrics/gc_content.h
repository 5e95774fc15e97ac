// How many G and C each read holds.
//
// Reads of different lengths are made comparable as percentages. A count g of n bases stands for an
// interval of percentages, so that short reads do not leave gaps between the percentages that they can reach;
// each percentage is worth 1 / (number of counts of that length whose interval holds it).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

namespace genostat::analysis {

// By percentage, 0 to 100.
using GcDistribution = std::array<double, 101>;

// How many of a read's first bases are looked at: a multiple of 100 of more than 100, of 1,000 of more than
// 1,000. So only few lengths have to be distinguished.
constexpr std::uint64_t gcLength(std::uint64_t length) {
  if (length <= 100) return length;
  return length <= 1000 ? length - length % 100 : length - length % 1000;
}

class GcCounts {
 public:
  // A read with `g` G and C in its first `n` bases, n = gcLength(read length). Nothing for n = 0.
  void add(std::uint64_t n, std::uint64_t g) {
    if (n > kLongestCounted) {
      claim(claims_[n], n, g, 1);
    } else if (n != 0) {
      std::vector<std::uint64_t>& row = counted_[rowOf(n)];
      if (row.empty()) row.resize(static_cast<std::size_t>(n) + 1);
      ++row[static_cast<std::size_t>(g)];
    }
  }
  void merge(const GcCounts& other);

  // The sum of all reads' weights. The same for the same reads in any order and any parts.
  GcDistribution distribution() const;

 private:
  // Reads up to here are counted by g; of longer ones only the percentages that they claim are kept, so that
  // memory does not grow with n.
  static constexpr std::uint64_t kLongestCounted = 1000;
  // By percentage, how many reads claim it more than claim the one before; modulo 2^64.
  using Claims = std::array<std::uint64_t, 102>;

  static constexpr std::size_t rowOf(std::uint64_t n) {
    return static_cast<std::size_t>(n <= 100 ? n : 99 + n / 100);
  }
  static void claim(Claims& claims, std::uint64_t n, std::uint64_t g, std::uint64_t reads);

  std::array<std::vector<std::uint64_t>, 110> counted_;  // rowOf(n), then g
  std::map<std::uint64_t, Claims> claims_;               // by n
};

// How near the reads' GC content comes to a normal distribution.
//
// Reads of one genome, cut at random, differ in GC content around that of the genome. A second hill or a
// shoulder points to something else among them: another organism, adapters, ribosomal RNA.
struct GcSummary {
  GcDistribution observed{};
  GcDistribution model{};  // the normal distribution around the observed mode, for as many reads
  // Sum of the differences between the two in percent of the reads; may be not-a-number.
  double deviation = 0;
};

// Nothing for a distribution without reads.
std::optional<GcSummary> fitGcModel(const GcDistribution& observed);

}  // namespace genostat::analysis
