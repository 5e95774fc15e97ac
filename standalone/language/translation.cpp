#include "standalone/language/translation.h"

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "standalone/language/language.h"

namespace genostat::standalone {

namespace {

Language& chosenLanguage() {
  // Never destroyed: a thread may still speak while the program ends.
  static Language* const kept = new Language;
  return *kept;
}

std::string withValues(std::string_view pattern, std::span<const std::string_view> values) {
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

}  // namespace

void setLanguage(Language language) {
  chosenLanguage() = std::move(language);
}

const Language& language() {
  return chosenLanguage();
}

std::string translated(std::string_view english) {
  const Language& chosen = chosenLanguage();
  const auto found = chosen.texts.find(english);
  if (found != chosen.texts.end()) return found->second;
  return chosen.substitute ? chosen.substitute(english) : std::string(english);
}

std::string translated(std::string_view english, std::initializer_list<std::string_view> values) {
  return withValues(translated(english), {values.begin(), values.size()});
}

std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many) {
  return translatedCount(count, one, many, {});
}

std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many,
                            std::initializer_list<std::string_view> values) {
  const std::string number = std::to_string(count);
  std::vector<std::string_view> all = {number};
  all.insert(all.end(), values.begin(), values.end());
  return withValues(translated(count == 1 ? one : many), all);
}

}  // namespace genostat::standalone
