#include "standalone/procedures/imported_data.h"

#include <algorithm>
#include <cmath>

#include "common/text/utf8.h"
#include "standalone/language/translation.h"

namespace genostat::standalone {

namespace {

constexpr std::size_t kShownCases = 4;
constexpr std::size_t kShownCharacters = 60;
constexpr int kMostDecimals = 6;

// The table is a glance at the data, not the data.
std::string shorten(const std::string& text) {
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size() && count < kShownCharacters; ++count) {
    end += common::codePointAt(text, end).size;
  }
  return end < text.size() ? text.substr(0, end) + "..." : text;
}

CellValue valueOf(const Column& column, std::size_t row) {
  if (column.type == Column::Type::String) return textCell(shorten(column.texts[row]));
  if (std::isnan(column.numbers[row])) return {};
  return numberCell(column.numbers[row], std::min(column.decimals, kMostDecimals));
}

}  // namespace

PivotTable importedDataTable(const Dataset& dataset, const std::string& fileName) {
  const std::size_t cases = std::min(dataset.caseCount, kShownCases);
  PivotTable table;
  table.title = translated("Imported Data");
  table.columns.push_back({translated("Type"), {}});
  for (std::size_t row = 0; row < cases; ++row) {
    table.columns.push_back({translated("Case {1}", {std::to_string(row + 1)}), {}});
  }
  for (const Column& column : dataset.columns) {
    table.rows.push_back({column.name, {}});
    std::vector<CellValue>& cells = table.cells.emplace_back();
    cells.push_back(textCell(translated(column.type == Column::Type::Numeric ? "Numeric" : "String")));
    for (std::size_t row = 0; row < cases; ++row) {
      cells.push_back(valueOf(column, row));
    }
  }
  table.footnotes.push_back(
      translated("{1}, {2}, from {3}",
                 {translatedCount(dataset.caseCount, "{1} case", "{1} cases"),
                  translatedCount(dataset.columns.size(), "{1} variable", "{1} variables"), fileName}));
  return table;
}

}  // namespace genostat::standalone
