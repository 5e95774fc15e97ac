#include "standalone/data/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "common/text/ascii.h"
#include "standalone/data/short_number.h"

namespace genostat::standalone {

namespace {

// A decimal number that from_chars has taken.
struct NumberParts {
  std::string_view digits;  // with the decimal sign
  std::size_t whole;        // digits before it
  long exponent;            // cut to five digits

  explicit NumberParts(std::string_view text) {
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    const std::size_t mark = std::min({text.find('e'), text.find('E'), text.size()});
    digits = text.substr(0, mark);
    whole = std::min(digits.find('.'), digits.size());
    exponent = exponentOf(text.substr(mark));
  }

  int decimals() const {
    const std::size_t behind = digits.size() - std::min(digits.size(), whole + 1);
    return static_cast<int>(std::clamp(static_cast<long>(behind) - exponent, 0L, 16L));
  }

  bool isBelowOne() const {
    const std::size_t first = std::min(digits.find_first_not_of("0."), digits.size());
    const long place = static_cast<long>(whole) - static_cast<long>(first) - (first < whole ? 1 : 0);
    return place + exponent < 0;
  }

 private:
  static long exponentOf(std::string_view text) {
    constexpr std::size_t kLongest = 9;
    if (text.empty()) return 0;
    text.remove_prefix(1);
    const bool negative = text.starts_with('-');
    text.remove_prefix(negative || text.starts_with('+') ? 1 : 0);
    text.remove_prefix(std::min(text.find_first_not_of('0'), text.size()));
    long value = 0;
    std::from_chars(text.data(), text.data() + std::min(text.size(), kLongest), value);
    return negative ? -value : value;
  }
};

// Text with a point, whose first character is a digit, a point, or a minus sign before either.
ParsedNumber fromChars(std::string_view text) {
  double value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (end != text.data() + text.size()) return {};
  const NumberParts parts(text);
  if (error == std::errc::result_out_of_range) {
    if (!parts.isBelowOne()) return {};
    value = text.starts_with('-') ? -0.0 : 0.0;
  } else if (error != std::errc()) {
    return {};
  }
  return {value, parts.decimals()};
}

ParsedNumber parseGeneral(std::string_view text, char decimal) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return {};
  }
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  // Keeps out "nan" and "inf", which from_chars takes for numbers.
  if (first >= text.size() || (!common::isDigit(text[first]) && text[first] != decimal)) return {};
  if (decimal == '.') return fromChars(text);

  if (text.find('.') != std::string_view::npos) return {};
  std::string dotted(text);
  const std::size_t sign = text.find(decimal, first);
  if (sign != std::string_view::npos) dotted[sign] = '.';
  return fromChars(dotted);
}

}  // namespace

ParsedNumber parsePaddedNumber(std::string_view text, char decimal) {
  const ParsedNumber number = parseShortNumber(text, decimal);
  return number ? number : parseGeneral(text, decimal);
}

ParsedNumber parseNumber(std::string_view text, char decimal) {
  constexpr std::size_t kLongestShort = 2 * kDigitsPerWord + 1;
  if (text.size() > kLongestShort) return parseGeneral(text, decimal);
  std::array<char, kLongestShort + kNumberPadding> padded = {};
  std::ranges::copy(text, padded.begin());
  return parsePaddedNumber({padded.data(), text.size()}, decimal);
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
