// Parts of a page: the one place where texts become markup, tables and charts. `id` names a part and begins
// the names of what is in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/text/printable_text.h"
#include "standalone/output/chart.h"

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

// The table with its caption in a region that scrolls, and its footnotes below. `name` is said of the region
// where the table has no title. The table is squared up.
std::string renderTableAsHtml(const PivotTable& table, std::string_view id, std::string_view name);

// A figure with caption, summary, legend, the chart's data for the script, notes, and, where they are few
// enough to read, the data as a table. Charts of very many points are thinned, and a note says so.
std::string renderChartAsHtml(const Chart& chart, std::string_view id);

}  // namespace genostat::standalone
