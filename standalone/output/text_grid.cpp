#include "standalone/output/text_grid.h"

#include <algorithm>

#include "common/text/wrapped_text.h"
#include "standalone/output/number_format.h"

namespace genostat::standalone {

namespace {

// The labels from the outermost group to one leaf.
using LabelPath = std::vector<const Category*>;

void collectPaths(const std::vector<Category>& categories, LabelPath& path, std::vector<LabelPath>& paths) {
  for (const Category& category : categories) {
    path.push_back(&category);
    if (category.children.empty()) {
      paths.push_back(path);
    } else {
      collectPaths(category.children, path, paths);
    }
    path.pop_back();
  }
}

std::vector<LabelPath> leafPaths(const std::vector<Category>& categories) {
  std::vector<LabelPath> paths;
  LabelPath path;
  collectPaths(categories, path, paths);
  return paths;
}

std::size_t longestPath(const std::vector<LabelPath>& paths) {
  std::size_t longest = 0;
  for (const LabelPath& path : paths) {
    longest = std::max(longest, path.size());
  }
  return longest;
}

bool anyLabel(const std::vector<LabelPath>& paths) {
  return std::ranges::any_of(paths, [](const LabelPath& path) {
    return std::ranges::any_of(path, [](const Category* category) { return !category->label.empty(); });
  });
}

GridCell markedCell(const std::string& text, const std::string& mark, const void* region,
                    Alignment alignment) {
  const std::string shownMark = common::printableText(mark);
  return {common::printableText(text) + shownMark, region, alignment, true, shownMark.size()};
}

GridCell labelCell(const Category& category, bool shown, Alignment alignment = Alignment::Left) {
  if (!shown) return {{}, &category, alignment};
  return markedCell(category.label, category.mark, &category, alignment);
}

GridCell valueCell(const CellValue& cell) {
  if (const auto* number = std::get_if<double>(&cell.value)) {
    GridCell made = markedCell(formatNumber(*number, cell.format), cell.mark, nullptr, Alignment::Right);
    made.breakable = false;
    return made;
  }
  const auto* text = std::get_if<std::string>(&cell.value);
  return text != nullptr ? markedCell(*text, cell.mark, nullptr, Alignment::Left) : GridCell{};
}

// Texts line up like numbers where a whole column consists of them: modules hand over counts as text.
bool isNumberColumn(const TextGrid& grid, std::size_t column) {
  bool any = false;
  for (std::size_t row = grid.headerRows; row < grid.rows.size(); ++row) {
    const GridCell& cell = grid.rows[row][column];
    if (cell.text.empty()) continue;
    if (cell.alignment != Alignment::Right && !looksLikeNumber(cell.text)) return false;
    any = true;
  }
  return any;
}

void alignNumberColumns(TextGrid& grid) {
  for (std::size_t column = grid.labelColumns; column < grid.columnCount(); ++column) {
    if (!isNumberColumn(grid, column)) continue;
    for (std::size_t row = 0; row < grid.rows.size(); ++row) {
      GridCell& cell = grid.rows[row][column];
      if (row >= grid.headerRows || cell.alignment != Alignment::Centre) cell.alignment = Alignment::Right;
      if (row >= grid.headerRows) cell.breakable = false;
    }
  }
}

// The corner above the row labels is one box that shows their heading at its bottom.
void addHeader(TextGrid& grid, const PivotTable& table, const std::vector<LabelPath>& columns) {
  const std::size_t depth = longestPath(columns);
  const std::size_t heading = table.columnLabel.empty() ? 0 : 1;
  grid.headerRows = depth + heading;
  for (std::size_t level = 0; level < grid.headerRows; ++level) {
    std::vector<GridCell>& row = grid.rows.emplace_back(grid.labelColumns, GridCell{{}, &table});
    if (level + 1 == grid.headerRows && !row.empty())
      row.front().text = common::printableText(table.rowLabel);
    for (const LabelPath& path : columns) {
      if (level < heading) {
        row.push_back({common::printableText(table.columnLabel), &table.columns, Alignment::Centre});
        continue;
      }
      const std::size_t step = std::min(level - heading, path.size() - 1);
      const bool isLeaf = step + 1 == path.size();
      // A leaf above the deepest level reaches down to the values and has its text there.
      const bool shown = !isLeaf || level + 1 == grid.headerRows;
      row.push_back(labelCell(*path[step], shown, isLeaf ? Alignment::Left : Alignment::Centre));
    }
  }
  grid.ruleAbove.resize(grid.rows.size(), true);
}

void addBody(TextGrid& grid, const PivotTable& table, const std::vector<LabelPath>& rows) {
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const LabelPath& path = rows[i];
    const bool newGroup = i == 0 || rows[i - 1].front() != path.front();
    grid.ruleAbove.push_back(i == 0 || (newGroup && (path.size() > 1 || rows[i - 1].size() > 1)));
    std::vector<GridCell>& row = grid.rows.emplace_back();
    for (std::size_t level = 0; level < grid.labelColumns; ++level) {
      const std::size_t step = std::min(level, path.size() - 1);
      const bool repeated =
          (i > 0 && step < rows[i - 1].size() && rows[i - 1][step] == path[step]) || level > step;
      row.push_back(labelCell(*path[step], !repeated));
    }
    for (const CellValue& cell : table.cells[i]) {
      row.push_back(valueCell(cell));
    }
  }
}

}  // namespace

bool joined(const std::vector<GridCell>& row, std::size_t column) {
  return column > 0 && column < row.size() && row[column].region != nullptr &&
         row[column].region == row[column - 1].region;
}

std::size_t spanEnd(const std::vector<GridCell>& row, std::size_t column) {
  do {
    ++column;
  } while (joined(row, column));
  return column;
}

TextGrid layOutGrid(const PivotTable& table) {
  const std::vector<LabelPath> rows = leafPaths(table.rows);
  const std::vector<LabelPath> columns = leafPaths(table.columns);
  TextGrid grid;
  grid.labelColumns = longestPath(rows);
  const bool hasHeader = anyLabel(columns) || !table.columnLabel.empty() || !table.rowLabel.empty();
  if (hasHeader && !columns.empty()) addHeader(grid, table, columns);
  addBody(grid, table, rows);
  alignNumberColumns(grid);
  return grid;
}

}  // namespace genostat::standalone
