// Numbers in generated text, the same in every C and C++ locale.
#pragma once

#include <string>

namespace genostat {

// Fixed notation with so many decimals, as the C format "%.*f" gives it in the C locale.
std::string fixedText(double value, int decimals);

}  // namespace genostat
