// The one place where texts become parts of a page.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/text/printable_text.h"

namespace genostat::standalone {

// A text as it stands between tags or inside a double-quoted attribute. Characters that would steer the
// display are written visibly, invalid UTF-8 becomes U+FFFD.
std::string escapeHtml(std::string_view text, common::LineBreaks lineBreaks = common::LineBreaks::Escape);

// A list of notes below a table or a chart; empty when there are none. `id` is markup already, and may be
// empty.
std::string notesHtml(const std::vector<std::string>& notes, std::string_view id = {});

// A JSON text as it stands inside a script element: the same values, without a character that could end
// the element or begin a comment.
std::string escapeScriptJson(std::string_view json);

}  // namespace genostat::standalone
