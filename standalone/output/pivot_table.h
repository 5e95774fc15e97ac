// Pivot tables as procedures build them.
#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

namespace genostat::standalone {

// How a number is shown.
struct NumberFormat {
  int decimals = 0;
  bool leadingZero = true;  // false: .000, as for significances
};

// One value: missing (shown blank), a text, or a number with its format.
struct CellValue {
  std::variant<std::monostate, std::string, double> value;
  NumberFormat format;
  std::string mark = {};  // follows the value and leads to a footnote: "**", "a"
};

CellValue textCell(std::string text);
CellValue numberCell(double number, int decimals);
// A value between -1 and 1 that is shown without its zero: a significance, a coefficient.
CellValue fractionCell(double number, int decimals = 3);

// A label of a dimension; leaves carry the cells, groups carry labels below them.
struct Category {
  std::string label;
  std::vector<Category> children;
  std::string mark = {};  // as of a cell
};

struct PivotTable {
  std::string title;
  std::string titleMark;    // as of a cell
  std::string rowLabel;     // heads the row categories; empty: not shown
  std::string columnLabel;  // heads the column categories; empty: not shown
  std::vector<Category> rows;
  std::vector<Category> columns;
  std::vector<std::vector<CellValue>> cells;  // [row leaf][column leaf]
  std::vector<std::string> footnotes;         // each with its mark: "a. Predictors: (Constant), GC"
  // What the procedure wishes for the width of value columns, in points; 0: no wish.
  int minColumnWidth = 0;
  int maxColumnWidth = 0;
};

std::size_t leafCount(const std::vector<Category>& categories);

// Makes labels and cells agree, whatever a module handed over: column labels without a text
// and without a value go, cells without a label get an empty one, missing cells are blank.
void squareUp(PivotTable& table);

}  // namespace genostat::standalone
