// A pivot table laid flat: a grid of labels and values in which one label may span
// several places, as the text renderer draws it.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

enum class Alignment { Left, Centre, Right };

// One place of the grid. Neighbours with the same `region` are one box without a line between
// them; the text stands in the place that has it.
struct GridCell {
  std::string text;  // printable
  const void* region = nullptr;
  Alignment alignment = Alignment::Left;
  bool breakable = true;     // numbers are never broken over lines
  std::size_t markSize = 0;  // the bytes at the text's end that are a mark
};

// Column labels and row labels come first: `headerRows` rows, `labelColumns` columns.
struct TextGrid {
  std::size_t headerRows = 0;
  std::size_t labelColumns = 0;
  std::vector<std::vector<GridCell>> rows;  // [row][column], all of the same length
  std::vector<bool> ruleAbove;              // [row]: a line separates this row from the one above

  std::size_t columnCount() const { return rows.empty() ? 0 : rows.front().size(); }
  bool isHeader(std::size_t row) const { return row < headerRows; }
};

// Whether a place belongs to the same box as the one before it in its row.
bool joined(const std::vector<GridCell>& row, std::size_t column);
// The column after the box that begins at `column`.
std::size_t spanEnd(const std::vector<GridCell>& row, std::size_t column);

// Lays a table out. The regions point into the table, which outlives the grid. Column labels
// that are all empty take no rows.
TextGrid layOutGrid(const PivotTable& table);

}  // namespace genostat::standalone
