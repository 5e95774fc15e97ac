#include "standalone/output/text_box.h"

#include <algorithm>
#include <array>
#include <climits>
#include <numeric>
#include <string_view>
#include <utility>

#include "common/text/utf8.h"
#include "common/text/wrapped_text.h"

namespace genostat::standalone {

namespace {

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
    const int gap = std::max(width - common::displayWidth(text), 0);
    const int before = alignment == Alignment::Left ? 0 : alignment == Alignment::Right ? gap : gap / 2;
    return repeat(" ", before) + text + repeat(" ", gap - before);
  }

  // Values stand at the top of their row, column labels at its bottom.
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
      boxes.push_back({common::wrapText(cell.text, cell.breakable ? width : INT_MAX), width, cell.alignment});
      height = std::max(height, boxes.back().lines.size());
    }
    std::string text;
    const std::string_view bar = unicode_ ? "│" : "|";
    for (std::size_t line = 0; line < height; ++line) {
      for (const Box& box : boxes) {
        const std::size_t skipped = grid_.isHeader(row) ? height - box.lines.size() : 0;
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

}  // namespace

int spanWidth(std::span<const int> widths, std::size_t begin, std::size_t end) {
  const int inner = std::accumulate(widths.begin() + static_cast<std::ptrdiff_t>(begin),
                                    widths.begin() + static_cast<std::ptrdiff_t>(end), 0);
  return inner + kColumnExtra * static_cast<int>(end - begin - 1);
}

std::string drawBox(const TextGrid& grid, std::vector<int> widths, bool unicode) {
  return BoxDrawer(grid, std::move(widths), unicode).draw();
}

}  // namespace genostat::standalone
