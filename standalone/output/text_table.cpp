// The width of each column is found first, then the box is drawn.
//
// A column has a least width (its numbers unbroken, its texts and labels wrapped) and a natural
// one (nothing wrapped). Columns are packed into as few boxes as their least widths allow; then
// each box spends what is left of the line on its columns, up to their natural widths.

#include <algorithm>
#include <climits>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "common/text/utf8.h"
#include "common/text/wrapped_text.h"
#include "standalone/output/text_box.h"
#include "standalone/output/text_grid.h"
#include "standalone/output/text_renderer.h"

namespace genostat::standalone {

namespace {

constexpr int kLeastLineWidth = 20;
// A label or a text wraps before it takes more columns than these.
constexpr int kNarrowHeader = 14;
constexpr int kNarrowText = 24;
constexpr int kNarrowest = 10;
struct ColumnNeed {
  int least = 1;
  int natural = 1;
};

ColumnNeed measureColumn(const TextGrid& grid, std::size_t column, int lineWidth) {
  ColumnNeed need;
  for (std::size_t row = 0; row < grid.rows.size(); ++row) {
    const std::vector<GridCell>& cells = grid.rows[row];
    const GridCell& cell = cells[column];
    if (joined(cells, column) || joined(cells, column + 1)) continue;
    const int natural = common::displayWidth(cell.text);
    int narrow = std::clamp(lineWidth / 3, kNarrowest, kNarrowText);
    if (column < grid.labelColumns) {
      narrow = std::max(lineWidth / (static_cast<int>(grid.labelColumns) + 2), kNarrowest);
    }
    if (grid.isHeader(row)) narrow = std::min(common::longestWordWidth(cell.text), kNarrowHeader);
    need.least = std::max(need.least, cell.breakable ? std::min(natural, narrow) : natural);
    need.natural = std::max(need.natural, natural);
  }
  return need;
}

int boxWidth(std::span<const int> widths) {
  return std::accumulate(widths.begin(), widths.end(), 1 + kColumnExtra * static_cast<int>(widths.size()));
}

// The part of `spare` that makes the columns under a column label wide enough for it.
void widenSpans(const TextGrid& grid, std::vector<int>& widths, int spare) {
  for (std::size_t row = 0; row < grid.headerRows; ++row) {
    const std::vector<GridCell>& cells = grid.rows[row];
    for (std::size_t begin = 0; begin < cells.size(); begin = spanEnd(cells, begin)) {
      const std::size_t columns = spanEnd(cells, begin) - begin;
      const int width = spanWidth(widths, begin, begin + columns);
      const int least = std::min(common::longestWordWidth(cells[begin].text), kNarrowHeader);
      // Half a label's worth of blanks would still wrap it.
      const int whole = common::displayWidth(cells[begin].text) - width;
      const int missing = whole <= spare ? whole : std::min(least - width, spare);
      for (int i = 0; i < missing; ++i) {
        ++widths[begin + static_cast<std::size_t>(i) % columns];
        --spare;
      }
    }
  }
}

// What the wrapped texts really use of a column.
int usedWidth(const TextGrid& grid, std::size_t column, int width) {
  int used = 1;
  for (const std::vector<GridCell>& row : grid.rows) {
    if (joined(row, column) || joined(row, column + 1)) continue;
    for (const std::string& line :
         common::wrapText(row[column].text, row[column].breakable ? width : INT_MAX)) {
      used = std::max(used, common::displayWidth(line));
    }
  }
  return used;
}

std::vector<int> chooseWidths(const TextGrid& box, std::span<const ColumnNeed> needs, int lineWidth) {
  std::vector<int> widths;
  for (const ColumnNeed& need : needs) {
    widths.push_back(need.least);
  }
  int spare = lineWidth - boxWidth(widths);
  const auto missing = [&](std::size_t column) { return needs[column].natural - widths[column]; };
  std::vector<std::size_t> byNeed(widths.size());
  std::iota(byNeed.begin(), byNeed.end(), std::size_t{0});
  std::ranges::stable_sort(byNeed, {}, missing);
  for (const std::size_t column : byNeed) {
    const int growth = std::clamp(missing(column), 0, std::max(spare, 0));
    widths[column] += growth;
    spare -= growth;
  }
  for (std::size_t column = 0; column < widths.size(); ++column) {
    widths[column] = usedWidth(box, column, widths[column]);
  }
  widenSpans(box, widths, lineWidth - boxWidth(widths));
  return widths;
}

// A row of column labels that all reach down into the next one: its groups are in another box.
bool isHollow(const TextGrid& grid, std::size_t row) {
  if (row + 1 >= grid.headerRows) return false;
  for (std::size_t column = grid.labelColumns; column < grid.columnCount(); ++column) {
    if (grid.rows[row][column].region != grid.rows[row + 1][column].region) return false;
  }
  return true;
}

// The label columns and the value columns [begin, end).
TextGrid cutOut(const TextGrid& grid, std::size_t begin, std::size_t end) {
  TextGrid box = grid;
  for (std::vector<GridCell>& row : box.rows) {
    row.erase(row.begin() + static_cast<std::ptrdiff_t>(end), row.end());
    row.erase(row.begin() + static_cast<std::ptrdiff_t>(grid.labelColumns),
              row.begin() + static_cast<std::ptrdiff_t>(begin));
  }
  for (std::size_t row = 0; row < box.headerRows;) {
    if (!isHollow(box, row)) {
      ++row;
      continue;
    }
    box.rows.erase(box.rows.begin() + static_cast<std::ptrdiff_t>(row));
    box.ruleAbove.erase(box.ruleAbove.begin() + static_cast<std::ptrdiff_t>(row));
    --box.headerRows;
  }
  return box;
}

// The column after those that fit one box, at least one. A group of columns stays together where it can.
std::size_t packColumns(const TextGrid& grid, std::span<const ColumnNeed> needs, std::size_t begin,
                        int room) {
  std::size_t end = begin;
  while (end < needs.size() && (end == begin || needs[end].least + kColumnExtra <= room)) {
    room -= needs[end++].least + kColumnExtra;
  }
  if (end >= needs.size()) return needs.size();
  for (std::size_t row = 0; row < grid.headerRows; ++row) {
    std::size_t groupBegin = end;
    while (groupBegin > begin && joined(grid.rows[row], groupBegin)) {
      --groupBegin;
    }
    if (groupBegin > begin) return groupBegin;
  }
  return end;
}

// A letter at the end of a word would be read as a part of it.
void setMarkApart(std::string& text, std::size_t markSize) {
  if (markSize == 0 || text.size() == markSize) return;
  const std::size_t end = text.size() - markSize;
  const char first = text[end];
  if ((first < 'a' || first > 'z') && (first < 'A' || first > 'Z') && (first < '0' || first > '9')) return;
  text = text.substr(0, end) + " (" + text.substr(end) + ')';
}

void setLabelMarksApart(TextGrid& grid) {
  for (std::size_t row = 0; row < grid.rows.size(); ++row) {
    for (std::size_t column = 0; column < grid.columnCount(); ++column) {
      GridCell& cell = grid.rows[row][column];
      const bool number =
          !grid.isHeader(row) && column >= grid.labelColumns && cell.alignment == Alignment::Right;
      if (!number) setMarkApart(cell.text, cell.markSize);
    }
  }
}

// Marks stand to the right of the digits, so that the digits are aligned.
void hangMarks(TextGrid& grid) {
  const auto markOf = [](const GridCell& cell) {
    return common::displayWidth(std::string_view(cell.text).substr(cell.text.size() - cell.markSize));
  };
  for (std::size_t column = grid.labelColumns; column < grid.columnCount(); ++column) {
    int widest = 0;
    const auto forEachNumber = [&](auto use) {
      for (std::size_t row = grid.headerRows; row < grid.rows.size(); ++row) {
        GridCell& cell = grid.rows[row][column];
        if (cell.alignment == Alignment::Right && !cell.text.empty()) use(cell);
      }
    };
    forEachNumber([&](const GridCell& cell) { widest = std::max(widest, markOf(cell)); });
    forEachNumber(
        [&](GridCell& cell) { cell.text.append(static_cast<std::size_t>(widest - markOf(cell)), ' '); });
  }
}

std::vector<ColumnNeed> measure(const TextGrid& grid, int lineWidth) {
  std::vector<ColumnNeed> needs;
  for (std::size_t column = 0; column < grid.columnCount(); ++column) {
    needs.push_back(measureColumn(grid, column, lineWidth));
  }
  return needs;
}

std::string renderBoxes(const TextGrid& grid, const TextStyle& style) {
  const int lineWidth = std::max(style.width, kLeastLineWidth);
  const std::vector<ColumnNeed> needs = measure(grid, lineWidth);
  int room = lineWidth - 1;
  for (std::size_t column = 0; column < grid.labelColumns; ++column) {
    room -= needs[column].least + kColumnExtra;
  }
  std::string text;
  std::size_t begin = grid.labelColumns;
  do {
    const std::size_t end = packColumns(grid, needs, begin, room);
    const TextGrid box = cutOut(grid, begin, end);
    text += drawBox(box, chooseWidths(box, measure(box, lineWidth), lineWidth), style.unicode);
    begin = end;
  } while (begin < needs.size());
  return text;
}

void appendWrapped(std::string& text, const std::string& paragraph, const TextStyle& style) {
  for (const std::string& line :
       common::wrapText(common::printableText(paragraph), std::max(style.width, kLeastLineWidth))) {
    text += line + '\n';
  }
}

}  // namespace

std::string renderTableAsText(const PivotTable& table, const TextStyle& style) {
  std::string text;
  if (!table.title.empty()) {
    if (style.colour) text += "\x1B[1m";
    std::string title = table.title + table.titleMark;
    setMarkApart(title, table.titleMark.size());
    appendWrapped(text, title, style);
    if (style.colour) text.insert(text.size() - 1, "\x1B[0m");
  }
  TextGrid grid = layOutGrid(table);
  hangMarks(grid);
  setLabelMarksApart(grid);
  if (grid.columnCount() > 0) text += renderBoxes(grid, style);
  for (const std::string& footnote : table.footnotes) {
    appendWrapped(text, footnote, style);
  }
  return text;
}

}  // namespace genostat::standalone
