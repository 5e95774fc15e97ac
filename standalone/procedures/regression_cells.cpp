#include "standalone/procedures/regression_cells.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace genostat::standalone {

std::string FootnoteList::mark(const std::string& text) {
  const auto known = static_cast<std::size_t>(std::ranges::find(texts_, text) - texts_.begin());
  std::string name;
  for (std::size_t rest = known + 1; rest > 0; rest = (rest - 1) / 26) {
    name.insert(name.begin(), static_cast<char>('a' + (rest - 1) % 26));
  }
  if (known == texts_.size()) {
    texts_.push_back(text);
    table_.footnotes.push_back(name + ". " + text);
  }
  return name;
}

FootnoteList beginTable(PivotTable& table, const RegressionResult& result, std::string title,
                        std::string rowLabel) {
  FootnoteList notes(table);
  table.title = std::move(title);
  table.titleMark = notes.mark(translated(result.request.throughOrigin
                                              ? "Dependent variable: {1}; regression through the origin"
                                              : "Dependent variable: {1}",
                                          {result.dependent.name}));
  table.rowLabel = std::move(rowLabel);
  return notes;
}

std::string predictorNames(const RegressionResult& result, const std::vector<std::size_t>& predictors) {
  std::string names;
  for (const std::size_t predictor : predictors) {
    names += (names.empty() ? "" : ", ") + result.request.predictors[predictor]->name;
  }
  return names;
}

std::string predictorsNote(const RegressionResult& result, const LinearFit& fit) {
  const std::string names = predictorNames(result, fit.predictors);
  std::string all = fit.constant ? translated(kConstantName) : std::string();
  if (fit.constant && !names.empty()) all += ", ";
  all += names;
  return translated("Predictors: {1}", {all.empty() ? translated("none") : all});
}

std::string missingTestsNote(const LinearFit& fit) {
  if (fit.residualFreedom == 0)
    return translated("As many coefficients as cases: nothing is left to test them by");
  if (fit.exact)
    return translated("The predictors determine the dependent variable exactly: nothing is left to test by");
  return {};
}

std::string modelLabel(std::size_t step) {
  return std::to_string(step + 1);
}

int decimalsForSizes(std::initializer_list<double> sizes) {
  constexpr int kMostDecimals = 7;
  int decimals = 3;
  for (const double size : sizes) {
    if (size == 0 || !std::isfinite(size)) continue;
    const int needed = 1 - static_cast<int>(std::floor(std::log10(std::abs(size))));
    decimals = std::max(decimals, std::min(needed, kMostDecimals));
  }
  return decimals;
}

CellValue cellOf(const std::optional<double>& value, int decimals) {
  return value && std::isfinite(*value) ? numberCell(*value, decimals) : CellValue();
}

CellValue fractionCellOf(const std::optional<double>& value) {
  return value && std::isfinite(*value) ? fractionCell(*value) : CellValue();
}

CellValue countCell(std::size_t count) {
  return numberCell(static_cast<double>(count), 0);
}

CellValue withMark(CellValue cell, std::string mark) {
  cell.mark = std::move(mark);
  return cell;
}

}  // namespace genostat::standalone
