#include "standalone/output/pivot_table.h"

#include <algorithm>
#include <utility>

namespace genostat::standalone {

CellValue textCell(std::string text) {
  return {std::move(text), {}};
}

CellValue numberCell(double number, int decimals) {
  return {number, {decimals, true}};
}

CellValue fractionCell(double number, int decimals) {
  return {number, {decimals, false}};
}

std::size_t leafCount(const std::vector<Category>& categories) {
  std::size_t count = 0;
  for (const Category& category : categories) {
    count += category.children.empty() ? 1 : leafCount(category.children);
  }
  return count;
}

void squareUp(PivotTable& table) {
  std::size_t widest = 0;
  for (const std::vector<CellValue>& row : table.cells) {
    widest = std::max(widest, row.size());
  }
  std::vector<Category>& columns = table.columns;
  std::size_t columnLeaves = leafCount(columns);
  while (columnLeaves > widest && columns.back().children.empty() && columns.back().label.empty()) {
    columns.pop_back();
    --columnLeaves;
  }
  for (; columnLeaves < widest; ++columnLeaves) {
    columns.emplace_back();
  }
  for (std::size_t rowLeaves = leafCount(table.rows); rowLeaves < table.cells.size(); ++rowLeaves) {
    table.rows.emplace_back();
  }
  table.cells.resize(leafCount(table.rows));
  for (std::vector<CellValue>& row : table.cells) {
    row.resize(columnLeaves);
  }
}

}  // namespace genostat::standalone
