// ASCII letters, whatever the locale: other bytes stay as they are.
#pragma once

#include <string>
#include <string_view>

namespace genostat::common {

constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr char upperLetter(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char lowerLetter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

std::string upperCase(std::string_view text);
std::string lowerCase(std::string_view text);

bool equalsIgnoreCase(std::string_view a, std::string_view b);
bool startsWithIgnoreCase(std::string_view text, std::string_view beginning);

}  // namespace genostat::common
