#pragma once

#include <string>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// A number as it is shown, whatever the locale: fixed notation with the format's decimals. Numbers
// too large for it, and numbers that would wrongly look like zero, are in scientific notation;
// without a leading zero (significances) .000 stands. Empty for what is not finite.
std::string formatNumber(double value, const NumberFormat& format);

// Whether a text is one plain number: [+-]digits[.digits], nothing else.
bool looksLikeNumber(const std::string& text);

}  // namespace genostat::standalone
