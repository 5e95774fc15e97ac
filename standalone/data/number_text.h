// Numbers in data files.
#pragma once

#include <cstddef>
#include <string_view>

namespace genostat::standalone {

// Small enough to travel in registers.
struct ParsedNumber {
  double value = 0;
  int decimals = -1;  // digits after the decimal sign when written without an exponent, at most 16

  // False: the text is no number.
  explicit operator bool() const { return decimals >= 0; }
};

// A number in C notation with `decimal` as its decimal sign, whatever the locale: an optional
// sign, digits, an optional exponent. The value is the double nearest to what is written. Words
// such as "nan" and "inf", hexadecimal digits and numbers beyond the range of double are no
// numbers; what is too small for double is 0.
ParsedNumber parseNumber(std::string_view text, char decimal);

// The same for a text after which so many more bytes can be read, whatever they are.
inline constexpr std::size_t kNumberPadding = 8;
ParsedNumber parsePaddedNumber(std::string_view text, char decimal);

// Without blanks and tabs on both sides.
std::string_view trimBlanks(std::string_view text);

}  // namespace genostat::standalone
