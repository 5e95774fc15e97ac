#include "standalone/language/translation.h"

#include <cstddef>

namespace genostat::standalone {

namespace {

std::string filled(std::string_view pattern, std::initializer_list<std::string_view> values) {
  std::string text;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool place = i + 2 < pattern.size() && pattern[i] == '{' && pattern[i + 2] == '}' &&
                       pattern[i + 1] >= '1' && pattern[i + 1] <= '9';
    const std::size_t number = place ? static_cast<std::size_t>(pattern[i + 1] - '1') : values.size();
    if (number >= values.size()) {
      text += pattern[i];
      continue;
    }
    text += values.begin()[number];
    i += 2;
  }
  return text;
}

}  // namespace

std::string translated(std::string_view english) {
  return std::string(english);
}

std::string translated(std::string_view english, std::initializer_list<std::string_view> values) {
  return filled(english, values);
}

std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many) {
  return filled(count == 1 ? one : many, {std::to_string(count)});
}

}  // namespace genostat::standalone
