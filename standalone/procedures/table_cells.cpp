#include "standalone/procedures/table_cells.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace genostat::standalone {

CellValue statisticCell(const Column& variable, const std::optional<double>& value, int extra) {
  if (!value) return {};
  constexpr int kMostOwnDecimals = 4;
  constexpr int kMostDecimals = 5;
  constexpr int kMostSmallDecimals = 12;
  constexpr int kSmallDigits = 3;
  const int own = variable.decimals + extra;
  const int decimals = std::min({own, kMostOwnDecimals + extra, kMostDecimals});
  if (*value == 0 || std::abs(*value) >= 0.1) return numberCell(*value, decimals);
  // In 0.00123 the first two decimals do not count.
  const int zeros = -static_cast<int>(std::floor(std::log10(std::abs(*value)))) - 1;
  const int most = std::max(decimals, std::min(own, kMostSmallDecimals));
  return numberCell(*value, std::clamp(zeros + kSmallDigits, decimals, most));
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

std::string markOf(std::vector<std::string>& footnotes, const std::string& text) {
  const auto known = std::ranges::find_if(
      footnotes, [&](const std::string& note) { return note.substr(note.find(' ') + 1) == text; });
  std::string mark;
  for (auto rest = known - footnotes.begin() + 1; rest > 0; rest = (rest - 1) / 26) {
    mark.insert(mark.begin(), static_cast<char>('a' + (rest - 1) % 26));
  }
  if (known == footnotes.end()) footnotes.push_back(mark + ". " + text);
  return mark;
}

std::string withoutTrailingZeros(std::string number, std::size_t fewest) {
  const std::size_t point = number.find('.');
  if (point == std::string::npos || number.find('e') != std::string::npos) return number;
  while (number.ends_with('0') && number.size() > point + 1 + fewest) {
    number.pop_back();
  }
  if (number.ends_with('.')) number.pop_back();
  return number;
}

}  // namespace genostat::standalone
