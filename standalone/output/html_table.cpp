#include <fmt/format.h>

#include <cstddef>
#include <string>
#include <string_view>

#include "common/text/utf8.h"
#include "standalone/output/html_parts.h"
#include "standalone/output/text_grid.h"

namespace genostat::standalone {

namespace {

using fmt::literals::operator""_a;

// The places of a grid that one label takes, and where its text stands.
struct Span {
  std::size_t rows = 1;
  std::size_t columns = 1;
  const GridCell* text = nullptr;
};

Span spanAt(const TextGrid& grid, std::size_t row, std::size_t column) {
  const GridCell& first = grid.rows[row][column];
  Span span;
  span.text = &first;
  if (first.region == nullptr) return span;
  span.columns = spanEnd(grid.rows[row], column) - column;
  const std::size_t end = grid.isHeader(row) ? grid.headerRows : grid.rows.size();
  while (row + span.rows < end && grid.rows[row + span.rows][column].region == first.region) {
    const GridCell& below = grid.rows[row + span.rows++][column];
    if (span.text->text.empty()) span.text = &below;
  }
  return span;
}

// Whether the label at this place began in the row above or in the column before.
bool isContinued(const TextGrid& grid, std::size_t row, std::size_t column) {
  if (joined(grid.rows[row], column)) return true;
  const void* region = grid.rows[row][column].region;
  return region != nullptr && row > 0 && grid.isHeader(row - 1) == grid.isHeader(row) &&
         grid.rows[row - 1][column].region == region;
}

// Labels of rows and columns that stand on one line, whatever room there is.
constexpr int kShortRowLabel = 30;
constexpr int kShortColumnLabel = 14;

// Names of variables may be broken where a reader would.
std::string withBreaks(const std::string& html) {
  std::string broken;
  for (const char c : html) {
    broken += c;
    if (c == '_' || c == '/') broken += "<wbr>";
  }
  return broken;
}

// `text` ends with a mark of `markSize` bytes.
std::string markedHtml(std::string_view text, std::size_t markSize, bool breakable) {
  const std::size_t end = text.size() - markSize;
  const std::string before = escapeHtml(text.substr(0, end));
  std::string html = breakable ? withBreaks(before) : before;
  if (markSize > 0) html += "<sup>" + escapeHtml(text.substr(end)) + "</sup>";
  return html;
}

std::string spanAttribute(std::string_view name, std::size_t count) {
  return count == 1 ? std::string() : fmt::format(R"( {name}="{count}")", "name"_a = name, "count"_a = count);
}

std::string cellHtml(const TextGrid& grid, std::size_t row, std::size_t column) {
  const Span span = spanAt(grid, row, column);
  const std::string& text = span.text->text;
  const bool header = grid.isHeader(row);
  const bool label = header || column < grid.labelColumns;
  // A corner without a heading heads nothing.
  const bool heads = label && !(header && text.empty());
  std::string classes;
  std::string more = spanAttribute("rowspan", span.rows) + spanAttribute("colspan", span.columns);
  if (span.text->alignment == Alignment::Right) classes = "number";
  if (header && column >= grid.labelColumns && span.text->alignment == Alignment::Centre) classes = "span";
  if (!header && label && span.rows > 1) classes = "group";
  const bool shortLabel =
      label && common::displayWidth(text) <= (header ? kShortColumnLabel : kShortRowLabel);
  if (shortLabel && !header) classes += classes.empty() ? "short" : " short";
  if (header && row + span.rows == grid.headerRows && span.rows > 1) more += " data-bottom";
  if (heads) {
    const char* const group = (header ? span.columns : span.rows) > 1 ? "group" : "";
    more += fmt::format(R"( scope="{axis}{group}")", "axis"_a = header ? "col" : "row", "group"_a = group);
  }
  if (!classes.empty()) more += fmt::format(R"( class="{}")", classes);
  return fmt::format("<{tag}{attributes}>{text}</{tag}>", "tag"_a = heads ? "th" : "td",
                     "attributes"_a = more,
                     "text"_a = markedHtml(text, span.text->markSize, label && !shortLabel));
}

std::string rowHtml(const TextGrid& grid, std::size_t row) {
  const bool ruled = row > grid.headerRows && grid.ruleAbove[row];
  std::string html = ruled ? "<tr class=\"rule\">" : "<tr>";
  for (std::size_t column = 0; column < grid.columnCount(); ++column) {
    if (!isContinued(grid, row, column)) html += cellHtml(grid, row, column);
  }
  return html + "</tr>\n";
}

std::string rowsHtml(const TextGrid& grid, const char* tag, std::size_t begin, std::size_t end) {
  if (begin == end) return {};
  std::string html = std::string("<") + tag + ">\n";
  for (std::size_t row = begin; row < end; ++row) {
    html += rowHtml(grid, row);
  }
  return html + "</" + tag + ">\n";
}

}  // namespace

std::string renderTableAsHtml(const PivotTable& table, std::string_view id, std::string_view name) {
  const std::string base = escapeHtml(id);
  const TextGrid grid = layOutGrid(table);
  const bool titled = !table.title.empty();
  std::string html =
      "<div class=\"table\" id=\"" + base + "\">\n<div class=\"scroll\" role=\"group\" tabindex=\"0\" ";
  html += titled ? "aria-labelledby=\"" + base + "-title\"" : "aria-label=\"" + escapeHtml(name) + '"';
  html += ">\n<table";
  if (!table.footnotes.empty()) html += " aria-describedby=\"" + base + "-notes\"";
  html += ">\n";
  if (titled) {
    html += "<caption class=\"title\" id=\"" + base + "-title\">" +
            markedHtml(table.title + table.titleMark, table.titleMark.size(), true) + "</caption>\n";
  }
  html += rowsHtml(grid, "thead", 0, grid.headerRows);
  html += rowsHtml(grid, "tbody", grid.headerRows, grid.rows.size());
  return html + "</table>\n</div>\n" + notesHtml(table.footnotes, base + "-notes") + "</div>\n";
}

}  // namespace genostat::standalone
