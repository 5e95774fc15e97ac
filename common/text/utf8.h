// UTF-8 as the renderers need it: valid text, code points, and columns on a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace genostat::common {

// May open a UTF-8 text; it is no part of it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// One code point and the bytes it takes. An invalid byte is U+FFFD with size 1.
struct CodePoint {
  char32_t value = 0;
  std::size_t size = 0;
  bool valid = true;
};

// Reads the code point at `position`, which is inside `text`.
CodePoint codePointAt(std::string_view text, std::size_t position);

// Whether a byte goes on with the character of the byte before it.
constexpr bool continuesCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}
// Where the character begins that ends before `position`, which is not 0.
std::size_t characterBefore(std::string_view text, std::size_t position);
// The longest beginning that cuts no character and has at most so many bytes, or columns on a terminal.
std::string_view cutToBytes(std::string_view text, std::size_t bytes);
std::string_view cutToWidth(std::string_view text, int width);

// Well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);
// The text with each invalid byte replaced by U+FFFD.
std::string toValidUtf8(std::string_view text);

// The columns that a terminal gives a code point: 0 for combining marks, 2 for wide East Asian characters.
int codePointWidth(char32_t codePoint);
int displayWidth(std::string_view text);

}  // namespace genostat::common
