// Cells and footnotes that the tables of a regression share.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// Gives each text of a table its mark: a, b, ...; the same text always the same one.
class FootnoteList {
 public:
  explicit FootnoteList(PivotTable& table) : table_(table) {}

  std::string mark(const std::string& text) {
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

 private:
  PivotTable& table_;
  std::vector<std::string> texts_;
};

// As many decimals as show two digits of the smallest of the sizes, but no fewer than three.
inline int decimalsForSizes(std::initializer_list<double> sizes) {
  constexpr int kMostDecimals = 7;
  int decimals = 3;
  for (const double size : sizes) {
    if (size == 0 || !std::isfinite(size)) continue;
    const int needed = 1 - static_cast<int>(std::floor(std::log10(std::abs(size))));
    decimals = std::max(decimals, std::min(needed, kMostDecimals));
  }
  return decimals;
}

// Blank for what does not exist, or lies beyond double's range.
inline CellValue cellOf(const std::optional<double>& value, int decimals = 3) {
  return value && std::isfinite(*value) ? numberCell(*value, decimals) : CellValue();
}

inline CellValue fractionCellOf(const std::optional<double>& value) {
  return value && std::isfinite(*value) ? fractionCell(*value) : CellValue();
}

inline CellValue countCell(std::size_t count) {
  return numberCell(static_cast<double>(count), 0);
}

inline CellValue withMark(CellValue cell, std::string mark) {
  cell.mark = std::move(mark);
  return cell;
}

}  // namespace genostat::standalone
