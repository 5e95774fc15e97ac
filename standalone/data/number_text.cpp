#include "standalone/data/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string>

namespace genostat::standalone {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

std::optional<double> fromChars(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return std::nullopt;
  if (error == std::errc::result_out_of_range) {
    const std::size_t exponent = text.find_first_of("eE");
    const bool tooSmall = exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
    return tooSmall ? std::optional<double>(0.0) : std::nullopt;
  }
  return error == std::errc() ? std::optional<double>(value) : std::nullopt;
}

// Nearly all numbers of data files: a sign, at most 15 digits, no exponent. Digits and the power
// of ten are then exact in double, and the one division rounds correctly.
std::optional<ParsedNumber> parsePlain(std::string_view text, char decimal) {
  constexpr std::array<double, 16> kPowers = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                              1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  if (text.size() >= kPowers.size()) return std::nullopt;
  std::int64_t digits = 0;
  std::size_t count = 0;
  std::size_t decimals = 0;
  bool signSeen = false;
  for (const char c : text) {
    if (isDigit(c)) {
      digits = digits * 10 + (c - '0');
      ++count;
      decimals += signSeen ? 1U : 0U;
    } else if (c == decimal && !signSeen) {
      signSeen = true;
    } else {
      return std::nullopt;
    }
  }
  if (count == 0) return std::nullopt;
  const double value = static_cast<double>(digits) / kPowers[decimals];
  return ParsedNumber{negative ? -value : value, static_cast<int>(decimals)};
}

std::optional<ParsedNumber> parseGeneral(std::string_view text, char decimal) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  // Keeps out "nan" and "inf", which from_chars takes for numbers.
  if (first >= text.size() || (!isDigit(text[first]) && text[first] != decimal)) return std::nullopt;

  const std::size_t sign = text.find(decimal, first);
  std::string dotted(text);
  if (decimal != '.') {
    if (text.find('.') != std::string_view::npos) return std::nullopt;
    if (sign != std::string_view::npos) dotted[sign] = '.';
  }
  const std::optional<double> value = fromChars(dotted);
  if (!value) return std::nullopt;
  int decimals = 0;
  if (sign != std::string_view::npos) {
    const std::string_view behind = text.substr(sign + 1);
    decimals = static_cast<int>(std::ranges::find_if_not(behind, isDigit) - behind.begin());
  }
  return ParsedNumber{*value, decimals};
}

}  // namespace

std::optional<ParsedNumber> parseNumber(std::string_view text, char decimal) {
  if (const auto number = parsePlain(text, decimal)) return number;
  return parseGeneral(text, decimal);
}

std::string_view trimBlanks(std::string_view text) {
  const auto isBlank = [](char c) { return c == ' ' || c == '\t'; };
  while (!text.empty() && isBlank(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isBlank(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace genostat::standalone
