// Data as text that a terminal can show without harm.
#pragma once

#include <string>
#include <string_view>

namespace genostat::common {

enum class LineBreaks { Escape, Keep };

// The text with every character that would steer a terminal written visibly: \t, \n, \x1B, \u202E.
// Invalid UTF-8 becomes U+FFFD. `Keep` lets line feeds and tabs through, for texts of several lines.
std::string printableText(std::string_view text, LineBreaks lineBreaks = LineBreaks::Escape);

// The user's words for use inside a message: printable, in double quotes, cut after 60 characters.
std::string quoteForMessage(std::string_view text);

// How every message names a file, a sample or a job: printable, at most 1 KB of it, cut between characters
// and with an ellipsis; and the same in double quotes.
std::string shownName(std::string_view name);
std::string quotedName(std::string_view name);

}  // namespace genostat::common
