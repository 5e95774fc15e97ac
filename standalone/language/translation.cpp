#include "standalone/language/translation.h"

#include <algorithm>
#include <array>
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

// As POSIX systems word them in English, and our own one.
constexpr std::array<std::string_view, 16> kReasons = {marked("No such file or directory"),
                                                       marked("Permission denied"),
                                                       marked("Operation not permitted"),
                                                       marked("No space left on device"),
                                                       marked("Disk quota exceeded"),
                                                       marked("Read-only file system"),
                                                       marked("Is a directory"),
                                                       marked("Not a directory"),
                                                       marked("File exists"),
                                                       marked("File too large"),
                                                       marked("File name too long"),
                                                       marked("Too many open files"),
                                                       marked("Input/output error"),
                                                       marked("Broken pipe"),
                                                       marked("Bad file descriptor"),
                                                       marked("it is no regular file")};

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

std::string translatedReason(std::string_view message) {
  const bool isKnown = std::find(kReasons.begin(), kReasons.end(), message) != kReasons.end();
  return isKnown ? translated(message) : std::string(message);
}

}  // namespace genostat::standalone
