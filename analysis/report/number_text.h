// Numbers as the result shows them: independent of any locale.
#pragma once

#include <cstdint>
#include <string>

namespace genostat::analysis {

std::string integerText(std::uint64_t value);

// With exactly so many decimals, 0 to 17.
std::string fixedText(double value, int decimals);

// The fewest digits that give back the value, without an exponent: "100", "100.5".
std::string shortestText(double value);

}  // namespace genostat::analysis
