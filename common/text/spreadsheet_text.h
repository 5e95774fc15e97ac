// Data that a spreadsheet takes for text.
#pragma once

#include <string>
#include <string_view>

namespace genostat::common {

// Whether a spreadsheet may compute a cell: it begins with =, +, -, @, a tab or a line break and is no
// number.
bool looksLikeFormula(std::string_view cell);

// A CSV table in which an apostrophe stands before each such cell: then it is shown as it is.
std::string spreadsheetCsv(std::string_view csv);

}  // namespace genostat::common
