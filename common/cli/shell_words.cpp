#include "common/cli/shell_words.h"

#include <algorithm>

namespace genostat::common {

std::string joinWords(const std::vector<std::string>& words, std::string_view separator) {
  std::string out;
  for (const std::string& word : words) {
    if (&word != &words.front()) out += separator;
    out += word;
  }
  return out;
}

std::string shellQuoted(std::string_view text) {
  std::string out = "'";
  for (const char character : text) {
    if (character == '\'') {
      out += "'\\''";
    } else {
      out += character;
    }
  }
  return out + '\'';
}

std::string fishQuoted(std::string_view text) {
  std::string out = "'";
  for (const char character : text) {
    if (character == '\'' || character == '\\') out += '\\';
    out += character;
  }
  return out + '\'';
}

std::string functionName(std::string program) {
  std::replace(program.begin(), program.end(), '-', '_');
  return program;
}

}  // namespace genostat::common
