#include "common/text/number_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace genostat::common {

namespace {

template <typename... Arguments>
std::string convert(Arguments... arguments) {
  // The largest double has 309 digits before its point.
  std::array<char, 336> text;
  const std::to_chars_result result = std::to_chars(text.data(), text.data() + text.size(), arguments...);
  return std::string(text.data(), result.ptr);
}

}  // namespace

std::string fixedText(double value, int decimals) {
  return convert(value, std::chars_format::fixed, decimals);
}

std::string shortestText(double value) {
  return convert(value, std::chars_format::fixed);
}

std::string shortCount(double count) {
  if (!std::isfinite(count)) return {};
  constexpr std::string_view kUnits = " kMGTPE";
  if (count < 9999.5) return fixedText(count, 0);
  std::size_t unit = 0;
  // What would be rounded to 1000 belongs to the next unit.
  while (count >= 999.5 && unit + 1 < kUnits.size()) {
    count /= 1000;
    ++unit;
  }
  const int decimals = count < 9.995 ? 2 : count < 99.95 ? 1 : 0;
  return fixedText(count, decimals) + kUnits[unit];
}

}  // namespace genostat::common
