#include "common/text/spreadsheet_text.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace genostat::common {

namespace {

bool isNumber(std::string_view text) {
  // The library also reads "-inf".
  if (text.find_first_not_of("-+.0123456789eE") != std::string_view::npos) return false;
  double number = 0;
  const char* const end = text.data() + text.size();
  const std::from_chars_result result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

// Where the text of a quoted cell ends that begins at `position`, after the quote.
std::size_t quotedEnd(std::string_view csv, std::size_t position) {
  for (;;) {
    position = csv.find('"', position);
    if (position == std::string_view::npos) return csv.size();
    if (!csv.substr(position + 1).starts_with('"')) return position;
    position += 2;
  }
}

// The same for a cell without quotes.
std::size_t plainEnd(std::string_view csv, std::size_t position) {
  const std::size_t end = std::min(csv.find_first_of(",\n", position), csv.size());
  const bool lineEnds = end < csv.size() && csv[end] == '\n' && end > position && csv[end - 1] == '\r';
  return lineEnds ? end - 1 : end;
}

}  // namespace

bool looksLikeFormula(std::string_view cell) {
  return !cell.empty() && std::string_view("=+-@\t\r\n").find(cell.front()) != std::string_view::npos &&
         !isNumber(cell);
}

std::string spreadsheetCsv(std::string_view csv) {
  std::string safe;
  for (std::size_t position = 0; position < csv.size();) {
    const bool quoted = csv[position] == '"';
    const std::size_t begin = position + (quoted ? 1 : 0);
    const std::size_t end = quoted ? quotedEnd(csv, begin) : plainEnd(csv, begin);
    const std::size_t next = std::min(csv.find_first_of(",\n", end), csv.size() - 1) + 1;
    safe += csv.substr(position, begin - position);
    if (looksLikeFormula(csv.substr(begin, end - begin))) safe += '\'';
    safe += csv.substr(begin, next - begin);
    position = next;
  }
  return safe;
}

}  // namespace genostat::common
