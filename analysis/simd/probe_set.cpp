#include "analysis/simd/probe_set.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "common/text/ascii.h"

namespace genostat::analysis {

namespace {

constexpr std::string_view kLetters = "ACGTN";

bool letterMatches(char probe, char letter) {
  const char upper = common::upperLetter(letter);
  return probe == 'N' ? kLetters.find(upper) != std::string_view::npos : probe == upper;
}

}  // namespace

ProbeSet::ProbeSet(std::vector<std::string> probes) : probes_(std::move(probes)) {
  for (std::size_t i = 0; i < probes_.size(); ++i) {
    const std::string& probe = probes_[i];
    shortest_ = std::min(shortest_, probe.size());
    for (std::size_t at = 0; at < kFilterOffsets.size(); ++at) {
      const std::size_t offset = kFilterOffsets[at];
      for (std::size_t nibble = 0; nibble < 16; ++nibble) {
        const bool beyond = offset >= probe.size();
        const bool may = beyond || std::any_of(kLetters.begin(), kLetters.end(), [&](char letter) {
                           return (static_cast<unsigned char>(letter) & 15U) == nibble &&
                                  letterMatches(probe[offset], letter);
                         });
        if (may) filter_[at][nibble] = static_cast<std::uint8_t>(filter_[at][nibble] | (1U << i));
      }
    }
  }
}

bool ProbeSet::matches(std::size_t probe, const char* text, std::size_t size) const {
  const std::string& letters = probes_[probe];
  return letters.size() <= size && std::equal(letters.begin(), letters.end(), text, letterMatches);
}

}  // namespace genostat::analysis
