// Draws a grid whose column widths are known.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "standalone/output/text_grid.h"

namespace genostat::standalone {

// What a column takes beyond its width: a blank on both sides and one border.
inline constexpr int kColumnExtra = 3;

// The width inside a box that spans the columns [begin, end).
int spanWidth(std::span<const int> widths, std::size_t begin, std::size_t end);

// One box with a line feed after each of its lines. `widths`: one per column, in terminal columns.
std::string drawBox(const TextGrid& grid, std::vector<int> widths, bool unicode);

}  // namespace genostat::standalone
