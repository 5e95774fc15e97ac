// What was seen at one position of the reads.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace genostat::analysis {

// Upper and lower case letters count alike; everything else than these five letters is "other".
enum Base : std::size_t { kBaseA, kBaseC, kBaseG, kBaseT, kBaseN, kBaseOther, kBaseCount };

// Codes of quality characters lie below.
inline constexpr std::size_t kQualityCodes = 128;

struct PositionCounts {
  std::array<std::uint64_t, kBaseCount> bases{};
  std::array<std::uint64_t, kQualityCodes> qualities{};  // by character code
};

}  // namespace genostat::analysis
