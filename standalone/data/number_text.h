// Numbers in data files.
#pragma once

#include <optional>
#include <string_view>

namespace genostat::standalone {

struct ParsedNumber {
  double value = 0;
  int decimals = 0;  // digits behind the decimal sign
};

// A number in C notation with `decimal` as its decimal sign, whatever the locale: an optional
// sign, digits, an optional exponent. Words such as "nan" and "inf", hexadecimal digits and
// numbers beyond the range of double are no numbers; what is too small for double is 0.
std::optional<ParsedNumber> parseNumber(std::string_view text, char decimal);

// Without blanks and tabs on both sides.
std::string_view trimBlanks(std::string_view text);

}  // namespace genostat::standalone
