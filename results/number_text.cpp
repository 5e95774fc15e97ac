#include "results/number_text.h"

#include <array>
#include <charconv>
#include <limits>

namespace genostat {

std::string fixedText(double value, int decimals) {
  // The largest double has 309 digits before the point.
  std::array<char, std::numeric_limits<double>::max_exponent10 + 32> buffer;
  const auto end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals)
          .ptr;
  return std::string(buffer.data(), end);
}

}  // namespace genostat
