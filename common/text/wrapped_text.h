// Data as text that a terminal can show: in lines of a given width.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/text/printable_text.h"

namespace genostat::common {

// Breaks a printable text into lines of at most `width` columns: at blanks, in a longer word
// after `_`, `-`, `/`, `\`, `,` or `;`, and else anywhere. At least one line.
std::vector<std::string> wrapText(std::string_view text, int width);

// The columns of the longest piece that wrapText would not like to break.
int longestWordWidth(std::string_view text);

}  // namespace genostat::common
