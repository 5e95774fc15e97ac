// Cells and footnotes that the tables of several procedures share.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "standalone/data/dataset.h"
#include "standalone/output/pivot_table.h"

namespace genostat::standalone {

// A statistic in the variable's units, with `extra` decimals more than the data have, but five at most, or
// three after the zeros of a small value. Blank for one that does not exist.
CellValue statisticCell(const Column& variable, const std::optional<double>& value, int extra);

// Blank for what does not exist, or lies beyond double's range.
CellValue cellOf(const std::optional<double>& value, int decimals = 3);
CellValue fractionCellOf(const std::optional<double>& value);
CellValue countCell(std::size_t count);
CellValue withMark(CellValue cell, std::string mark);

// The mark that leads to the footnote `text`: a, b, ... A new one joins `footnotes`, all of which must come
// from here.
std::string markOf(std::vector<std::string>& footnotes, const std::string& text);

// "0.1250" as "0.125", but never with fewer decimals than `fewest`.
std::string withoutTrailingZeros(std::string number, std::size_t fewest);

}  // namespace genostat::standalone
