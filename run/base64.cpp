#include "run/base64.h"

#include <cstdint>

namespace genostat {

namespace {
constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
}

std::string encodeBase64(std::string_view data) {
  std::string text;
  text.reserve((data.size() + 2) / 3 * 4);
  std::uint32_t bits = 0;
  int count = -6;  // bits held beyond the next character's six
  for (const char byte : data) {
    bits = (bits << 8) | static_cast<unsigned char>(byte);
    for (count += 8; count >= 0; count -= 6) {
      text += kAlphabet[(bits >> count) & 63];
    }
  }
  if (count > -6) text += kAlphabet[((bits << 8) >> (count + 8)) & 63];
  while (text.size() % 4 != 0) {
    text += '=';
  }
  return text;
}

}  // namespace genostat
