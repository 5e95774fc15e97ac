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

// Well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool isValidUtf8(std::string_view text);
// The text with each invalid byte replaced by U+FFFD.
std::string toValidUtf8(std::string_view text);

// The columns that a terminal gives a code point: 0 for combining marks, 2 for wide East Asian characters.
int codePointWidth(char32_t codePoint);
int displayWidth(std::string_view text);

}  // namespace genostat::common
