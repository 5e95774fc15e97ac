#include "standalone/output/number_format.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <string_view>

namespace genostat::standalone {

namespace {

constexpr int kMostDecimals = 40;
constexpr double kFixedLimit = 1e15;

bool isAllZeros(std::string_view text) {
  return text.find_first_of("123456789") == std::string_view::npos;
}

}  // namespace

std::string formatNumber(double value, const NumberFormat& format) {
  if (!std::isfinite(value)) return {};
  const int decimals = std::clamp(format.decimals, 0, kMostDecimals);
  if (std::abs(value) >= kFixedLimit) return fmt::format("{:.{}e}", value, std::max(decimals, 2));
  std::string text = fmt::format("{:.{}f}", value, decimals);
  if (isAllZeros(text)) {
    if (value != 0 && format.leadingZero) return fmt::format("{:.2e}", value);
    if (text.front() == '-') text.erase(0, 1);
  }
  if (!format.leadingZero && decimals > 0) {
    const std::size_t digits = text.front() == '-' ? 1 : 0;
    if (text[digits] == '0') text.erase(digits, 1);
  }
  return text;
}

bool looksLikeNumber(const std::string& text) {
  std::string_view digits = text;
  if (!digits.empty() && (digits.front() == '-' || digits.front() == '+')) digits.remove_prefix(1);
  return digits.find_first_of("0123456789") != std::string_view::npos &&
         digits.find_first_not_of("0123456789.") == std::string_view::npos &&
         std::ranges::count(digits, '.') <= 1;
}

}  // namespace genostat::standalone
