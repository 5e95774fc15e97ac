// Numbers as text, independent of any locale.
#pragma once

#include <string>

namespace genostat::common {

// With exactly so many decimals, 0 to 17.
std::string fixedText(double value, int decimals);

// The fewest digits that give back the value, without an exponent: "100", "100.5".
std::string shortestText(double value);

// A count in at most five columns: "9999", "24.3k", "6.81G". Empty for what is not finite.
std::string shortCount(double count);

}  // namespace genostat::common
