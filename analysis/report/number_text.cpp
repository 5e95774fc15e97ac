#include "analysis/report/number_text.h"

#include <array>
#include <charconv>

namespace genostat::analysis {

namespace {

template <typename... Arguments>
std::string convert(Arguments... arguments) {
  // The largest double has 309 digits before its point.
  std::array<char, 336> text;
  const std::to_chars_result result = std::to_chars(text.data(), text.data() + text.size(), arguments...);
  return std::string(text.data(), result.ptr);
}

}  // namespace

std::string integerText(std::uint64_t value) {
  return convert(value);
}

std::string fixedText(double value, int decimals) {
  return convert(value, std::chars_format::fixed, decimals);
}

std::string shortestText(double value) {
  return convert(value, std::chars_format::fixed);
}

}  // namespace genostat::analysis
