// What the reads of benchmark inputs are cut from: a genome, tracks of qualities, and chance.
//
// The same seed gives the same reads on every run; nothing here depends on a library's distributions.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace genostat::bench {

// xoshiro256**, seeded through splitmix64.
class Random {
 public:
  explicit Random(std::uint64_t seed);

  std::uint64_t bits();
  // 0 to `bound` - 1; `bound` up to 2^32.
  std::size_t below(std::size_t bound) { return static_cast<std::size_t>(((bits() >> 32) * bound) >> 32); }
  // 0 up to, not including, 1.
  double unit() { return static_cast<double>(bits() >> 11) * 0x1p-53; }
  bool chance(double probability) { return unit() < probability; }
  double normal(double mean, double deviation);

 private:
  std::array<std::uint64_t, 4> state_;
};

// Bases whose share of G and C changes every few thousand bases, as in real genomes.
std::string makeGenome(Random& random, std::size_t size);

// Replaces `bases` by its reverse complement.
void reverseComplement(std::string& bases);

// The qualities of one read, with the places where its bases may be wrong.
struct QualityTrack {
  struct WeakBase {
    std::uint32_t position;
    float errorRate;
  };
  std::string codes;           // as they stand in a file, offset 33
  std::vector<WeakBase> weak;  // below quality 20
};

// Four levels (2, 11, 25, 37): long stretches of the best one, broken by short weak ones that grow more
// frequent towards the end.
QualityTrack binnedTrack(Random& random, std::size_t length);

// Forty levels: they wander around a curve that falls towards the end.
QualityTrack fineTrack(Random& random, std::size_t length);

// Long reads: levels from 1 to 50 that wander around `level` all along. Weak bases are not listed.
QualityTrack longTrack(Random& random, std::size_t length, double level);

}  // namespace genostat::bench
