#include <array>
#include <cstddef>

#include "standalone/language/language.h"

namespace genostat::standalone {

namespace {

constexpr std::array<std::string_view, 26> kSmall = {"á", "ƀ", "ç", "đ", "é", "ƒ", "ĝ", "ĥ", "í",
                                                     "ĵ", "ķ", "ļ", "ɱ", "ñ", "ø", "þ", "ɋ", "ř",
                                                     "š", "ţ", "ú", "ṽ", "ŵ", "ẋ", "ý", "ž"};
constexpr std::array<std::string_view, 26> kCapital = {"Á", "Ɓ", "Ç", "Đ", "É", "Ƒ", "Ĝ", "Ĥ", "Í",
                                                       "Ĵ", "Ķ", "Ļ", "Ṁ", "Ñ", "Ø", "Þ", "Ɋ", "Ř",
                                                       "Š", "Ţ", "Ú", "Ṽ", "Ŵ", "Ẋ", "Ý", "Ž"};

std::string accented(std::string_view english) {
  // What makes a heading of a text stays after it.
  const std::size_t end = english.find_last_not_of(" :\n") + 1;
  if (end == 0) return std::string(english);
  std::string text = "[";
  for (const char letter : english.substr(0, end)) {
    if (letter >= 'a' && letter <= 'z') {
      text += kSmall[static_cast<std::size_t>(letter - 'a')];
    } else if (letter >= 'A' && letter <= 'Z') {
      text += kCapital[static_cast<std::size_t>(letter - 'A')];
    } else {
      text += letter;
    }
  }
  return text.append("]").append(english.substr(end));
}

}  // namespace

Language pseudoLanguage() {
  return {"pseudo", {}, accented};
}

}  // namespace genostat::standalone
