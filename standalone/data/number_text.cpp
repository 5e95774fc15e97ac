#include "standalone/data/number_text.h"

#include <algorithm>
#include <charconv>
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

}  // namespace

std::optional<ParsedNumber> parseNumber(std::string_view text, char decimal) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  const std::size_t first = text.starts_with('-') ? 1 : 0;
  // Keeps out "nan" and "inf", which from_chars takes for numbers.
  if (first >= text.size() || (!isDigit(text[first]) && text[first] != decimal)) return std::nullopt;

  const std::size_t sign = text.find(decimal, first);
  int decimals = 0;
  if (sign != std::string_view::npos) {
    const std::string_view behind = text.substr(sign + 1);
    decimals = static_cast<int>(std::ranges::find_if_not(behind, isDigit) - behind.begin());
  }
  std::optional<double> value;
  if (decimal == '.') {
    value = fromChars(text);
  } else {
    if (text.find('.') != std::string_view::npos) return std::nullopt;
    std::string dotted(text);
    if (sign != std::string_view::npos) dotted[sign] = '.';
    value = fromChars(dotted);
  }
  if (!value) return std::nullopt;
  return ParsedNumber{*value, decimals};
}

std::string_view trimBlanks(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
}

}  // namespace genostat::standalone
