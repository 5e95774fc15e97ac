#include "common/text/ascii.h"

#include <algorithm>

namespace genostat::common {

std::string upperCase(std::string_view text) {
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), upperLetter);
  return upper;
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), lowerLetter);
  return lower;
}

bool equalsIgnoreCase(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, upperLetter, upperLetter);
}

bool startsWithIgnoreCase(std::string_view text, std::string_view beginning) {
  return equalsIgnoreCase(text.substr(0, beginning.size()), beginning);
}

}  // namespace genostat::common
