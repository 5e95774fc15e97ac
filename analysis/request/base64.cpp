#include "analysis/request/base64.h"

#include <cstddef>
#include <cstdint>

namespace genostat::analysis {

namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

}  // namespace

std::optional<std::string> decodeBase64(std::string_view text) {
  if (text.size() % 4 != 0) return std::nullopt;
  for (int padding = 0; padding < 2 && text.ends_with('='); ++padding) {
    text.remove_suffix(1);
  }
  std::string bytes;
  bytes.reserve(text.size() / 4 * 3 + 2);
  std::uint32_t bits = 0;
  int count = 0;
  for (const char c : text) {
    const std::size_t value = kAlphabet.find(c);
    if (value == std::string_view::npos) return std::nullopt;
    bits = (bits << 6) | static_cast<std::uint32_t>(value);
    count += 6;
    if (count >= 8) {
      count -= 8;
      bytes.push_back(static_cast<char>(static_cast<unsigned char>(bits >> count)));
      bits &= (1U << count) - 1;
    }
  }
  // Left over are 0, 2 or 4 bits.
  if (bits != 0) return std::nullopt;
  return bytes;
}

}  // namespace genostat::analysis
