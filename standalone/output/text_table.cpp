// The width of each column is found first, then the box is drawn.
//
// A column has a least width (its numbers unbroken, its texts and labels wrapped) and a natural
// one (nothing wrapped). Columns are packed into as few boxes as their least widths allow; then
// each box spends what is left of the line on its columns, up to their natural widths.

#include "standalone/output/text_table.h"

#include <algorithm>
#include <array>
#include <climits>
#include <numeric>
#include <span>
#include <string_view>
#include <utility>

#include "standalone/output/display_text.h"
#include "standalone/output/text_grid.h"
#include "standalone/output/utf8.h"

namespace genostat::standalone {

namespace {

constexpr int kLeastLineWidth = 20;
// A label or a text wraps before it takes more columns than these.
constexpr int kNarrowHeader = 14;
constexpr int kNarrowText = 24;
// A blank on both sides and one border.
constexpr int kColumnExtra = 3;

struct ColumnNeed {
  int least = 1;
  int natural = 1;
};

bool isHeader(const TextGrid& grid, std::size_t row) {
  return row < grid.headerRows;
}

bool joined(const std::vector<GridCell>& row, std::size_t column) {
  return column > 0 && column < row.size() && row[column].region != nullptr &&
         row[column].region == row[column - 1].region;
}

// The column behind the box that begins at `column`.
std::size_t spanEnd(const std::vector<GridCell>& row, std::size_t column) {
  do {
    ++column;
  } while (joined(row, column));
  return column;
}

ColumnNeed measureColumn(const TextGrid& grid, std::size_t column, int lineWidth) {
  ColumnNeed need;
  for (std::size_t row = 0; row < grid.rows.size(); ++row) {
    const std::vector<GridCell>& cells = grid.rows[row];
    const GridCell& cell = cells[column];
    if (joined(cells, column) || joined(cells, column + 1)) continue;
    const int natural = displayWidth(cell.text);
    int narrow = kNarrowText;
    if (column < grid.labelColumns) narrow = std::max(lineWidth / 3, kNarrowHeader);
    if (isHeader(grid, row)) narrow = std::min(longestWordWidth(cell.text), kNarrowHeader);
    need.least = std::max(need.least, cell.breakable ? std::min(natural, narrow) : natural);
    need.natural = std::max(need.natural, natural);
  }
  return need;
}

int spanWidth(std::span<const int> widths, std::size_t begin, std::size_t end) {
  const int inner = std::accumulate(widths.begin() + static_cast<std::ptrdiff_t>(begin),
                                    widths.begin() + static_cast<std::ptrdiff_t>(end), 0);
  return inner + kColumnExtra * static_cast<int>(end - begin - 1);
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
      const int least = std::min(longestWordWidth(cells[begin].text), kNarrowHeader);
      // Half a label's worth of blanks would still wrap it.
      const int whole = displayWidth(cells[begin].text) - width;
      const int missing = whole <= spare ? whole : least - width;
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
    for (const std::string& line : wrapText(row[column].text, row[column].breakable ? width : INT_MAX)) {
      used = std::max(used, displayWidth(line));
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

std::string repeat(std::string_view text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) {
    repeated += text;
  }
  return repeated;
}

// Draws one box. Lines run between places of different regions; where lines meet, the
// character follows from the arms that the meeting point has.
class BoxDrawer {
 public:
  BoxDrawer(const TextGrid& grid, std::vector<int> widths, bool unicode)
      : grid_(grid), widths_(std::move(widths)), unicode_(unicode) {}

  std::string draw() const {
    std::string text;
    for (std::size_t row = 0; row <= grid_.rows.size(); ++row) {
      if (row == 0 || row == grid_.rows.size() || grid_.ruleAbove[row]) text += rule(row);
      if (row < grid_.rows.size()) text += rowLines(row);
    }
    return text;
  }

 private:
  bool verticalAt(std::size_t row, std::size_t column) const {
    return row < grid_.rows.size() && !joined(grid_.rows[row], column);
  }

  // A line above place (row, column)?
  bool horizontalAt(std::size_t row, std::size_t column) const {
    if (column >= widths_.size()) return false;
    if (row == 0 || row == grid_.rows.size()) return true;
    if (!grid_.ruleAbove[row]) return false;
    const void* region = grid_.rows[row][column].region;
    return region == nullptr || region != grid_.rows[row - 1][column].region;
  }

  std::string_view junction(std::size_t row, std::size_t column) const {
    static constexpr std::array<std::string_view, 16> kBox = {" ", "│", "│", "│", "─", "┘", "┐", "┤",
                                                              "─", "└", "┌", "├", "─", "┴", "┬", "┼"};
    static constexpr std::array<std::string_view, 16> kAscii = {" ", "|", "|", "|", "-", "+", "+", "+",
                                                                "-", "+", "+", "+", "-", "+", "+", "+"};
    const std::size_t arms =
        (row > 0 && verticalAt(row - 1, column) ? 1U : 0U) + (verticalAt(row, column) ? 2U : 0U) +
        (column > 0 && horizontalAt(row, column - 1) ? 4U : 0U) + (horizontalAt(row, column) ? 8U : 0U);
    return unicode_ ? kBox[arms] : kAscii[arms];
  }

  std::string rule(std::size_t row) const {
    std::string line;
    for (std::size_t column = 0; column < widths_.size(); ++column) {
      line += junction(row, column);
      const std::string_view dash = horizontalAt(row, column) ? (unicode_ ? "─" : "-") : " ";
      line += repeat(dash, widths_[column] + 2);
    }
    line += junction(row, widths_.size());
    return line + '\n';
  }

  static std::string aligned(const std::string& text, int width, Alignment alignment) {
    const int gap = std::max(width - displayWidth(text), 0);
    const int before = alignment == Alignment::Left ? 0 : alignment == Alignment::Right ? gap : gap / 2;
    return repeat(" ", before) + text + repeat(" ", gap - before);
  }

  // Values hang from the top of their row; column labels stand on its bottom.
  std::string rowLines(std::size_t row) const {
    const std::vector<GridCell>& cells = grid_.rows[row];
    struct Box {
      std::vector<std::string> lines;
      int width;
      Alignment alignment;
    };
    std::vector<Box> boxes;
    std::size_t height = 1;
    for (std::size_t column = 0; column < cells.size(); column = spanEnd(cells, column)) {
      const int width = spanWidth(widths_, column, spanEnd(cells, column));
      const GridCell& cell = cells[column];
      boxes.push_back({wrapText(cell.text, cell.breakable ? width : INT_MAX), width, cell.alignment});
      height = std::max(height, boxes.back().lines.size());
    }
    std::string text;
    const std::string_view bar = unicode_ ? "│" : "|";
    for (std::size_t line = 0; line < height; ++line) {
      for (const Box& box : boxes) {
        const std::size_t skipped = isHeader(grid_, row) ? height - box.lines.size() : 0;
        const bool inside = line >= skipped && line - skipped < box.lines.size();
        text.append(bar).append(" ");
        text += aligned(inside ? box.lines[line - skipped] : std::string(), box.width, box.alignment) + ' ';
      }
      text.append(bar).append("\n");
    }
    return text;
  }

  const TextGrid& grid_;
  std::vector<int> widths_;
  bool unicode_;
};

// Column labels above which and in which nothing stands: they belong to groups of another box.
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
  while (box.headerRows > 0 && isHollow(box, 0)) {
    box.rows.erase(box.rows.begin());
    box.ruleAbove.erase(box.ruleAbove.begin());
    --box.headerRows;
  }
  return box;
}

// The column behind those that fit one box, at least one. A group of columns stays together where it can.
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
    text += BoxDrawer(box, chooseWidths(box, measure(box, lineWidth), lineWidth), style.unicode).draw();
    begin = end;
  } while (begin < needs.size());
  return text;
}

void appendWrapped(std::string& text, const std::string& paragraph, const TextStyle& style) {
  for (const std::string& line : wrapText(printableText(paragraph), std::max(style.width, kLeastLineWidth))) {
    text += line + '\n';
  }
}

}  // namespace

std::string renderTableAsText(const PivotTable& table, const TextStyle& style) {
  std::string text;
  if (!table.title.empty()) {
    if (style.colour) text += "\x1B[1m";
    appendWrapped(text, table.title, style);
    if (style.colour) text.insert(text.size() - 1, "\x1B[0m");
  }
  const TextGrid grid = layOutGrid(table);
  if (grid.columnCount() > 0) text += renderBoxes(grid, style);
  for (const std::string& footnote : table.footnotes) {
    appendWrapped(text, footnote, style);
  }
  return text;
}

}  // namespace genostat::standalone
