// Base64 for payloads.
#pragma once

#include <string>
#include <string_view>

namespace genostat::test {

// One input triple at a time.
inline std::string toBase64(std::string_view bytes) {
  static constexpr std::string_view kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(bytes.size() < 3 ? bytes.size() : 3)) {
    unsigned triple = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      triple = triple << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= bytes.size() ? kLetters[triple >> (18 - 6 * i) & 63] : '=';
    }
  }
  return text;
}

}  // namespace genostat::test
