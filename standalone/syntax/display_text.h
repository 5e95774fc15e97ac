// Text for a terminal: characters, their widths, and bytes that must not get there.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace genostat::standalone {

// One character as a diagnostic shows it.
struct DisplayChar {
  std::string_view shown;   // the character, or U+FFFD for a broken or unprintable one
  std::size_t length = 1;   // its bytes in the text
  std::size_t columns = 1;  // 0 for a combining mark, 2 for a wide character
};

// The character that begins at `position`, which lies inside `text`. Never fails: a byte that
// begins no UTF-8 character counts as a character of its own. A tab is passed through.
DisplayChar displayCharAt(std::string_view text, std::size_t position);

// The number of characters in `text`.
std::size_t countCharacters(std::string_view text);

// `text` with every character as shown; line feeds are kept.
std::string displayText(std::string_view text);

}  // namespace genostat::standalone
