#include "standalone/language/wanted_languages.h"

#include <algorithm>
#include <cstddef>

#include "common/text/ascii.h"

namespace genostat::standalone {

namespace {

bool isAsciiLetter(char c) {
  return common::lowerLetter(c) >= 'a' && common::lowerLetter(c) <= 'z';
}

std::string_view withoutEncoding(std::string_view locale) {
  return locale.substr(0, locale.find_first_of(".@"));
}

}  // namespace

std::vector<std::string> languageNames(std::string_view locale) {
  std::string name(withoutEncoding(locale));
  const std::size_t separator = std::min(name.find_first_of("_-"), name.size());
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (i == separator) {
      name[i] = '_';
      continue;
    }
    // It becomes the name of a folder.
    if (!isAsciiLetter(name[i]) && (i < separator || !common::isDigit(name[i]))) return {};
    name[i] = i > separator ? common::upperLetter(name[i]) : common::lowerLetter(name[i]);
  }
  if (separator < 2 || separator + 1 == name.size()) return {};
  if (separator == name.size()) return {name};
  return {name, name.substr(0, separator)};
}

std::vector<std::string> wantedLanguages(const LanguageVariables& variables,
                                         const std::vector<std::string>& system) {
  std::string_view locale = variables.all;
  if (locale.empty()) locale = variables.messages;
  if (locale.empty()) locale = variables.lang;
  const std::string_view plain = withoutEncoding(locale);
  if (plain == "C" || plain == "POSIX") return {"en"};
  std::vector<std::string> names;
  const auto add = [&names](std::string_view wanted) {
    const std::vector<std::string> more = languageNames(wanted);
    names.insert(names.end(), more.begin(), more.end());
  };
  const std::string_view list = variables.language;
  for (std::size_t begin = 0; begin < list.size();) {
    const std::size_t end = std::min(list.find(':', begin), list.size());
    add(list.substr(begin, end - begin));
    begin = end + 1;
  }
  add(locale);
  if (list.empty() && locale.empty()) {
    for (const std::string& language : system) {
      add(language);
    }
  }
  return names;
}

}  // namespace genostat::standalone
