#include "bench/read_model.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace genostat::bench {

namespace {

constexpr int kOffset = 33;
constexpr int kWeak = 20;

char code(double quality, int lowest, int highest) {
  return static_cast<char>(kOffset + std::clamp(static_cast<int>(quality), lowest, highest));
}

void listWeakBases(QualityTrack& track) {
  for (std::size_t i = 0; i < track.codes.size(); ++i) {
    const int quality = track.codes[i] - kOffset;
    if (quality >= kWeak) continue;
    const double rate = std::pow(10.0, -quality / 10.0);
    track.weak.push_back({static_cast<std::uint32_t>(i), static_cast<float>(rate)});
  }
}

}  // namespace

Random::Random(std::uint64_t seed) {
  for (std::uint64_t& word : state_) {
    seed += 0x9E3779B97F4A7C15U;
    word = (seed ^ (seed >> 30)) * 0xBF58476D1CE4E5B9U;
    word = (word ^ (word >> 27)) * 0x94D049BB133111EBU;
    word ^= word >> 31;
  }
}

std::uint64_t Random::bits() {
  const auto rotate = [](std::uint64_t value, int by) { return (value << by) | (value >> (64 - by)); };
  const std::uint64_t result = rotate(state_[1] * 5, 7) * 9;
  const std::uint64_t shifted = state_[1] << 17;
  state_[2] ^= state_[0];
  state_[3] ^= state_[1];
  state_[1] ^= state_[2];
  state_[0] ^= state_[3];
  state_[2] ^= shifted;
  state_[3] = rotate(state_[3], 45);
  return result;
}

double Random::normal(double mean, double deviation) {
  // Box and Muller's transformation; the logarithm must not see a zero.
  const double radius = std::sqrt(-2 * std::log(1 - unit()));
  return mean + deviation * radius * std::cos(2 * std::numbers::pi * unit());
}

std::string makeGenome(Random& random, std::size_t size) {
  constexpr std::size_t kBlock = 4000;
  std::string genome(size, 'A');
  double gc = 0;
  for (std::size_t i = 0; i < size; ++i) {
    if (i % kBlock == 0) gc = std::clamp(random.normal(0.41, 0.055), 0.2, 0.75);
    const bool strong = random.chance(gc);
    genome[i] = (strong ? "CG" : "AT")[random.below(2)];
  }
  return genome;
}

void reverseComplement(std::string& bases) {
  std::reverse(bases.begin(), bases.end());
  for (char& base : bases) {
    // Bit 1 distinguishes C and G from A and T; one pattern of bits turns each of a pair into the other.
    base = static_cast<char>(base ^ ((base & 2) != 0 ? 'C' ^ 'G' : 'A' ^ 'T'));
  }
}

QualityTrack binnedTrack(Random& random, std::size_t length) {
  const double trouble = random.chance(0.008) ? 0.4 : 0.015;
  // Some reads lose the signal somewhere.
  const std::size_t lost = random.chance(0.05) ? random.below(length) : length;
  QualityTrack track;
  bool weak = false;
  for (std::size_t i = 0; i < length; ++i) {
    const double along = static_cast<double>(i) / static_cast<double>(length);
    double probability = trouble + 0.09 * along * along * along;
    if (i >= lost) probability += 0.4;
    if (weak) probability += 0.25;
    weak = random.chance(probability);
    const double which = random.unit();
    const int quality = !weak ? 37 : which < 0.55 ? 25 : which < 0.96 ? 11 : 2;
    track.codes += code(quality, 2, 37);
  }
  listWeakBases(track);
  return track;
}

QualityTrack fineTrack(Random& random, std::size_t length) {
  const double start = random.chance(0.02) ? random.normal(21, 4) : random.normal(38.5, 1);
  const double fall = std::abs(random.normal(5, 4));
  // The ends of some reads are marked as worthless.
  const std::size_t end = random.chance(0.04) ? length - random.below(length / 4 + 1) : length;
  QualityTrack track;
  double value = start;
  for (std::size_t i = 0; i < length; ++i) {
    const double along = static_cast<double>(i) / static_cast<double>(length);
    double level = start - fall * along * along;
    if (i < 5) level = std::min(level, 33 + 0.5 * static_cast<double>(i));
    value += 0.5 * (level - value) + random.normal(0, 1.3);
    const double dip = random.chance(0.025) ? 4 + 20 * random.unit() : 0;
    track.codes += i < end ? code(value - dip, 2, 41) : code(2, 2, 41);
  }
  listWeakBases(track);
  return track;
}

QualityTrack longTrack(Random& random, std::size_t length, double level) {
  QualityTrack track;
  double value = level;
  for (std::size_t i = 0; i < length; ++i) {
    value += 0.2 * (level - value) + random.normal(0, 3);
    track.codes += code(value, 1, 50);
  }
  return track;
}

}  // namespace genostat::bench
