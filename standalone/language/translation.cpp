#include "standalone/language/translation.h"

#include <utility>
#include <vector>

#include "common/text/filled_text.h"
#include "standalone/language/language.h"

namespace genostat::standalone {

namespace {

Language& chosenLanguage() {
  // Never destroyed: a thread may still speak while the program ends.
  static Language* const kept = new Language;
  return *kept;
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
  return common::filledText(translated(english), {values.begin(), values.size()});
}

std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many) {
  return translatedCount(count, one, many, {});
}

std::string translatedCount(std::uint64_t count, std::string_view one, std::string_view many,
                            std::initializer_list<std::string_view> values) {
  const std::string number = std::to_string(count);
  std::vector<std::string_view> all = {number};
  all.insert(all.end(), values.begin(), values.end());
  return common::filledText(translated(count == 1 ? one : many), all);
}

}  // namespace genostat::standalone
