// Data as text that a terminal can show: harmless characters, and lines of a given width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace genostat::standalone {

enum class LineBreaks { Escape, Keep };

// The text with every character that would steer a terminal written visibly: \t, \n, \x1B, \u202E.
// Invalid UTF-8 becomes U+FFFD. `Keep` lets line feeds and tabs through, for texts of several lines.
std::string printableText(std::string_view text, LineBreaks lineBreaks = LineBreaks::Escape);

// Breaks a printable text into lines of at most `width` columns: at blanks, in a longer word
// behind `_`, `-`, `/`, `\`, `,` or `;`, and else anywhere. At least one line.
std::vector<std::string> wrapText(std::string_view text, int width);

// The columns of the longest piece that wrapText would not like to break.
int longestWordWidth(std::string_view text);

}  // namespace genostat::standalone
