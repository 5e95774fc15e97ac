#include "common/text/progress_text.h"

#include <algorithm>
#include <cmath>

#include "common/text/number_text.h"

namespace genostat::common {

namespace {

constexpr double kMega = 1e6;
constexpr double kGiga = 1e9;

bool isLarge(std::uint64_t bytes) {
  return static_cast<double>(bytes) >= 10 * kGiga;
}

std::string twoDigits(std::uint64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::string percentText(std::uint64_t part, std::uint64_t whole) {
  const double share = std::min(1.0, static_cast<double>(part) / static_cast<double>(whole));
  return fixedText(100 * share, 0) + " %";
}

std::string sizeNumber(std::uint64_t part, std::uint64_t whole) {
  const int decimals = isLarge(whole) || static_cast<double>(whole) < 10 * kMega ? 1 : 0;
  return fixedText(static_cast<double>(part) / (isLarge(whole) ? kGiga : kMega), decimals);
}

std::string sizeText(std::uint64_t bytes) {
  return sizeNumber(bytes, bytes) + (isLarge(bytes) ? " GB" : " MB");
}

std::string rateText(double bytesPerSecond) {
  const double rate = bytesPerSecond / kMega;
  return fixedText(rate, rate < 9.95 ? 1 : 0) + " MB/s";
}

std::string clockText(double seconds) {
  const auto whole = static_cast<std::uint64_t>(std::ceil(std::max(seconds, 0.0)));
  const std::uint64_t minutes = whole / 60;
  const std::string end = ':' + twoDigits(whole % 60);
  if (minutes < 60) return std::to_string(minutes) + end;
  return std::to_string(minutes / 60) + ':' + twoDigits(minutes % 60) + end;
}

std::optional<double> secondsLeft(std::uint64_t done, std::uint64_t total, double seconds) {
  // Rates of the first moments say nothing about the rest.
  constexpr double kEstimateAfter = 2;
  constexpr double kLongestEstimate = 99 * 3600;
  if (seconds < kEstimateAfter || done == 0 || done >= total) return std::nullopt;
  const double left = static_cast<double>(total - done) * seconds / static_cast<double>(done);
  return left <= kLongestEstimate ? std::optional(left) : std::nullopt;
}

}  // namespace genostat::common
