#include "common/text/filled_text.h"

#include <cstddef>

namespace genostat::common {

std::string filledText(std::string_view pattern, std::span<const std::string_view> values) {
  std::string text;
  for (std::size_t i = 0; i < pattern.size(); ++i) {
    const bool place = i + 2 < pattern.size() && pattern[i] == '{' && pattern[i + 2] == '}' &&
                       pattern[i + 1] >= '1' && pattern[i + 1] <= '9';
    const std::size_t number = place ? static_cast<std::size_t>(pattern[i + 1] - '1') : values.size();
    if (number >= values.size()) {
      text += pattern[i];
      continue;
    }
    text += values[number];
    i += 2;
  }
  return text;
}

std::string inEnglish(std::string_view english, std::initializer_list<std::string_view> values) {
  return filledText(english, {values.begin(), values.size()});
}

}  // namespace genostat::common
